// Position text: writing and reading the six fields.
#include "core/PositionText.h"

#include <cstdio>
#include <cstring>

namespace velmora {

namespace {

constexpr char kPieceLetters[] = "PRNBQKprnbqk";

// Reads characters of a null-terminated text without ever stepping past its terminator:
// every index at or beyond the end reads as 0.
class TextCursor {
  public:
    explicit TextCursor(const char16_t* text) : text_(text) {
        while (text_[length_] != 0)
            ++length_;
    }
    char16_t At(std::size_t index) const { return index < length_ ? text_[index] : u'\0'; }
    std::size_t Length() const { return length_; }

  private:
    const char16_t* text_;
    std::size_t length_ = 0;
};

}  // namespace

int WritePositionText(const PositionValue& position, char16_t* buffer) {
    int n = 0;
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        for (int file = 0; file < 8; ++file) {
            PieceCode code = position.At(file + 8 * rank);
            int type = TypeOf(code);
            if (code == 0 || type < kPawn || type > kKing) {
                ++empty;
                continue;
            }
            if (empty) buffer[n++] = static_cast<char16_t>(u'0' + empty);
            empty = 0;
            buffer[n++] =
                static_cast<char16_t>(kPieceLetters[type - 1 + (ColourOf(code) == kBlack ? 6 : 0)]);
        }
        if (empty) buffer[n++] = static_cast<char16_t>(u'0' + empty);
        buffer[n++] = u'/';
    }
    buffer[n - 1] = u' ';
    buffer[n++] = position.sideToMove == kWhite ? u'w' : u'b';
    buffer[n++] = u' ';
    int castleStart = n;
    if (position.castleWhiteKing) buffer[n++] = u'K';
    if (position.castleWhiteQueen) buffer[n++] = u'Q';
    if (position.castleBlackKing) buffer[n++] = u'k';
    if (position.castleBlackQueen) buffer[n++] = u'q';
    if (n == castleStart) buffer[n++] = u'-';
    buffer[n++] = u' ';
    if (position.enPassant < kNoSquare) {
        buffer[n++] = static_cast<char16_t>(u'a' + FileOf(position.enPassant));
        buffer[n++] = static_cast<char16_t>(u'1' + RankOf(position.enPassant));
    } else {
        buffer[n++] = u'-';
    }
    buffer[n++] = u' ';
    buffer[n++] = u'0';
    buffer[n++] = u' ';
    char number[16];
    int shown = position.sideToMove == kWhite ? position.moveNumber + 1 : position.moveNumber;
    int digits = std::snprintf(number, sizeof number, "%d", shown);
    for (int i = 0; i < digits; ++i)
        buffer[n++] = static_cast<char16_t>(number[i]);
    buffer[n] = 0;
    return n;
}

bool ReadPositionText(const char16_t* text, PositionValue* position) {
    TextCursor in(text);
    position->ClearSquares();
    position->SetCastling(false, false, false, false);
    PieceCode* board = position->MutableSquares();

    std::size_t i = 0;
    int rank = 7;
    int file = 0;
    auto advance = [&] {
        if (++file == 8) {
            file = 0;
            --rank;
        }
    };
    for (char16_t c; (c = in.At(i)) != 0 && c != u' '; ++i) {
        const char* letter = c < 128 ? std::strchr(kPieceLetters, static_cast<char>(c)) : nullptr;
        if (letter != nullptr) {
            int index = static_cast<int>(letter - kPieceLetters);
            PieceCode code = static_cast<PieceCode>(index < 6 ? index + 1 : 32 + index - 5);
            // More than 64 squares in the text: the extra pieces have nowhere to go.
            if (rank >= 0) board[file + 8 * rank] = code;
            advance();
        } else if (c >= u'1' && c <= u'8') {
            for (int k = c - u'0'; k > 0; --k)
                advance();
        }
    }

    position->sideToMove = in.At(i + 1) == u'w' ? kWhite : kBlack;
    i = in.At(i) == 0 ? in.Length() : i + 3;

    for (char16_t c; (c = in.At(i)) != 0 && c != u' '; ++i) {
        switch (c) {
            case u'K':
                position->castleWhiteKing = 1;
                break;
            case u'Q':
                position->castleWhiteQueen = 1;
                break;
            case u'k':
                position->castleBlackKing = 1;
                break;
            case u'q':
                position->castleBlackQueen = 1;
                break;
            case u'-':
                break;
            default:
                return false;
        }
    }
    if (in.At(i) == u' ') ++i;

    char16_t c = in.At(i);
    if (c == u'-') {
        position->enPassant = kNoSquare;
    } else if (c >= u'a' && c <= u'h') {
        char16_t digit = in.At(i + 1);
        if (digit < u'1' || digit > u'8') return false;
        // Only the letter goes into the value, which lands on 128..191 and so never names a
        // board square: an en-passant square read from text never allows a capture.
        position->enPassant = static_cast<Square>(((c - u'1') * 8 + (c - u'a')) & 255);
    }
    while (in.At(i) != 0 && in.At(i) != u' ')
        ++i;  // rest of the en-passant field
    if (in.At(i) == u' ') ++i;
    while (in.At(i) != 0 && in.At(i) != u' ')
        ++i;  // half-move clock
    if (in.At(i) == u' ') ++i;

    // A text without a move number (four fields, as position lists often have them) starts
    // at move 1 rather than at the 0 an empty number would give.
    std::uint8_t number = 0;
    if (in.At(i) < u'0' || in.At(i) > u'9') number = 1;
    for (char16_t d; (d = in.At(i)) >= u'0' && d <= u'9'; ++i) {
        number = static_cast<std::uint8_t>(number * 10 + (d - u'0'));
    }
    if (position->sideToMove == kWhite) --number;
    position->moveNumber = number;
    position->LocateKings();
    return true;
}

}  // namespace velmora
