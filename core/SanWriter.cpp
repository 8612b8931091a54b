// SAN writing: move numbers, piece letters, disambiguation, captures, promotion, glyphs.
#include <cstdio>

#include "core/MoveRules.h"
#include "core/San.h"

namespace velmora {

namespace {

const char* const kGlyphSymbols[] = {"!", "?", "!!", "??", "!?", "?!"};

class TextWriter {
  public:
    explicit TextWriter(char16_t* buffer) : buffer_(buffer) {}
    void Put(char c) { buffer_[length_++] = static_cast<char16_t>(static_cast<unsigned char>(c)); }
    void Put(const char* text) {
        while (*text)
            Put(*text++);
    }
    void PutSquare(int square) {
        Put(static_cast<char>('a' + FileOf(square)));
        Put(static_cast<char>('1' + RankOf(square)));
    }
    void PutNumber(const char* format, int value) {
        char text[16];
        std::snprintf(text, sizeof text, format, value);
        Put(text);
    }
    int Finish() {
        buffer_[length_] = 0;
        return length_;
    }

  private:
    char16_t* buffer_;
    int length_ = 0;
};

// Writes what tells the mover apart from the other pieces of its kind that could go to the
// same square: nothing, its file letter, its rank digit, or both when neither alone does.
void PutDisambiguation(TextWriter& out, const PositionValue& before, Move move) {
    Square candidates[64];
    int count = CandidateOrigins(before, 0, move.from, move.to, candidates);
    if (count == 0) return;
    bool fileShared = false;
    bool rankShared = false;
    for (int k = 0; k < count; ++k) {
        fileShared |= FileOf(candidates[k]) == FileOf(move.from);
        rankShared |= RankOf(candidates[k]) == RankOf(move.from);
    }
    char fileLetter = static_cast<char>('a' + FileOf(move.from));
    char rankDigit = static_cast<char>('1' + RankOf(move.from));
    if (!fileShared) {
        out.Put(fileLetter);
    } else if (!rankShared) {
        out.Put(rankDigit);
    } else {
        // Intended: with file and rank both shared the letter is four places beyond the file.
        out.Put(static_cast<char>(fileLetter + 4));
        out.Put(rankDigit);
    }
}

}  // namespace

int WriteSan(const PositionValue& before, Move move, std::uint8_t nag, SanStyle style,
             char16_t* buffer) {
    TextWriter out(buffer);
    const PieceCode code = before.SquareOrEmpty(move.from);
    PositionValue after = before;
    const PlayedMove played = PlayOnValue(after, move);
    const bool captures = played.effects.captured || played.effects.enPassantCapture;
    if (style.withNumber) {
        out.PutNumber("%d.", after.moveNumber);
        out.Put(ColourOf(code) == kBlack ? ".. " : " ");
    }
    switch (TypeOf(code)) {
        case kPawn:
            if (captures) {
                out.Put(static_cast<char>('a' + FileOf(move.from)));
                out.Put('x');
            }
            out.PutSquare(move.to);
            break;
        case kRook:
        case kKnight:
        case kBishop:
        case kQueen:
            out.Put("RNBQ"[TypeOf(code) - kRook]);
            PutDisambiguation(out, before, move);
            if (captures) out.Put('x');
            out.PutSquare(move.to);
            break;
        case kKing:
            if (played.effects.castlingKind == 1) {
                out.Put("O-O");
            } else if (played.effects.castlingKind == 2) {
                out.Put("O-O-O");
            } else {
                out.Put('K');
                if (captures) out.Put('x');
                out.PutSquare(move.to);
            }
            break;
        default:
            out.PutSquare(move.to);
            break;
    }
    if (played.promotion >= kRook && played.promotion <= kQueen) {
        out.Put('=');
        out.Put("RNBQ"[played.promotion - kRook]);
    }
    // Mate is not told apart from check: a mating move is marked "+" like any check.
    if (played.givesCheck) out.Put('+');
    if (style.nagAsDollar && nag != 0) {
        out.PutNumber(" $%d", nag);
    } else if (nag >= 1 && nag <= 6) {
        out.Put(kGlyphSymbols[nag - 1]);
    }
    return out.Finish();
}

int WriteCoordinates(Move move, char16_t* buffer) {
    TextWriter out(buffer);
    out.PutSquare(move.from);
    out.PutSquare(move.to);
    if (char letter = LetterFromType(move.promotion)) out.Put(letter);
    return out.Finish();
}

}  // namespace velmora
