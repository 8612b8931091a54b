// CommentPane: the "COMMENT" control of the game window, a read-only text pane with a scroll
// bar showing the comment of the current position.
#pragma once

#include <windows.h>

namespace velmora {

constexpr const wchar_t* kCommentClass = L"COMMENT";

bool RegisterCommentClass(HINSTANCE instance);
void UnregisterCommentClass(HINSTANCE instance);

// Shows text (null or empty for none) in a comment pane; line ends become CR LF.
void SetCommentText(HWND pane, const wchar_t* text);

}  // namespace velmora
