// Include rules of the source tree, read from VELMORA_SOURCE_DIR: no include cycle between
// files (a header and its .cpp count as one), each folder includes only the folders below it
// (core/ nothing outside itself), and portable code includes no Win32 header.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
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

// What each folder may include besides itself: folders, or single headers (the toolkit uses
// the small interface game/UserMessages.h, not the game records). A folder missing here is
// reported.
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
    {"plugins", {"engine", "game", "core", "platform"}},
    {"ui", {"models", "game/UserMessages.h", "platform", "resources"}},
    {"gamewindow",
     {"ui", "models", "engine", "clock", "devices", "game", "core", "platform", "resources"}},
    {"shell",
     {"gamewindow", "ui", "models", "engine", "clock", "devices", "game", "core", "platform",
      "resources"}},
};
// Code built for Windows only; everything else is portable.
const std::set<std::string> kWin32Folders = {"ui", "shell", "gamewindow", "platform/win32",
                                             "plugins/win32"};
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

// Reads the #include lines of a source text (blanks allowed around '#'): each name, and whether
// it stands in angle brackets.
std::vector<std::pair<std::string, bool>> IncludesOf(const std::string& text) {
    std::vector<std::pair<std::string, bool>> includes;
    std::istringstream lines(text);
    for (std::string row, compact; std::getline(lines, row); compact.clear()) {
        std::copy_if(row.begin(), row.end(), std::back_inserter(compact),
                     [](char c) { return c != ' ' && c != '\t'; });
        if (!compact.starts_with("#include<") && !compact.starts_with("#include\"")) continue;
        const std::size_t end = compact.find(compact[8] == '<' ? '>' : '"', 9);
        if (end != std::string::npos)
            includes.emplace_back(compact.substr(9, end - 9), compact[8] == '<');
    }
    return includes;
}

// Returns what breaks the rules: includes across the layers, Win32 headers in portable code,
// and each group of files (a header and its .cpp as one) that reach each other by includes.
std::set<std::string> Check(const SourceTree& tree) {
    std::set<std::string> findings;
    std::map<std::string, std::set<std::string>> edges;  // between stems
    for (const auto& [path, text] : tree) {
        const std::string folder = FolderOf(path);
        const auto allowed = kMayInclude.find(folder);
        if (allowed == kMayInclude.end())
            findings.insert("layer: " + path + " is in a folder the include rules do not know");
        const bool win32 =
            std::any_of(kWin32Folders.begin(), kWin32Folders.end(),
                        [&](const std::string& f) { return path.rfind(f + "/", 0) == 0; });
        edges[Stem(path)];
        for (const auto& [name, angled] : IncludesOf(text)) {
            std::string lower = name;
            std::transform(lower.begin(), lower.end(), lower.begin(), ::tolower);
            if (!win32 && angled && kWin32Headers.count(lower) != 0)
                findings.insert("portable: " + path + " includes <" + name + ">");
            if (angled || tree.count(name) == 0) continue;
            if (!win32 && name.starts_with("platform/win32/"))
                findings.insert("portable: " + path + " includes " + name);
            if (Stem(name) != Stem(path)) edges[Stem(path)].insert(Stem(name));
            const std::string target = FolderOf(name);
            if (target == folder || allowed == kMayInclude.end() ||
                allowed->second.count(target) != 0 || allowed->second.count(name) != 0) {
                continue;
            }
            const std::string list = Join(allowed->second);
            findings.insert("layer: " + path + " includes " + name + " (" + folder +
                            " may include " + (list.empty() ? "nothing else" : list) + ")");
        }
    }
    std::map<std::string, std::set<std::string>> reached;  // every stem a stem leads to
    for (const auto& [start, unused] : edges) {
        std::set<std::string>& seen = reached[start];
        for (std::vector<std::string> todo = {start}; !todo.empty();) {
            const std::string stem = todo.back();
            todo.pop_back();
            for (const std::string& next : edges[stem])
                if (seen.insert(next).second) todo.push_back(next);
        }
    }
    for (const auto& [stem, from] : reached) {
        std::set<std::string> group;  // the stems that lead back to stem, itself included
        for (const std::string& other : from)
            if (reached[other].count(stem) != 0) group.insert(other);
        if (!group.empty()) findings.insert("cycle: " + Join(group) + " include each other");
    }
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
    const std::string ui = " (ui may include game/UserMessages.h, models, platform, resources)";
    EXPECT_EQ(Check(tree),
              (std::set<std::string>{
                  "layer: core/A.cpp includes game/B.h (core may include nothing else)",
                  "layer: ui/F.cpp includes shell/G.h" + ui,
                  "layer: ui/F.cpp includes game/C.h" + ui,
                  "portable: models/E.cpp includes <Windows.h>",
                  "portable: game/C.cpp includes platform/win32/D.h",
                  "cycle: game/B, game/C include each other",
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
