// DocumentList: the desktop stand-in for the Pocket PC document list: a folder chooser above a
// list of files and their sizes, showing what DocumentFolders finds.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace velmora::pocketpc {

// Notifications to the parent (WM_NOTIFY from the list's control id).
constexpr UINT kDocListFileChosen = 11000;
constexpr UINT kDocListFolderChanged = 11012;
constexpr UINT kDocListRefresh = 1624;  // message that fills the list

struct DocListNotify {
    NMHDR header;
    wchar_t path[MAX_PATH];  // the chosen file, or the new folder ("" for all folders)
};

struct DocListCreate {
    HWND parent;
    const wchar_t* folder;  // the folder shown first; null for all folders
    const wchar_t* allFoldersText;
    const wchar_t* filterName;     // "PGN files"
    const wchar_t* filterPattern;  // "*.pgn"
    int controlId;
    // The second filter, offered beside the first; null for none.
    const wchar_t* otherFilterName = nullptr;     // "All files"
    const wchar_t* otherFilterPattern = nullptr;  // "*.*"
};
// DocList_Create: a child window listing the files that match the filter in the chosen folder,
// or in the documents root and its subfolders for "All Folders", with a folder chooser above
// the list. A tap on a file sends kDocListFileChosen to the parent, a folder change
// kDocListFolderChanged. The documents root is the current folder at start-up.
HWND CreateDocList(const DocListCreate& create);

// The files the list shows now, in its order: what a search over "the documents" looks at.
std::vector<std::wstring> DocListFiles(HWND docList);
// For tests: the filter chooser (a drop-down list of the filter names) and the file list.
HWND DocListFilterChooser(HWND docList);
HWND DocListFileList(HWND docList);

}  // namespace velmora::pocketpc
