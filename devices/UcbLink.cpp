// The UCB chessboard link: the board's one-letter requests, its moves, and the lines the program
// writes back.
#include "devices/UcbLink.h"

#include <cstddef>
#include <string_view>

#include "core/MoveRules.h"
#include "game/Game.h"
#include "game/MoveTree.h"
#include "game/Position.h"
#include "platform/CodePage.h"
#include "platform/DebugOutput.h"

namespace velmora {
namespace {

// The comment pane shows at most this many characters of a received line.
constexpr std::size_t kShownCharacters = 32;

// Returns the first bytes of line, no more than maxBytes of them, without looking past its end.
std::string_view Head(const char* line, std::size_t maxBytes) {
    std::size_t length = 0;
    while (length < maxBytes && line[length] != '\0')
        ++length;
    return {line, length};
}

// Maps a file letter and a rank digit to a square the way the board's lines are read: values
// outside the board wrap modulo 256 and are refused later by the move rules.
int BoardSquare(char file, char rank) {
    return ((rank - '1') * 8 + (file - 'a')) & 255;
}

// The letter the dump shows for a piece of either colour; blank for an empty square.
char DumpLetter(PieceCode code) {
    const int type = TypeOf(code);
    return type >= kPawn && type <= kKing ? "PRNBQK"[type - kPawn] : ' ';
}

}  // namespace

UcbLink::UcbLink(Game& game, GameView* window, UcbLinkHost& host, void* promotionContext)
    : game_(game), window_(window), host_(host), promotionContext_(promotionContext) {}

// Shows and traces the line, then acts on its first character. Letters are case-sensitive,
// except that a move may start with 'M' or 'm'.
void UcbLink::OnBoardLine(const char* line) {
    if (line == nullptr) line = "";
    char16_t shown[kShownCharacters + 2];
    const std::size_t length = platform::AnsiToWide(
        Head(line, kShownCharacters * platform::MaxAnsiCharBytes()), shown, kShownCharacters);
    shown[length] = 0;
    host_.ShowBoardLine(shown);
    shown[length] = u'\n';
    shown[length + 1] = 0;
    platform::DebugTrace(shown);

    // The answers go out whether or not the board hears them: a failed write is not retried.
    switch (line[0]) {
        case 'X':
            host_.SendToBoard("Xmit on\r\n");
            break;
        case 'V':
            host_.SendToBoard("Video Mode\r\n");
            break;
        case 'A':
            host_.SendToBoard("Autoclock Off\r\n");
            break;
        case 'E':
            host_.SendToBoard("Easy Mode Off\r\n");
            break;
        case 'I':
            host_.SendToBoard(kIdentification);
            break;
        case 'P':
            host_.SendToBoard(PositionDump(game_.Current()->Value()).c_str());
            break;
        case 'T':
            if (Position* previous = game_.Current()->PreviousPosition()) {
                game_.SetCurrent(previous);
                host_.RedrawBoard();
            }
            break;
        case 'N':
            game_.GoToStart();
            break;
        case 'M':
        case 'm':
            PlayBoardMove(line);
            break;
        default:
            break;
    }
}

// Reads "Me2e4" or "Me7e8/Q" and follows the move when the tree already has it, else plays it
// as a new move (a variation beside any continuation) without asking. A line too short, a move
// from an empty square or one the rules refuse is dropped without a word.
void UcbLink::PlayBoardMove(const char* line) {
    for (int i = 1; i <= 4; ++i) {
        if (line[i] == '\0') return;
    }
    const int from = BoardSquare(line[1], line[2]);
    const int to = BoardSquare(line[3], line[4]);
    int promotion = line[5] == '/' ? TypeFromLetter(line[6]) : 0;

    Position* current = game_.Current();
    // The rules would let "nothing" move from an empty square: that is a misread, not a move.
    if (current->GetSquare(from) == 0) return;
    // The piece letter only counts on a pawn move to the last rank, so that "Me2e4/Q" is still
    // e2-e4. A promotion without a letter gets its piece here, as a tapped one does, so that a
    // promotion already in the tree is followed instead of being added a second time.
    if (from < 64 && to < 64) {
        const PositionValue& value = current->Value();
        const auto fromSquare = static_cast<Square>(from), toSquare = static_cast<Square>(to);
        if (!IsPromotion(value, fromSquare, toSquare)) {
            promotion = 0;
        } else if (promotion == 0 && IsLegalMove(value, fromSquare, toSquare)) {
            if (PromotionChooser chooser = GetPromotionChooser())
                promotion = chooser(promotionContext_);
            if (promotion < kRook || promotion > kQueen) promotion = kQueen;
        }
    }

    if (Position* known = current->FindContinuation(from, to, promotion)) {
        host_.RedrawBoard();
        game_.SetCurrent(known);
        return;
    }
    Position* next = current->PlayMove(from, to, nullptr, promotion, promotionContext_);
    if (next == nullptr) return;
    host_.RedrawBoard();
    game_.modified = 1;
    game_.NotifyChanged(next->ArrivalNode(), window_);
    game_.SetCurrent(next);
}

std::string UcbLink::MoveLine(const MoveNode& node) {
    std::string line = "M";
    line += static_cast<char>('a' + FileOf(node.from));
    line += static_cast<char>('1' + RankOf(node.from));
    line += '-';
    line += static_cast<char>('a' + FileOf(node.to));
    line += static_cast<char>('1' + RankOf(node.to));
    if (const char letter = LetterFromType(node.promotion)) {
        line += '/';
        line += letter;
    }
    line += "\r\n";
    return line;
}

std::string UcbLink::PositionDump(const PositionValue& position) {
    std::string dump;
    dump.reserve(8 * 12 + 1);
    for (int rank = 7; rank >= 0; --rank) {
        dump += '.';
        dump += static_cast<char>('1' + rank);
        for (int file = 0; file < 8; ++file)
            dump += DumpLetter(position.At(MakeSquare(file, rank)));
        if (rank == 0) dump += position.sideToMove == kWhite ? '+' : '-';
        dump += "\r\n";
    }
    return dump;
}

}  // namespace velmora
