// SAN writing: move numbers, piece letters, disambiguation, captures, promotion, glyphs.
#include <cstdio>

#include "core/MoveRules.h"
#include "core/Position.h"
#include "core/San.h"
#include "game/MoveTree.h"

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

}  // namespace

void ComputeDisambiguation(MoveNode* node) {
    if (node->disambiguation[0] != u'?') return;
    Square candidates[64];
    int count = CandidateOrigins(*node->positionBefore, 0, node->from, node->to, candidates);
    bool fileShared = false;
    bool rankShared = false;
    for (int k = 0; k < count; ++k) {
        fileShared |= FileOf(candidates[k]) == FileOf(node->from);
        rankShared |= RankOf(candidates[k]) == RankOf(node->from);
    }
    char16_t* text = node->disambiguation;
    char16_t fileLetter = static_cast<char16_t>(u'a' + FileOf(node->from));
    char16_t rankDigit = static_cast<char16_t>(u'1' + RankOf(node->from));
    text[0] = text[1] = text[2] = 0;
    if (count == 0) return;
    if (!fileShared) {
        text[0] = fileLetter;
    } else if (!rankShared) {
        text[0] = rankDigit;
    } else {
        // Intended: with file and rank both shared the letter is four places beyond the file.
        text[0] = static_cast<char16_t>(fileLetter + 4);
        text[1] = rankDigit;
    }
}

// Writes the move as SAN. The moving piece is read from the position before the move, which
// still holds it. A "move" of an empty square (possible on a set-up board without kings)
// writes just its target square.
int WriteSan(MoveNode* node, char16_t* buffer, int withNumber, int nagAsDollar) {
    TextWriter out(buffer);
    PieceCode code = node->positionBefore->GetSquare(node->from);
    if (withNumber) {
        out.PutNumber("%d.", node->moveNumber);
        out.Put(ColourOf(code) == kBlack ? ".. " : " ");
    }
    switch (TypeOf(code)) {
        case kPawn:
            if (node->captures) {
                out.Put(static_cast<char>('a' + FileOf(node->from)));
                out.Put('x');
            }
            out.PutSquare(node->to);
            break;
        case kRook:
        case kKnight:
        case kBishop:
        case kQueen:
            out.Put("RNBQ"[TypeOf(code) - kRook]);
            ComputeDisambiguation(node);
            for (const char16_t* d = node->disambiguation; *d; ++d)
                out.Put(static_cast<char>(*d));
            if (node->captures) out.Put('x');
            out.PutSquare(node->to);
            break;
        case kKing:
            if (node->castlingKind == 1) {
                out.Put("O-O");
            } else if (node->castlingKind == 2) {
                out.Put("O-O-O");
            } else {
                out.Put('K');
                if (node->captures) out.Put('x');
                out.PutSquare(node->to);
            }
            break;
        default:
            out.PutSquare(node->to);
            break;
    }
    if (node->promotion >= kRook && node->promotion <= kQueen) {
        out.Put('=');
        out.Put("RNBQ"[node->promotion - kRook]);
    }
    // Mate is not told apart from check: a mating move is marked "+" like any check.
    if (node->givesCheck) out.Put('+');
    if (nagAsDollar && node->nag != 0) {
        out.PutNumber(" $%d", node->nag);
    } else if (node->nag >= 1 && node->nag <= 6) {
        out.Put(kGlyphSymbols[node->nag - 1]);
    }
    return out.Finish();
}

int WriteCoordinates(const MoveNode* node, char16_t* buffer) {
    TextWriter out(buffer);
    out.PutSquare(node->from);
    out.PutSquare(node->to);
    if (char letter = LetterFromType(node->promotion)) out.Put(letter);
    return out.Finish();
}

}  // namespace velmora
