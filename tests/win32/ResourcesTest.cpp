// The English resources (linked into this program) against the French module: strings, menus.
#include <windows.h>

#include <gtest/gtest.h>

#include <cwchar>
#include <set>
#include <string>
#include <vector>

#include "resources/resource.h"

namespace velmora {
namespace {

// The French module, loaded once for the whole program.
HMODULE FrenchModule() {
    static HMODULE module = [] {
        std::wstring path = L"" VELMORA_FR_DLL;
        for (wchar_t& c : path)
            if (c == L'/') c = L'\\';
        return LoadLibraryW(path.c_str());
    }();
    return module;
}

HMODULE EnglishModule() {
    return GetModuleHandleW(nullptr);
}

class Resources : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(FrenchModule(), nullptr) << "cannot load " VELMORA_FR_DLL; }
};

// Reads string id straight from the module's table; "<missing>" when there is none.
std::wstring LoadText(HMODULE module, UINT id) {
    const wchar_t* text = nullptr;
    int length = LoadStringW(module, id, reinterpret_cast<LPWSTR>(&text), 0);
    return length > 0 && text != nullptr ? std::wstring(text, length) : L"<missing>";
}

// Every non-empty string id of the module, read block by block from its string table.
std::set<UINT> StringIds(HMODULE module) {
    std::set<UINT> ids;
    EnumResourceNamesW(
        module, RT_STRING,
        [](HMODULE m, LPCWSTR, LPWSTR name, LONG_PTR param) -> BOOL {
            auto* found = reinterpret_cast<std::set<UINT>*>(param);
            HRSRC resource = FindResourceW(m, name, RT_STRING);
            auto* data = static_cast<const WORD*>(LockResource(LoadResource(m, resource)));
            UINT first = (static_cast<UINT>(reinterpret_cast<ULONG_PTR>(name)) - 1) * 16;
            for (UINT i = 0; i < 16; ++i) {
                if (*data != 0) found->insert(first + i);
                data += 1 + *data;
            }
            return TRUE;
        },
        reinterpret_cast<LONG_PTR>(&ids));
    return ids;
}

// Strings French writes as English does: names and words spelt alike.
const std::set<UINT> kSameInFrench = {IDS_CAPTION, IDS_MENU_BUTTON, IDS_PORTRAIT};

TEST_F(Resources, EveryStringIsTranslated) {
    EXPECT_EQ(LoadText(EnglishModule(), IDS_CANNOT_CREATE_TOOLBAR),
              L"Unable to create toolbar buttons");
    // A string missing from one module would show the English text, or nothing, in French.
    const std::set<UINT> english = StringIds(EnglishModule());
    EXPECT_EQ(StringIds(FrenchModule()), english);
    for (UINT id : english) {
        const std::wstring french = LoadText(FrenchModule(), id);
        EXPECT_EQ(french == LoadText(EnglishModule(), id), kSameInFrench.count(id) == 1)
            << "string " << id << ": " << testing::PrintToString(french);
    }
}

// Describes a menu as nested groups: "(" popup text ... ")" for popups, text=id for items,
// "-" for separators (whose state the system reports as it likes), "!" after a grayed item.
// Without texts only the structure is left.
std::wstring DescribeMenu(HMENU menu, bool withTexts) {
    std::wstring out;
    int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        wchar_t text[128] = {};
        MENUITEMINFOW info = {};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_FTYPE | MIIM_ID | MIIM_STATE | MIIM_SUBMENU | MIIM_STRING;
        info.dwTypeData = text;
        info.cch = 127;
        if (!GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info)) return L"<error>";
        if (!out.empty()) out += L' ';
        const std::wstring label = withTexts ? text : L"";
        if (info.fType & MFT_SEPARATOR) {
            out += L"-";
        } else if (info.hSubMenu != nullptr) {
            out += L"(" + label + (withTexts ? L": " : L"") +
                   DescribeMenu(info.hSubMenu, withTexts) + L")";
        } else {
            out += label + (withTexts ? L"=" : L"") + std::to_wstring(info.wID);
        }
        if ((info.fState & MFS_GRAYED) && !(info.fType & MFT_SEPARATOR)) out += L"!";
    }
    return out;
}

std::wstring DescribeMenu(HMODULE module, UINT id, bool withTexts) {
    HMENU menu = LoadMenuW(module, MAKEINTRESOURCEW(id));
    if (menu == nullptr) return L"<missing>";
    std::wstring text = DescribeMenu(menu, withTexts);
    DestroyMenu(menu);
    return text;
}

TEST_F(Resources, MenusHaveTheSameCommandsInBothLanguages) {
    for (UINT id : {IDM_MAIN_MENU, IDM_NAG, IDM_COMMENT, IDM_ENGINE, IDM_GAME_WINDOW}) {
        EXPECT_EQ(DescribeMenu(FrenchModule(), id, false), DescribeMenu(EnglishModule(), id, false))
            << "menu " << id;
    }
    EXPECT_NE(DescribeMenu(FrenchModule(), IDM_MAIN_MENU, true),
              DescribeMenu(EnglishModule(), IDM_MAIN_MENU, true));
}

}  // namespace
}  // namespace velmora
