// Helpers the chess tests share: square names, position texts, moves and chess-only filtering.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "core/ChessTypes.h"
#include "core/MoveRules.h"
#include "core/PositionText.h"
#include "core/PositionValue.h"

namespace velmora::testing {

constexpr const char* kStartText = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
// Both sides' rooks at home and nothing between them and their kings.
constexpr const char* kCastles = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
constexpr const char* kCastlesBlack = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1";
// White pawn e4 facing black pawn d5.
constexpr const char* kPawns = "4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1";
constexpr const char* kKiwipete =
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";

// Returns the square named like "e4".
constexpr Square Sq(const char* name) {
    return MakeSquare(name[0] - 'a', name[1] - '1');
}
// Returns the move written "e2e4" or "e7e8q".
inline Move MoveOf(const std::string& text) {
    return Move{Sq(text.c_str()), Sq(text.c_str() + 2),
                static_cast<std::uint8_t>(text.size() > 4 ? TypeFromLetter(text[4]) : 0)};
}

inline std::string Narrow(const char16_t* text) {
    std::string out;
    for (; text && *text; ++text)
        out += static_cast<char>(*text);
    return out;
}

// Reads a position text; a text the reader rejects fails the calling test.
inline PositionValue FromText(const std::string& text) {
    PositionValue position;
    EXPECT_TRUE(ReadPositionText(std::u16string(text.begin(), text.end()).c_str(), &position))
        << text;
    return position;
}

inline std::string TextOf(const PositionValue& position) {
    char16_t buffer[kPositionTextSize] = {};
    int length = WritePositionText(position, buffer);
    EXPECT_EQ(length, static_cast<int>(Narrow(buffer).size()));
    return Narrow(buffer);
}

// Plays the moves written "e2e4 e7e5" in turn, each of which must pass the legality test, and
// returns what the last one did.
inline PlayedMove PlayMoves(PositionValue& position, const std::string& moves) {
    std::istringstream words(moves);
    PlayedMove played;
    for (std::string word; words >> word;) {
        const Move move = MoveOf(word);
        EXPECT_TRUE(IsLegalMove(position, move.from, move.to)) << TextOf(position) << " " << word;
        played = PlayOnValue(position, move);
    }
    return played;
}

// Splits "e2e4 1, g1f3 0" into its comma-separated cases, each a list of blank-separated words.
inline std::vector<std::vector<std::string>> Cases(const std::string& list) {
    std::vector<std::vector<std::string>> cases;
    std::istringstream all(list);
    for (std::string one; std::getline(all, one, ',');) {
        std::istringstream words(one);
        cases.emplace_back();
        for (std::string word; words >> word;)
            cases.back().push_back(word);
    }
    return cases;
}

// Moves these rules accept that chess forbids: a pawn double step over an occupied square, or
// castling without the rook in its corner or across a square an enemy pawn attacks diagonally.
enum Objection { kNone = 0, kStepsOverPiece = 1, kCastlesIllegally = 2 };

// Names why chess would refuse a move these rules accept.
inline int ChessObjection(const PositionValue& position, Square from, Square to) {
    PieceCode code = position.At(from);
    if (TypeOf(code) == kPawn && std::abs(RankOf(to) - RankOf(from)) == 2) {
        return position.At((from + to) / 2) ? kStepsOverPiece : kNone;
    }
    if (TypeOf(code) != kKing || std::abs(FileOf(to) - FileOf(from)) != 2) return kNone;
    Colour colour = ColourOf(code);
    int rank = RankOf(from), crossed = FileOf(to) == 6 ? 5 : 3;
    int pawnRank = colour == kWhite ? rank + 1 : rank - 1;
    PieceCode enemyPawn = OtherSide(colour) + kPawn;
    bool rookHome = position.At(MakeSquare(crossed == 5 ? 7 : 0, rank)) == colour + kRook;
    bool crossedAttacked = position.At(MakeSquare(crossed - 1, pawnRank)) == enemyPawn ||
                           position.At(MakeSquare(crossed + 1, pawnRank)) == enemyPawn;
    return rookHome && !crossedAttacked ? kNone : kCastlesIllegally;
}

}  // namespace velmora::testing
