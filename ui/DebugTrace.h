// DebugTrace: formatted lines for the debug output, which never change what the program does.
#pragma once

namespace velmora {

// Formats text (wsprintfW, up to three arguments) and writes it to the debug output.
void DebugTrace(const wchar_t* format, ...);

}  // namespace velmora
