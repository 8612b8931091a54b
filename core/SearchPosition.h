// SearchPosition: a position that game search replays in place and tests for a match.
#pragma once

#include <array>
#include <cstdint>

#include "core/PositionValue.h"

namespace velmora {

// Moves are applied in place, without move-tree nodes, and piece counts are kept up to date so
// that after each move the search learns whether the wanted position (or material balance) is
// reached, or can never be reached any more in this game.
class SearchPosition {
  public:
    // Wanted counts by piece type, read at indices 1 (pawn) to 5 (queen).
    using WantedCounts = std::array<std::uint8_t, 6>;

    // Starts from the initial position. With a target the search looks for its squares; with
    // none (null) for the wanted material of each side.
    SearchPosition(const PositionValue* target, const WantedCounts& wantedWhite,
                   const WantedCounts& wantedBlack);

    // Applies a move that was already read and checked, with the bare promotion type (2..5).
    // Returns this object while the search should go on, null once the position matches or
    // can no longer match.
    SearchPosition* ApplyMove(int from, int to, int promotion);
    // Reads a position text; on success recounts the pieces and tests for a match.
    bool SetFromText(const char16_t* text);
    const PositionValue& Value() const { return value_; }

    std::uint32_t found = 0;
    std::uint32_t impossible = 0;
    // The move just applied: +n for White's move n, -n for Black's.
    std::int32_t signedMoveNumber = 0;
    std::uint32_t pieceCount = 0;
    std::uint32_t targetPieceCount = 0;
    // Pieces of each type 1..5 now on the board, at index type - 1; kings are not counted.
    std::array<std::uint8_t, 5> whiteCounts{};
    std::array<std::uint8_t, 5> blackCounts{};

  private:
    void CountPieces();
    void TestMatch();

    PositionValue value_;
    const PositionValue* target_;
    WantedCounts wantedWhite_;
    WantedCounts wantedBlack_;
};

}  // namespace velmora
