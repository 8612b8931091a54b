# Shared by the scripts in this folder (sourced, not run): package installs and CMake set-up.

velmora_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Installs the Debian packages among the arguments that are not installed yet; runs apt-get
# update first only when something is missing, and sudo only when not root.
velmora_install_packages() {
    local missing=() package
    for package in "$@"; do
        if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
            missing+=("$package")
        fi
    done
    if [ ${#missing[@]} -eq 0 ]; then
        return 0
    fi
    local sudo=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages (${missing[*]}) and no sudo to install them as root" >&2
            return 1
        fi
        sudo=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q \
        --no-install-recommends -o DPkg::Lock::Timeout=300 "${missing[@]}"
}

# Configures a build folder with Ninja (the generator is chosen only when the folder is new),
# then builds it with both cores, going on past failures so that one broken target does not
# hide the state of the others. Usage: velmora_build FOLDER [CMAKE OPTION...]
velmora_build() {
    local folder=$1
    shift
    local generator=()
    if [ ! -f "$folder/CMakeCache.txt" ]; then
        generator=(-G Ninja)
    fi
    cmake -S "$velmora_root" -B "$folder" "${generator[@]}" "$@" &&
        cmake --build "$folder" -j2 -- -k 0
}

# Makes sure the Windows program has an X display: keeps DISPLAY when it is set, else starts a
# virtual one (Xvfb) on a free display number and exports DISPLAY; the caller stops it with
# velmora_stop_display. Returns 1 when Xvfb is missing or does not start.
velmora_start_display() {
    velmora_xvfb_pid=
    if [ -n "${DISPLAY:-}" ]; then
        return 0
    fi
    command -v Xvfb >/dev/null || return 1
    local number
    for number in $(seq 90 130); do
        if [ ! -e "/tmp/.X$number-lock" ] && [ ! -e "/tmp/.X11-unix/X$number" ]; then
            Xvfb ":$number" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
            velmora_xvfb_pid=$!
            local waited
            for waited in $(seq 1 50); do
                if [ -e "/tmp/.X11-unix/X$number" ]; then
                    export DISPLAY=":$number"
                    return 0
                fi
                sleep 0.1
            done
            kill "$velmora_xvfb_pid" 2>/dev/null
            velmora_xvfb_pid=
        fi
    done
    return 1
}

velmora_stop_display() {
    if [ -n "${velmora_xvfb_pid:-}" ]; then
        kill "$velmora_xvfb_pid" 2>/dev/null || true
    fi
}
