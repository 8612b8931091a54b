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
