// PositionSetup: the rules of the board editor: placing pieces by taps, copying a board, and
// the checks a set-up position must pass before it starts a game.
#pragma once

#include <cstdint>
#include <string>

#include "core/PositionValue.h"

namespace velmora {

// Puts piece on square, or empties the square when piece already stands there.
void TapSetupSquare(PositionValue& board, int square, PieceCode piece);

// What the editor's controls hold besides the board.
struct SetupChoices {
    // The castling boxes: white O-O, white O-O-O, black O-O, black O-O-O.
    bool castling[4] = {true, true, true, true};
    bool whiteToPlay = true;
    // The move number as the user sees it (1 for the first move).
    std::uint32_t moveNumber = 1;
};

// The controls that show a board copied into the editor: castle flags, side, and the stored
// move number plus one (for either side).
SetupChoices ChoicesShowing(const PositionValue& board);

// How validation ended. A failure leaves the board with whatever castle flags were already
// written; an accepted board also has its side to move and move number.
struct SetupVerdict {
    bool accepted = false;
    // Shown with the caption "Invalid position" when not accepted.
    std::u16string error;
    // Non-empty when castling boxes were turned off ("White O-O,Black O-O disabled"); shown
    // with the caption "Setup board" as a warning, whatever the outcome.
    std::u16string castlingWarning;
    // The castling boxes after validation (a box whose king or rook is missing is cleared).
    bool castling[4] = {};
};

// Checks board and choices in the editor's order: one king of each colour, castling rights
// that the kings and rooks allow, and no check on the side that is not to move. Writes the
// castle flags into board once the kings passed, and the side and move number on success.
SetupVerdict ValidateSetup(PositionValue& board, const SetupChoices& choices);

}  // namespace velmora
