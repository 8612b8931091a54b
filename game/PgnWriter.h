// PgnWriter: a game as PGN text, move text wrapped at 80 columns, CR LF line ends.
#pragma once

#include <string_view>

#include "platform/File.h"

namespace velmora {

class Game;
class MoveNode;

class PgnWriter {
  public:
    // Whether a piece of text may be cut at any byte to fit the line, or stays whole on a line
    // of its own when it does not fit (position texts, comment pieces).
    enum class Wrap { Anywhere, Whole };

    explicit PgnWriter(platform::File& file) : file_(&file) {}

    // Writes the tag lines, a blank line, the move text, the result and a blank line.
    // Returns the first write error, 0 when everything was written.
    platform::ErrorCode WriteGame(Game& game);
    // Writes one piece of text under the 80-column rule (see the .cpp). Null text only resets
    // the column.
    void WriteWrapped(const char16_t* text, Wrap wrap);
    // Writes the moves of the line that starts at first, each followed by its variations.
    void WriteMoves(MoveNode* first, bool numberFirst);
    // Writes a comment, cut at blanks into pieces of at most 511 characters.
    void WriteComment(const char16_t* text);
    int Column() const { return column_; }

  private:
    void WritePiece(std::u16string_view text, Wrap wrap);
    void WrapBytes(const char* bytes, int count, Wrap wrap);
    void WriteFitting(const char* bytes, int count);
    void WriteTag(std::u16string_view opening, std::u16string_view value);
    void WriteBytes(const char* bytes, int count);

    platform::File* file_;
    int column_ = 0;  // bytes already written on the current output line
    platform::ErrorCode error_ = 0;
};

// Scans bytes from index from down to 0 for a place to break a line: a blank at i gives i
// (with *skip 1: the blank is dropped), "(" or "{" at i gives i + 1 (*skip 0). -1 if none.
int FindBreak(const char* bytes, int from, int* skip);

}  // namespace velmora
