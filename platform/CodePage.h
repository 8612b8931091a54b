// Conversions between the program's UTF-16 text and the 8-bit ANSI code page or UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace velmora::platform {

// Converts ANSI bytes (the system code page on Windows, Windows-1252 elsewhere) to UTF-16.
std::u16string AnsiToWide(std::string_view bytes);
// The same into out, which has room for capacity units; returns the number written, at most
// capacity (the rest is dropped). Nothing is allocated: readers convert every line this way.
std::size_t AnsiToWide(std::string_view bytes, char16_t* out, std::size_t capacity);
// The most bytes one character of the ANSI code page takes (1 for Windows-1252): n characters
// of converted text never come from more than n times as many bytes.
std::size_t MaxAnsiCharBytes();
// Converts UTF-16 to ANSI bytes; a code unit with no exact ANSI byte becomes '?'.
std::string WideToAnsi(std::u16string_view text);

// Converts UTF-8 to UTF-16; each ill-formed part of the input becomes one U+FFFD.
std::u16string Utf8ToWide(std::string_view bytes);
// Converts UTF-16 to UTF-8; an unpaired surrogate becomes U+FFFD.
std::string WideToUtf8(std::u16string_view text);

}  // namespace velmora::platform
