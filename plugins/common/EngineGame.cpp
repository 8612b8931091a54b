// EngineGame: positions read as FEN, moves checked by the core, limits and the texts shown.
#include "plugins/common/EngineGame.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "core/LegalMoves.h"
#include "core/MoveRules.h"
#include "core/PositionText.h"
#include "core/San.h"

namespace velmora::plugin {
namespace {

// Reads a position text as FEN. The core's reader places an en-passant square beyond the
// board (and the text of such a position carries two odd characters there), so the core reads
// the text without that field and the square is taken here, when a pawn of the side that just
// moved stands in front of it.
bool ReadFen(const char16_t* text, PositionValue* position) {
    std::u16string fen(text);
    std::size_t start = 0;
    for (int field = 0; field < 3 && start != std::u16string::npos; ++field) {
        start = fen.find(u' ', start);
        if (start != std::u16string::npos) ++start;
    }
    std::u16string square;
    if (start != std::u16string::npos) {
        const std::size_t end = std::min(fen.find(u' ', start), fen.size());
        square = fen.substr(start, end - start);
        fen = fen.substr(0, start) + u"-" + fen.substr(end);
    }
    if (!ReadPositionText(fen.c_str(), position)) return false;
    position->enPassant = kNoSquare;
    if (square.size() != 2 || square[0] < u'a' || square[0] > u'h') return true;
    const int file = square[0] - u'a';
    const int rank = position->sideToMove == kWhite ? 5 : 2;
    if (square[1] != u'1' + rank) return true;
    const int pawnSquare = file + 8 * (position->sideToMove == kWhite ? 4 : 3);
    const PieceCode pawn = static_cast<PieceCode>(kPawn + OtherSide(position->sideToMove));
    if (position->At(pawnSquare) == pawn) position->enPassant = MakeSquare(file, rank);
    return true;
}

// Writes the position as FEN text of 8-bit characters.
std::string FenOf(const PositionValue& position) {
    char16_t buffer[kPositionTextSize];
    const int length = WritePositionText(position, buffer);
    return std::string(buffer, buffer + length);
}

// Finds the legal move that coordinates name; a promotion without a letter is a queen's.
bool FindMove(const PositionValue& position, std::u16string_view coordinates, Move* found) {
    if (coordinates.size() < 4) return false;
    for (int k = 0; k < 4; ++k) {
        const char16_t c = coordinates[static_cast<std::size_t>(k)];
        if (k % 2 == 0 ? (c < u'a' || c > u'h') : (c < u'1' || c > u'8')) return false;
    }
    const Square from = MakeSquare(coordinates[0] - u'a', coordinates[1] - u'1');
    const Square to = MakeSquare(coordinates[2] - u'a', coordinates[3] - u'1');
    const int promotion = coordinates.size() > 4 ? TypeFromLetter(coordinates[4]) : 0;
    MoveList moves;
    LegalMoves(position, &moves);
    for (const Move& move : moves) {
        if (move.from != from || move.to != to) continue;
        if (move.promotion == promotion || (promotion == 0 && move.promotion == kQueen)) {
            *found = move;
            return true;
        }
    }
    return false;
}

}  // namespace

EngineGame::EngineGame() : level_(LevelOfCommand(kDefaultLevelCommand)) {}

bool EngineGame::Start(bool enginePlaysBlack, bool analyse, const char16_t* position) {
    enginePlaysBlack_ = enginePlaysBlack;
    analysing_ = analyse;
    current_ = PositionValue();
    baseFen_.clear();
    moves_.clear();
    return position == nullptr || SetPosition(position);
}

bool EngineGame::SetPosition(const char16_t* position) {
    PositionValue read;
    if (position == nullptr || !ReadFen(position, &read)) return false;
    current_ = read;
    baseFen_ = FenOf(read);
    moves_.clear();
    return true;
}

bool EngineGame::PlayMove(std::u16string_view coordinates) {
    Move move;
    if (!FindMove(current_, coordinates, &move)) return false;
    PlayOnValue(current_, move);
    char16_t text[8];
    const int length = WriteCoordinates(move, text);
    moves_.emplace_back(text, text + length);
    return true;
}

bool EngineGame::PlayMove(std::string_view coordinates) {
    return PlayMove(std::u16string(coordinates.begin(), coordinates.end()));
}

bool EngineGame::EngineToMove() const {
    return !analysing_ && (current_.sideToMove == kBlack) == enginePlaysBlack_;
}

// Keeps back a tenth of a fixed move time (at least 50 ms, at most a second) and a twentieth of
// a clock (at least 100 ms, at most two seconds) for the host's handling of the move. A clock
// that shows nothing on either side is not running: the level's own time stands in for it.
engine::SearchLimits EngineGame::Limits(const ClockTimes& clock) const {
    engine::SearchLimits limits;
    if (analysing_) {
        limits.infinite = true;
        return limits;
    }
    const int side = current_.sideToMove == kWhite ? 0 : 1;
    const bool clockRuns = clock.whiteMs > 0 || clock.blackMs > 0;
    const std::int32_t timePerMove = level_->numbers[0];
    if (timePerMove > 0) {
        std::int32_t ms = timePerMove * 1000;
        if (clockRuns) ms = std::min(ms, side == 0 ? clock.whiteMs : clock.blackMs);
        limits.moveTimeMs = std::max(1, ms - std::clamp(ms / 10, 50, 1000));
        return limits;
    }
    if (clockRuns) {
        limits.timeMs[0] = std::max(0, clock.whiteMs);
        limits.timeMs[1] = std::max(0, clock.blackMs);
        limits.movesToGo = std::max(0, clock.movesToGo);
    } else {
        limits.timeMs[0] = limits.timeMs[1] = level_->numbers[2] * 1000;
        limits.movesToGo = level_->numbers[1];
    }
    const int own = limits.timeMs[side];
    limits.timeMs[side] = std::max(0, own - std::clamp(own / 20, 100, 2000));
    limits.incrementMs[0] = limits.incrementMs[1] = level_->numbers[6] * 1000;
    return limits;
}

std::string EngineGame::ScoreText(bool mate, int score) const {
    const int white = current_.sideToMove == kWhite ? score : -score;
    if (mate) return "#" + std::to_string(white);
    char text[24];
    std::snprintf(text, sizeof text, "%s%d.%02d",
                  white > 0   ? "+"
                  : white < 0 ? "-"
                              : "",
                  std::abs(white) / 100, std::abs(white) % 100);
    return text;
}

std::string EngineGame::SanLine(const std::vector<std::string>& line, std::size_t maxLength) const {
    PositionValue position = current_;
    std::string text;
    for (const std::string& coordinates : line) {
        Move move;
        if (!FindMove(position, std::u16string(coordinates.begin(), coordinates.end()), &move))
            break;
        SanStyle style;
        style.withNumber = text.empty() || position.sideToMove == kWhite;
        char16_t san[kSanBufferSize];
        const int length = WriteSan(position, move, 0, style, san);
        const std::size_t needed = text.size() + (text.empty() ? 0 : 1) + length;
        if (needed > maxLength) break;
        if (!text.empty()) text += ' ';
        text.append(san, san + length);
        PlayOnValue(position, move);
    }
    return text;
}

bool EngineGame::GameOver(GameOverTexts* over) const {
    switch (GameEndOf(current_)) {
        case GameEnd::Checkmate:
            *over = {current_.sideToMove == kWhite ? u"0-1" : u"1-0", u"Checkmate"};
            return true;
        case GameEnd::Stalemate:
            *over = {u"1/2-1/2", u"Stalemate"};
            return true;
        case GameEnd::None:
            break;
    }
    return false;
}

}  // namespace velmora::plugin
