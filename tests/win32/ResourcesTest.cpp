// The program's resources (English, linked into this test program) and the French language
// module: strings, menus, dialog templates, accelerators and bitmaps.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cwchar>
#include <map>
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

struct StringCase {
    UINT id;
    const char16_t* english;
    const char16_t* frenchPart;  // a piece the French text must hold
    bool sameInFrench;           // names and words that French spells alike
};

const StringCase kStrings[] = {
    {IDS_CAPTION, u"Velmora 2.0", u"Velmora 2.0", true},
    {IDS_CANNOT_OPEN_FILE, u"Unable to open file", u"ouvrir le fichier", false},
    {IDS_CANNOT_CREATE_TOOLBAR, u"Unable to create toolbar buttons", u"créer", false},
    // The blanks before ";" and "?" are part of the text.
    {IDS_ASK_DEFAULT_VIEWER,
     u"Velmora is currently not the default PGN viewer ; do you want to register it as the "
     u"default PGN viewer ?",
     u"par défaut ?", false},
    {IDS_CANNOT_CREATE_MAIN_WINDOW, u"Unable to create the main window", u"fenêtre", false},
    {IDS_CANNOT_CREATE_CUSTOM_MENU, u"Unable to create custom menu", u"personnalisé", false},
    {IDS_CANNOT_LOAD_ENGINE, u"Unable to load engine", u"moteur", false},
    {IDS_ENGINE_NOT_VALID, u"Engine is not valid for Velmora", u"moteur", false},
    {IDS_CANNOT_INIT_ENGINE, u"Unable to initialize engine", u"initialiser", false},
    {IDS_ENGINE_ALREADY_LOADED,
     u"An engine has already been loaded. Please quit and restart Velmora to load another "
     u"engine.",
     u"déjà chargé", false},
    {IDS_ENGINE_STOPPED, u"The Engine has unexpectedly stopped. Please restart Velmora",
     u"arrêté de façon inattendue", false},
    {IDS_ENGINE_VERSION, u"The engine's version is not compatible with this version of Velmora",
     u"compatible", false},
    {IDS_MENU_BUTTON, u"Menu", u"Menu", true},
    {IDS_FOLDER_LABEL, u"Folder:", u"Dossier", false},
    {IDS_ALL_FOLDERS, u"All Folders", u"Tous les dossiers", false},
    {IDS_PGN_FILES, u"PGN files", u"Fichiers PGN", false},
    {IDS_ALL_FILES, u"All files", u"Tous les fichiers", false},
    {IDS_GAME_BUTTON, u"Game", u"Partie", false},
    {IDS_MOVES_BUTTON, u"Moves", u"Coups", false},
    {IDS_TOOLS_BUTTON, u"Tools", u"Outils", false},
    {IDS_CHOOSE_FOLDER, u"Choose a folder", u"dossier", false},
    {IDS_PORTRAIT, u"Portrait", u"Portrait", true},
    {IDS_LANDSCAPE, u"Landscape", u"Paysage", false},
};

TEST_F(Resources, EveryStringExistsInBothLanguagesWithItsText) {
    std::set<UINT> listed;
    for (const StringCase& c : kStrings) {
        SCOPED_TRACE(testing::Message() << "string " << c.id);
        listed.insert(c.id);
        const std::u16string english = LoadText(EnglishModule(), c.id);
        const std::u16string french = LoadText(FrenchModule(), c.id);
        EXPECT_EQ(english, c.english);
        EXPECT_NE(french.find(c.frenchPart), std::u16string::npos) << Utf8(french);
        EXPECT_EQ(french == english, c.sameInFrench);
    }
    // No string without a case above, and none in only one language.
    EXPECT_EQ(StringIds(EnglishModule()), listed);
    EXPECT_EQ(StringIds(FrenchModule()), listed);
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

TEST_F(Resources, MenusCarryTheirCommandsInBothLanguages) {
    const std::pair<UINT, const char16_t*> menus[] = {
        {IDM_MAIN_MENU,
         u"(Menu: (New: Game=40069 Position=40080 Search=40139) "
         u"(Tools: Import Star Diamond Game...=40142) Options...=40061 About...=40003 - "
         u"Exit=40060)"},
        {IDM_GAME_WINDOW,
         u"(Game: New Game=40109 New Position...=40110 Open Next=40111 Reopen File=40128 - "
         u"Save=40123 Save as...=40124 - Close=40072) "
         u"(Moves: First move=40081 Last move=40082 - Promote=40020 Delete move=40083 "
         u"Material Balance=40112 (Position: (none)=40028 ==40029 oo=40030 +==40031 =+=40032 "
         u"+-=40033 -+=40034 +/-=40035 -/+=40036)) "
         u"(Tools: (Engine: Start...=40131) Connect UCB=40143 Large clocks=40145! - "
         u"Options=40061 About...=40003)"},
        {IDM_NAG, u"(NAG: !=40005 !!=40007 !?=40009 ?!=40010 ?=40006 \?\?=40008 - (none)=40004)"},
        {IDM_COMMENT, u"(Comment: Reset=40150 Clear=40151 Close=40152)"},
        {IDM_ENGINE, u"(Tools: (Engine: Start...=40131))"},
    };
    for (const auto& [id, english] : menus) {
        SCOPED_TRACE(testing::Message() << "menu " << id);
        EXPECT_EQ(DescribeMenu(EnglishModule(), id, true), english);
        EXPECT_EQ(DescribeMenu(FrenchModule(), id, false),
                  DescribeMenu(EnglishModule(), id, false));
    }
    // Translated, accents included; the evaluation symbols stay as they are.
    EXPECT_EQ(DescribeMenu(FrenchModule(), IDM_MAIN_MENU, true),
              u"(Menu: (Nouveau: Partie=40069 Position=40080 Recherche=40139) "
              u"(Outils: Importer une partie Star Diamond...=40142) Options...=40061 "
              u"À propos...=40003 - Quitter=40060)");
    const std::u16string frenchGameMenu = DescribeMenu(FrenchModule(), IDM_GAME_WINDOW, true);
    EXPECT_NE(frenchGameMenu.find(u"(Partie: Nouvelle partie=40109"), std::u16string::npos);
    EXPECT_NE(frenchGameMenu.find(u"Bilan matériel=40112"), std::u16string::npos);
    EXPECT_NE(frenchGameMenu.find(u"(Moteur: Démarrer...=40131)"), std::u16string::npos);
    EXPECT_NE(frenchGameMenu.find(u"+/-=40035 -/+=40036"), std::u16string::npos);
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

std::map<int, std::u16string> ItemTexts(const DialogTemplate& dialog) {
    std::map<int, std::u16string> texts;
    for (const DialogItem& item : dialog.items)
        texts[item.id] = item.text;
    return texts;
}

struct DialogCase {
    UINT id;
    const char16_t* title;
    std::vector<int> itemIds;
    std::map<int, std::u16string> texts;  // English texts of some controls
};

TEST_F(Resources, DialogTemplatesHaveTheSameControlsInBothLanguages) {
    const DialogCase dialogs[] = {
        {IDD_PROMOTION,
         u"Promotion in",
         {IDC_PROMOTE_QUEEN, IDC_PROMOTE_ROOK, IDC_PROMOTE_KNIGHT, IDC_PROMOTE_BISHOP},
         {{IDC_PROMOTE_QUEEN, u"Queen"},
          {IDC_PROMOTE_ROOK, u"Rook"},
          {IDC_PROMOTE_KNIGHT, u"Knight"},
          {IDC_PROMOTE_BISHOP, u"Bishop"}}},
        {IDD_ABOUT,
         u"About Velmora",
         {IDC_ABOUT_ICON, IDC_ABOUT_TITLE, IDC_ABOUT_VERSION, IDC_ABOUT_CREDITS, IDOK},
         {{IDC_ABOUT_ICON, u"#1"}, {IDC_ABOUT_TITLE, u"Velmora 2.0"}, {IDOK, u"OK"}}},
        {IDD_ABOUT_LANDSCAPE,
         u"About Velmora",
         {IDC_ABOUT_ICON, IDC_ABOUT_TITLE, IDC_ABOUT_VERSION, IDC_ABOUT_CREDITS, IDOK},
         {{IDC_ABOUT_ICON, u"#1"}, {IDC_ABOUT_TITLE, u"Velmora 2.0"}, {IDOK, u"OK"}}},
        {IDD_GAME_LIST,
         u"Velmora20",
         {IDC_SHOW_RESULT, IDC_SHOW_DATE, IDC_SHOW_EVENT, IDC_SHOW_ECO, IDC_SHOW_ROUND,
          IDC_SHOW_START, IDC_GAME_LIST},
         {{IDC_SHOW_RESULT, u"Result"},
          {IDC_SHOW_DATE, u"Date"},
          {IDC_SHOW_EVENT, u"Event"},
          {IDC_SHOW_ECO, u"ECO"},
          {IDC_SHOW_ROUND, u"Round"},
          {IDC_SHOW_START, u"Start"}}},
        {IDD_CHOOSE_MOVE,
         u"Choose move",
         {IDC_MOVES_LABEL, IDC_MOVE_LIST, IDOK, IDCANCEL},
         {{IDC_MOVES_LABEL, u"Moves :"}, {IDOK, u"OK"}, {IDCANCEL, u"Cancel"}}},
        {IDD_NEW_LINE,
         u"New line",
         {IDC_OTHER_MOVES_LABEL, IDC_OTHER_MOVES, IDC_NEW_LINE_ADD, IDC_NEW_LINE_REPLACE, IDCANCEL},
         {{IDC_OTHER_MOVES_LABEL, u"Other moves"},
          {IDC_NEW_LINE_ADD, u"Add"},
          {IDC_NEW_LINE_REPLACE, u"Replace"},
          {IDCANCEL, u"Cancel"}}},
        {IDD_GAME_WINDOW, u"Velmora20", {}, {}},
    };
    for (const DialogCase& c : dialogs) {
        SCOPED_TRACE(testing::Message() << "dialog " << c.id);
        const DialogTemplate english = ReadDialog(EnglishModule(), c.id);
        const DialogTemplate french = ReadDialog(FrenchModule(), c.id);
        ASSERT_TRUE(english.found);
        ASSERT_TRUE(french.found);
        EXPECT_EQ(english.title, c.title);
        EXPECT_EQ(ItemIds(english), c.itemIds);
        EXPECT_EQ(ItemIds(french), c.itemIds);
        EXPECT_EQ(french.style, english.style);
        EXPECT_EQ(english.font, u"MS Shell Dlg");
        const std::map<int, std::u16string> texts = ItemTexts(english);
        for (const auto& [id, text] : c.texts)
            EXPECT_EQ(texts.at(id), text) << "control " << id;
        // Every control fits inside its dialog.
        for (const DialogItem& item : english.items) {
            EXPECT_LE(item.x + item.cx, english.cx) << "control " << item.id;
            EXPECT_LE(item.y + item.cy, english.cy) << "control " << item.id;
        }
    }
    EXPECT_EQ(ReadDialog(FrenchModule(), IDD_ABOUT).title, u"À propos de Velmora");
    EXPECT_EQ(ItemTexts(ReadDialog(FrenchModule(), IDD_GAME_LIST)).at(IDC_SHOW_RESULT),
              u"Résultat");
    EXPECT_EQ(ItemTexts(ReadDialog(FrenchModule(), IDD_PROMOTION)).at(IDC_PROMOTE_QUEEN), u"Dame");
    EXPECT_EQ(ReadDialog(FrenchModule(), IDD_GAME_WINDOW).title, u"Velmora20");
}

TEST_F(Resources, AcceleratorsAreCtrlAForAboutAndCtrlQForClose) {
    HACCEL table = LoadAcceleratorsW(EnglishModule(), MAKEINTRESOURCEW(IDA_MAIN));
    ASSERT_NE(table, nullptr);
    ACCEL entries[4] = {};
    ASSERT_EQ(CopyAcceleratorTableW(table, entries, 4), 2);
    EXPECT_EQ(entries[0].fVirt & ~FNOINVERT, FVIRTKEY | FCONTROL);
    EXPECT_EQ(entries[0].key, 'A');
    EXPECT_EQ(entries[0].cmd, ID_ABOUT);
    EXPECT_EQ(entries[1].fVirt & ~FNOINVERT, FVIRTKEY | FCONTROL);
    EXPECT_EQ(entries[1].key, 'Q');
    EXPECT_EQ(entries[1].cmd, IDOK);
    DestroyAcceleratorTable(table);
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
