// Include rules of the source tree, read from VELMORA_SOURCE_DIR: no include cycle between
// files (a header and its .cpp count as one), each folder includes only the folders below it
// (core/ nothing outside itself), and portable code includes no Win32 header.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace velmora {
namespace {

// Source files by path from the source root ("core/Position.cpp") and their text.
using SourceTree = std::map<std::string, std::string>;

// The folders each folder may include besides itself; a folder missing here is reported.
const std::map<std::string, std::set<std::string>> kMayInclude = {
    {"core", {}},
    {"platform", {}},
    {"resources", {}},
    {"game", {"core", "platform"}},
    {"engine", {"game", "core", "platform"}},
    {"clock", {"game", "core", "platform"}},
    {"devices", {"game", "core", "platform"}},
    {"models", {"game", "core", "platform"}},
    {"cli", {"game", "core", "platform"}},
    {"ui", {"models", "game", "platform", "resources"}},
    {"gamewindow", {"ui", "models", "game", "core", "platform", "resources"}},
    {"shell", {"gamewindow", "ui", "models", "game", "core", "platform", "resources"}},
};
// The game headers the toolkit may use: small interfaces, not the game records.
const std::set<std::string> kGameHeadersOfUi = {"game/UserMessages.h"};
// Code built for Windows only; everything else is portable.
const std::set<std::string> kWin32Folders = {"ui", "shell", "gamewindow", "platform/win32"};
const std::set<std::string> kWin32Headers = {"windows.h", "commctrl.h", "commdlg.h",  "shellapi.h",
                                             "shlobj.h",  "windowsx.h", "winuser.h",  "wingdi.h",
                                             "winreg.h",  "winbase.h",  "mmsystem.h", "aygshell.h"};
// Folders that are not part of the products.
const std::set<std::string> kNotProduct = {"tests", "fuzz",    "bench",   "tools",
                                           "cmake", "scripts", "examples"};

std::string FolderOf(const std::string& path) {
    return path.substr(0, path.find('/'));
}
std::string Stem(const std::string& path) {
    return path.substr(0, path.rfind('.'));
}

std::string Join(const std::set<std::string>& names) {
    std::string joined;
    for (const std::string& name : names)
        joined += (joined.empty() ? "" : ", ") + name;
    return joined;
}

struct Include {
    std::string name;
    bool angled;
};

// Reads the #include lines of a source text (blanks allowed around '#').
std::vector<Include> IncludesOf(const std::string& text) {
    std::vector<Include> includes;
    std::istringstream lines(text);
    for (std::string row; std::getline(lines, row);) {
        std::size_t at = row.find_first_not_of(" \t");
        if (at == std::string::npos || row[at] != '#') continue;
        at = row.find_first_not_of(" \t", at + 1);
        if (at == std::string::npos || row.compare(at, 7, "include") != 0) continue;
        at = row.find_first_not_of(" \t", at + 7);
        if (at == std::string::npos || (row[at] != '<' && row[at] != '"')) continue;
        const std::size_t end = row.find(row[at] == '<' ? '>' : '"', at + 1);
        if (end != std::string::npos)
            includes.push_back({row.substr(at + 1, end - at - 1), row[at] == '<'});
    }
    return includes;
}

void CheckLayers(const SourceTree& tree, std::set<std::string>& findings) {
    for (const auto& [path, text] : tree) {
        const std::string folder = FolderOf(path);
        auto allowed = kMayInclude.find(folder);
        if (allowed == kMayInclude.end()) {
            findings.insert("layer: " + path + " is in a folder the include rules do not know");
            continue;
        }
        const bool win32 =
            std::any_of(kWin32Folders.begin(), kWin32Folders.end(),
                        [&](const std::string& f) { return path.rfind(f + "/", 0) == 0; });
        for (const Include& include : IncludesOf(text)) {
            if (include.angled) {
                std::string name = include.name;
                std::transform(name.begin(), name.end(), name.begin(), ::tolower);
                if (!win32 && kWin32Headers.count(name) != 0) {
                    findings.insert("portable: " + path + " includes <" + include.name + ">");
                }
                continue;
            }
            if (tree.count(include.name) == 0) continue;
            const std::string target = FolderOf(include.name);
            if (!win32 && include.name.rfind("platform/win32/", 0) == 0) {
                findings.insert("portable: " + path + " includes " + include.name);
            }
            if (target == folder) continue;
            if (folder == "ui" && target == "game" && kGameHeadersOfUi.count(include.name) == 0) {
                findings.insert("layer: " + path + " includes " + include.name +
                                " (ui may include from game only " + Join(kGameHeadersOfUi) + ")");
            } else if (allowed->second.count(target) == 0) {
                const std::string list = Join(allowed->second);
                findings.insert("layer: " + path + " includes " + include.name + " (" + folder +
                                " may include " + (list.empty() ? "nothing else" : list) + ")");
            }
        }
    }
}

// Reports each group of files (a header and its .cpp as one) that reach each other through
// their includes, with every include inside the group: the ones to cut.
void CheckCycles(const SourceTree& tree, std::set<std::string>& findings) {
    // Edges between stems, each with the first file include that makes it.
    std::map<std::string, std::map<std::string, std::string>> edges;
    for (const auto& [path, text] : tree) {
        edges[Stem(path)];
        for (const Include& include : IncludesOf(text)) {
            if (include.angled || tree.count(include.name) == 0) continue;
            if (Stem(include.name) == Stem(path)) continue;
            edges[Stem(path)].emplace(Stem(include.name), path + " includes " + include.name);
        }
    }
    std::map<std::string, std::set<std::string>> reached;  // every stem a stem leads to
    for (const auto& [start, unused] : edges) {
        std::set<std::string>& seen = reached[start];
        for (std::vector<std::string> todo = {start}; !todo.empty();) {
            const std::string stem = todo.back();
            todo.pop_back();
            for (const auto& [next, why] : edges[stem])
                if (seen.insert(next).second) todo.push_back(next);
        }
    }
    for (const auto& [stem, from] : reached) {
        std::set<std::string> group;  // the stems that lead back to stem, itself included
        for (const std::string& other : from)
            if (reached.count(other) != 0 && reached[other].count(stem) != 0) group.insert(other);
        if (group.empty()) continue;
        std::string includes;
        for (const std::string& member : group) {
            for (const auto& [next, why] : edges[member])
                if (group.count(next) != 0) includes += (includes.empty() ? "" : "; ") + why;
        }
        findings.insert("cycle: " + Join(group) + " include each other (" + includes + ")");
    }
}

std::set<std::string> Check(const SourceTree& tree) {
    std::set<std::string> findings;
    CheckLayers(tree, findings);
    CheckCycles(tree, findings);
    return findings;
}

// The product sources below root: .h and .cpp files outside the build, test and tool folders.
SourceTree ReadTree(const std::filesystem::path& root) {
    SourceTree tree;
    for (const auto& top : std::filesystem::directory_iterator(root)) {
        const std::string folder = top.path().filename().string();
        if (!top.is_directory() || folder[0] == '.' || folder.rfind("build", 0) == 0 ||
            kNotProduct.count(folder) != 0) {
            continue;
        }
        for (const auto& file : std::filesystem::recursive_directory_iterator(top.path())) {
            const std::string extension = file.path().extension().string();
            if (!file.is_regular_file() || (extension != ".h" && extension != ".cpp")) continue;
            std::ifstream in(file.path(), std::ios::binary);
            tree[std::filesystem::relative(file.path(), root).generic_string()] =
                std::string(std::istreambuf_iterator<char>(in), {});
        }
    }
    return tree;
}

// One fault of each kind; the real tree below shows that allowed includes pass.
TEST(IncludeRules, EachKindOfFaultIsFoundWithTheFilesNamed) {
    const SourceTree tree = {
        {"core/A.cpp", "  #  include \"game/B.h\""},
        {"game/B.h", "#include \"game/C.h\""},
        {"game/C.h", ""},
        {"game/C.cpp", "#include \"game/B.h\"\n#include \"platform/win32/D.h\""},
        {"platform/win32/D.h", "#include <windows.h>"},
        {"models/E.cpp", "#include <Windows.h>"},
        {"ui/F.cpp",
         "#include \"shell/G.h\"\n#include \"game/C.h\"\n#include \"game/UserMessages.h\""},
        {"shell/G.h", ""},
        {"game/UserMessages.h", ""},
        {"extras/I.h", ""},
    };
    EXPECT_EQ(Check(tree),
              (std::set<std::string>{
                  "layer: core/A.cpp includes game/B.h (core may include nothing else)",
                  "layer: ui/F.cpp includes shell/G.h (ui may include game, models, platform, "
                  "resources)",
                  "layer: ui/F.cpp includes game/C.h (ui may include from game only "
                  "game/UserMessages.h)",
                  "portable: models/E.cpp includes <Windows.h>",
                  "portable: game/C.cpp includes platform/win32/D.h",
                  "cycle: game/B, game/C include each other (game/B.h includes game/C.h; "
                  "game/C.cpp includes game/B.h)",
                  "layer: extras/I.h is in a folder the include rules do not know",
              }));
}

TEST(IncludeRules, SourceTreeKeepsThem) {
    const SourceTree tree = ReadTree(VELMORA_SOURCE_DIR);
    ASSERT_GT(tree.count("core/PositionValue.h"), 0u) << "no sources in " VELMORA_SOURCE_DIR;
    for (const std::string& finding : Check(tree))
        ADD_FAILURE() << finding;
}

}  // namespace
}  // namespace velmora
