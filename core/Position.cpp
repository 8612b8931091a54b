// Position: construction, copying, comments, continuations and the position text.
#include "core/Position.h"

#include <cstdio>
#include <cstring>

#include "core/BlockRecycler.h"
#include "core/MoveRules.h"
#include "game/MoveTree.h"

namespace velmora {

namespace {

constexpr PieceCode kInitialBoard[64] = {
    2,  3,  4,  5,  6,  4,  3,  2,  // rank 1
    1,  1,  1,  1,  1,  1,  1,  1,  // rank 2
    0,  0,  0,  0,  0,  0,  0,  0,  0, 0, 0, 0, 0,  0,  0,  0,  0,  0,  0,  0,
    0,  0,  0,  0,  0,  0,  0,  0,  0, 0, 0, 0, 33, 33, 33, 33, 33, 33, 33, 33,  // rank 7
    34, 35, 36, 37, 38, 36, 35, 34,                                              // rank 8
};

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

Position::Position()
    : castleWhiteKing(1),
      castleWhiteQueen(1),
      castleBlackKing(1),
      castleBlackQueen(1),
      enPassant(kNoSquare),
      testedFrom(kNoSquare),
      testedTo(kNoSquare),
      testedResult(0),
      sideToMove(kWhite),
      evaluation(0),
      moveNumber(0),
      setUp(0) {
    std::memcpy(board, kInitialBoard, sizeof board);
}

void* Position::operator new(std::size_t size) {
    return BlockRecycler<Position>::Allocate(size);
}

void Position::operator delete(void* block, std::size_t size) {
    BlockRecycler<Position>::Free(block, size);
}

Position::~Position() {
    MoveNode* line = firstContinuation_;
    firstContinuation_ = nullptr;
    DestroyLine(line);
}

void Position::CopyFrom(const Position& other) {
    std::memcpy(board, other.board, sizeof board);
    castleWhiteKing = other.castleWhiteKing;
    castleWhiteQueen = other.castleWhiteQueen;
    castleBlackKing = other.castleBlackKing;
    castleBlackQueen = other.castleBlackQueen;
    enPassant = other.enPassant;
    testedFrom = other.testedFrom;
    testedTo = other.testedTo;
    testedResult = other.testedResult;
    sideToMove = other.sideToMove;
    evaluation = other.evaluation;
    moveNumber = other.moveNumber;
    setUp = 1;
    // The object is fresh: whatever the links held is not ours to free.
    comment_.release();
    arrivalNode_ = nullptr;
    firstContinuation_ = nullptr;
}

void Position::Clear() {
    std::memset(board, 0, sizeof board);
}

void Position::SetState(int castleWK, int castleWQ, int castleBK, int castleBQ,
                        int enPassantSquare) {
    castleWhiteKing = static_cast<std::uint8_t>(castleWK);
    castleWhiteQueen = static_cast<std::uint8_t>(castleWQ);
    castleBlackKing = static_cast<std::uint8_t>(castleBK);
    castleBlackQueen = static_cast<std::uint8_t>(castleBQ);
    enPassant = static_cast<Square>(enPassantSquare);
}

void Position::CheckIfStandardStart() {
    setUp = std::memcmp(board, kInitialBoard, sizeof board) != 0 ? 1 : 0;
}

void Position::SetComment(char16_t* text, int copy) {
    comment_.reset();
    if (text == nullptr) return;
    if (copy == 0) {
        comment_.reset(text);
        return;
    }
    std::size_t length = 0;
    while (text[length] != 0)
        ++length;
    comment_.reset(new char16_t[length + 1]);
    std::memcpy(comment_.get(), text, (length + 1) * sizeof(char16_t));
}

int Position::ArrivalLevel() const {
    return arrivalNode_ ? arrivalNode_->level : 0;
}

Position* Position::PreviousPosition() const {
    return arrivalNode_ ? arrivalNode_->positionBefore : nullptr;
}

Position* Position::FindContinuation(int from, int to, int promotion) const {
    for (MoveNode* node = firstContinuation_; node; node = node->nextAlternative) {
        if (node->from == from && node->to == to && node->promotion == promotion) {
            return node->positionAfter;
        }
    }
    return nullptr;
}

// Writes ranks 8..1, side, castling, en passant, a half-move clock of 0 and the move number.
// An en-passant value that is no board square still writes two characters computed from it.
int Position::WriteText(char16_t* buffer) const {
    int n = 0;
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        for (int file = 0; file < 8; ++file) {
            PieceCode code = board[file + 8 * rank];
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
    buffer[n++] = sideToMove == kWhite ? u'w' : u'b';
    buffer[n++] = u' ';
    int castleStart = n;
    if (castleWhiteKing) buffer[n++] = u'K';
    if (castleWhiteQueen) buffer[n++] = u'Q';
    if (castleBlackKing) buffer[n++] = u'k';
    if (castleBlackQueen) buffer[n++] = u'q';
    if (n == castleStart) buffer[n++] = u'-';
    buffer[n++] = u' ';
    if (enPassant < kNoSquare) {
        buffer[n++] = static_cast<char16_t>(u'a' + FileOf(enPassant));
        buffer[n++] = static_cast<char16_t>(u'1' + RankOf(enPassant));
    } else {
        buffer[n++] = u'-';
    }
    buffer[n++] = u' ';
    buffer[n++] = u'0';
    buffer[n++] = u' ';
    char number[16];
    int shown = sideToMove == kWhite ? moveNumber + 1 : moveNumber;
    int digits = std::snprintf(number, sizeof number, "%d", shown);
    for (int i = 0; i < digits; ++i)
        buffer[n++] = static_cast<char16_t>(number[i]);
    buffer[n] = 0;
    return n;
}

// Reads a position text into this position. The board is cleared first and is not restored
// when a later field fails. Missing trailing fields read as empty, the move number as 1.
int Position::SetFromText(const char16_t* text) {
    TextCursor in(text);
    Clear();
    castleWhiteKing = castleWhiteQueen = castleBlackKing = castleBlackQueen = 0;

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

    sideToMove = in.At(i + 1) == u'w' ? kWhite : kBlack;
    i = in.At(i) == 0 ? in.Length() : i + 3;

    for (char16_t c; (c = in.At(i)) != 0 && c != u' '; ++i) {
        switch (c) {
            case u'K':
                castleWhiteKing = 1;
                break;
            case u'Q':
                castleWhiteQueen = 1;
                break;
            case u'k':
                castleBlackKing = 1;
                break;
            case u'q':
                castleBlackQueen = 1;
                break;
            case u'-':
                break;
            default:
                return 0;
        }
    }
    if (in.At(i) == u' ') ++i;

    char16_t c = in.At(i);
    if (c == u'-') {
        enPassant = kNoSquare;
    } else if (c >= u'a' && c <= u'h') {
        char16_t digit = in.At(i + 1);
        if (digit < u'1' || digit > u'8') return 0;
        // Only the letter goes into the value, which lands on 128..191 and so never names a
        // board square: an en-passant square read from text never allows a capture.
        enPassant = static_cast<Square>(((c - u'1') * 8 + (c - u'a')) & 255);
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
    if (sideToMove == kWhite) --number;
    moveNumber = number;
    setUp = 1;
    return 1;
}

// Builds the position from -> to produces on previous, with its arrival node: squares and
// castle flags copied, side and move number advanced, capture, en passant, castling rook and
// double step handled. Legality, castle-flag updates and promotion are the caller's.
Position::Position(Position& previous, Square from, Square to)
    : castleWhiteKing(previous.castleWhiteKing),
      castleWhiteQueen(previous.castleWhiteQueen),
      castleBlackKing(previous.castleBlackKing),
      castleBlackQueen(previous.castleBlackQueen),
      enPassant(kNoSquare),
      testedFrom(kNoSquare),
      testedTo(kNoSquare),
      testedResult(0),
      sideToMove(OtherSide(previous.sideToMove)),
      evaluation(0),
      moveNumber(previous.moveNumber),
      setUp(0) {
    std::memcpy(board, previous.board, sizeof board);
    if (sideToMove == kBlack) ++moveNumber;
    MoveNode* node = new MoveNode(&previous, this, from, to, moveNumber);
    arrivalNode_ = node;

    MoveEffects effects = ApplyMoveToBoard(board, from, to, previous.enPassant);
    if (effects.captured || effects.enPassantCapture) {
        node->RecordCapture(effects.capturedCode, effects.enPassantCapture ? to : Square{0});
    }
    node->castlingKind = effects.castlingKind;
    enPassant = effects.newEnPassant;
}

}  // namespace velmora
