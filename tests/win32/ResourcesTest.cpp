// The program's resources (English, linked into this test program) and the French language
// module: strings, menus, dialog templates and bitmaps.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cwchar>
#include <set>
#include <string>
#include <vector>

#include "resources/resource.h"

namespace velmora {
namespace {

std::u16string FromWide(const wchar_t* text, std::size_t length) {
    return std::u16string(text, text + length);
}

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

std::string Utf8(const std::u16string& text) {
    auto* wide = reinterpret_cast<const wchar_t*>(text.c_str());
    int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(size > 0 ? size : 1), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide, -1, out.data(), size, nullptr, nullptr);
    out.pop_back();
    return out;
}

HMODULE EnglishModule() {
    return GetModuleHandleW(nullptr);
}

class Resources : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(FrenchModule(), nullptr) << "cannot load " VELMORA_FR_DLL; }
};

// Reads string id straight from the module's table; "<missing>" when there is none.
std::u16string LoadText(HMODULE module, UINT id) {
    const wchar_t* text = nullptr;
    int length = LoadStringW(module, id, reinterpret_cast<LPWSTR>(&text), 0);
    if (length <= 0 || text == nullptr) return u"<missing>";
    return FromWide(text, static_cast<std::size_t>(length));
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

// Texts the user must see exactly as written, odd blanks included.
const std::pair<UINT, const char16_t*> kExactEnglish[] = {
    {IDS_CAPTION, u"Velmora 2.0"},
    {IDS_CANNOT_CREATE_TOOLBAR, u"Unable to create toolbar buttons"},
    {IDS_ASK_DEFAULT_VIEWER,
     u"Velmora is currently not the default PGN viewer ; do you want to register it as the "
     u"default PGN viewer ?"},
    {IDS_ALL_FOLDERS, u"All Folders"},
};

// Strings French writes as English does: names and words spelt alike.
const std::set<UINT> kSameInFrench = {IDS_CAPTION, IDS_MENU_BUTTON, IDS_PORTRAIT};

TEST_F(Resources, EveryStringIsTranslatedAndTheFixedTextsAreExact) {
    for (const auto& [id, text] : kExactEnglish)
        EXPECT_EQ(LoadText(EnglishModule(), id), text) << "string " << id;
    EXPECT_EQ(LoadText(FrenchModule(), IDS_ALL_FOLDERS), u"Tous les dossiers");

    // A string missing from one module would show the English text, or nothing, in French.
    const std::set<UINT> english = StringIds(EnglishModule());
    EXPECT_EQ(StringIds(FrenchModule()), english);
    for (UINT id : english) {
        const bool same = LoadText(FrenchModule(), id) == LoadText(EnglishModule(), id);
        EXPECT_EQ(same, kSameInFrench.count(id) == 1)
            << "string " << id << ": " << Utf8(LoadText(FrenchModule(), id));
    }
}

// Describes a menu as nested groups: "(" popup text ... ")" for popups, text=id for items,
// "-" for separators (whose state the system reports as it likes), "!" after a grayed item.
// Without texts only the structure is left.
std::u16string DescribeMenu(HMENU menu, bool withTexts) {
    std::u16string out;
    int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        wchar_t text[128] = {};
        MENUITEMINFOW info = {};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_FTYPE | MIIM_ID | MIIM_STATE | MIIM_SUBMENU | MIIM_STRING;
        info.dwTypeData = text;
        info.cch = 127;
        if (!GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info)) return u"<error>";
        if (!out.empty()) out += u' ';
        const std::u16string label = withTexts ? FromWide(text, wcslen(text)) : u"";
        if (info.fType & MFT_SEPARATOR) {
            out += u"-";
        } else if (info.hSubMenu != nullptr) {
            out += u"(" + label + (withTexts ? u": " : u"") +
                   DescribeMenu(info.hSubMenu, withTexts) + u")";
        } else {
            std::string id = std::to_string(info.wID);
            out += label + (withTexts ? u"=" : u"") + std::u16string(id.begin(), id.end());
        }
        if ((info.fState & MFS_GRAYED) && !(info.fType & MFT_SEPARATOR)) out += u"!";
    }
    return out;
}

std::u16string DescribeMenu(HMODULE module, UINT id, bool withTexts) {
    HMENU menu = LoadMenuW(module, MAKEINTRESOURCEW(id));
    if (menu == nullptr) return u"<missing>";
    std::u16string text = DescribeMenu(menu, withTexts);
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

// One control of a dialog template.
struct DialogItem {
    DWORD style = 0;
    int id = 0;
    std::u16string className;  // predefined classes by name: "Button", "Static", ...
    std::u16string text;       // an ordinal (icon id) as "#n"
    int x = 0, y = 0, cx = 0, cy = 0;
};

struct DialogTemplate {
    bool found = false;
    DWORD style = 0;
    int cx = 0, cy = 0;
    std::u16string title;
    std::u16string font;
    std::vector<DialogItem> items;
};

// Reads a name-or-ordinal field and moves past it.
std::u16string ReadNameOrOrdinal(const WORD*& p) {
    static const char16_t* const kClasses[] = {u"Button",  u"Edit",      u"Static",
                                               u"ListBox", u"ScrollBar", u"ComboBox"};
    if (*p == 0xFFFF) {
        WORD ordinal = p[1];
        p += 2;
        if (ordinal >= 0x80 && ordinal <= 0x85) return kClasses[ordinal - 0x80];
        std::u16string number = u"#";
        for (char digit : std::to_string(ordinal))
            number.push_back(static_cast<char16_t>(digit));
        return number;
    }
    std::u16string text;
    while (*p != 0)
        text.push_back(static_cast<char16_t>(*p++));
    ++p;
    return text;
}

// Parses the classic (not extended) dialog template id of the module.
DialogTemplate ReadDialog(HMODULE module, UINT id) {
    DialogTemplate result;
    HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(id), RT_DIALOG);
    if (resource == nullptr) return result;
    auto* header = static_cast<const DLGTEMPLATE*>(LockResource(LoadResource(module, resource)));
    if (header == nullptr) return result;
    result.found = true;
    result.style = header->style;
    result.cx = header->cx;
    result.cy = header->cy;
    auto* p = reinterpret_cast<const WORD*>(header + 1);
    ReadNameOrOrdinal(p);  // menu
    ReadNameOrOrdinal(p);  // class
    result.title = ReadNameOrOrdinal(p);
    if (header->style & DS_SETFONT) {
        ++p;  // point size
        result.font = ReadNameOrOrdinal(p);
    }
    for (int i = 0; i < header->cdit; ++i) {
        auto address = (reinterpret_cast<std::uintptr_t>(p) + 3) & ~std::uintptr_t{3};
        auto* item = reinterpret_cast<const DLGITEMTEMPLATE*>(address);
        DialogItem out;
        out.style = item->style;
        out.id = static_cast<short>(item->id);
        out.x = item->x;
        out.y = item->y;
        out.cx = item->cx;
        out.cy = item->cy;
        p = reinterpret_cast<const WORD*>(item + 1);
        out.className = ReadNameOrOrdinal(p);
        out.text = ReadNameOrOrdinal(p);
        WORD extra = *p++;
        p = reinterpret_cast<const WORD*>(reinterpret_cast<const BYTE*>(p) + extra);
        result.items.push_back(out);
    }
    return result;
}

std::vector<int> ItemIds(const DialogTemplate& dialog) {
    std::vector<int> ids;
    for (const DialogItem& item : dialog.items)
        ids.push_back(item.id);
    return ids;
}

TEST_F(Resources, DialogTemplatesMatchAcrossLanguagesAndFitTheirControls) {
    for (UINT id : {IDD_PROMOTION, IDD_ABOUT, IDD_ABOUT_LANDSCAPE, IDD_GAME_LIST, IDD_CHOOSE_MOVE,
                    IDD_NEW_LINE, IDD_GAME_WINDOW}) {
        SCOPED_TRACE(testing::Message() << "dialog " << id);
        const DialogTemplate english = ReadDialog(EnglishModule(), id);
        const DialogTemplate french = ReadDialog(FrenchModule(), id);
        ASSERT_TRUE(english.found);
        ASSERT_TRUE(french.found);
        EXPECT_EQ(ItemIds(french), ItemIds(english));
        EXPECT_EQ(french.style, english.style);
        for (const DialogTemplate* dialog : {&english, &french}) {
            for (const DialogItem& item : dialog->items) {
                EXPECT_LE(item.x + item.cx, dialog->cx) << "control " << item.id;
                EXPECT_LE(item.y + item.cy, dialog->cy) << "control " << item.id;
            }
        }
    }
    EXPECT_EQ(ReadDialog(EnglishModule(), IDD_CHOOSE_MOVE).title, u"Choose move");
    EXPECT_EQ(ReadDialog(EnglishModule(), IDD_NEW_LINE).title, u"New line");
    EXPECT_EQ(ReadDialog(EnglishModule(), IDD_PROMOTION).title, u"Promotion in");
}

// Counts the pure red (transparent) pixels of each image of a strip of square-ish images.
std::vector<int> RedPixelsPerImage(HBITMAP bitmap, int width, int height, int imageWidth) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * height);
    HDC dc = GetDC(nullptr);
    int lines = GetDIBits(dc, bitmap, 0, height, pixels.data(), &info, DIB_RGB_COLORS);
    ReleaseDC(nullptr, dc);
    std::vector<int> counts(width / imageWidth);
    if (lines != height) return counts;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if ((pixels[y * width + x] & 0xFFFFFF) == 0xFF0000) ++counts[x / imageWidth];
    return counts;
}

TEST_F(Resources, BitmapsAreStripsOfTheRightSizeInTheProgramOnly) {
    struct BitmapCase {
        UINT id;
        int width, height;
        int masked;  // images with a pure red background, or 0 when drawn without a mask
    };
    const BitmapCase bitmaps[] = {
        {IDB_GAME_TOOLBAR, 160, 16, 0},        {IDB_MAIN_TOOLBAR, 48, 16, 0},
        {IDB_EVALUATION_SYMBOLS, 120, 14, 15}, {IDB_SIDE_TO_MOVE, 196, 14, 0},
        {IDB_DIAGRAM_SMALL, 228, 19, 19},      {IDB_DIAGRAM_LARGE, 300, 25, 25},
        {IDB_STAUNTON_SMALL, 228, 19, 19},     {IDB_STAUNTON_LARGE, 300, 25, 25},
        {IDB_TITAN_SMALL, 228, 19, 19},        {IDB_TITAN_LARGE, 300, 25, 25},
        {IDB_ROYAL_SMALL, 228, 19, 19},        {IDB_ROYAL_LARGE, 300, 25, 25},
    };
    for (const BitmapCase& c : bitmaps) {
        SCOPED_TRACE(testing::Message() << "bitmap " << c.id);
        HBITMAP bitmap = LoadBitmapW(EnglishModule(), MAKEINTRESOURCEW(c.id));
        ASSERT_NE(bitmap, nullptr);
        BITMAP size = {};
        GetObjectW(bitmap, sizeof(size), &size);
        EXPECT_EQ(size.bmWidth, c.width);
        EXPECT_EQ(size.bmHeight, c.height);
        if (c.masked != 0 && size.bmWidth == c.width && size.bmHeight == c.height) {
            // A masked image with no transparent pixel would be drawn as an opaque square.
            int image = 0;
            for (int count : RedPixelsPerImage(bitmap, c.width, c.height, c.masked))
                EXPECT_GT(count, 0) << "image " << image++;
        }
        DeleteObject(bitmap);
        EXPECT_EQ(FindResourceW(FrenchModule(), MAKEINTRESOURCEW(c.id), RT_BITMAP), nullptr);
    }
    HANDLE icon = LoadImageW(EnglishModule(), MAKEINTRESOURCEW(IDI_VELMORA), IMAGE_ICON, 32, 32, 0);
    EXPECT_NE(icon, nullptr);
    if (icon != nullptr) DestroyIcon(static_cast<HICON>(icon));
    EXPECT_EQ(FindResourceW(FrenchModule(), MAKEINTRESOURCEW(IDA_MAIN), RT_ACCELERATOR), nullptr);
}

TEST_F(Resources, FrenchModuleIsResourcesOnlyWithoutEntryPoint) {
    auto* base = reinterpret_cast<const BYTE*>(FrenchModule());
    auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    EXPECT_EQ(nt->OptionalHeader.AddressOfEntryPoint, 0u);
    // No library imported: the import table, if any, ends at its first descriptor.
    const IMAGE_DATA_DIRECTORY& imports =
        nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (imports.Size != 0) {
        auto* first =
            reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
        EXPECT_EQ(first->Name, 0u);
    }
}

}  // namespace
}  // namespace velmora
