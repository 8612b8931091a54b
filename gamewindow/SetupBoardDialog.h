// SetupBoardDialog: the board editor. Pieces are placed by tapping, the side to move, the
// castling rights and the move number are set beside the board, and OK accepts the position as
// the start of a game only once it passes the set-up rules.
#pragma once

#include "core/ChessTypes.h"
#include "core/PositionSetup.h"
#include "gamewindow/BoardRenderer.h"
#include "ui/DialogBase.h"

namespace velmora {

class Game;
class Position;

class SetupBoardDialog : public DialogBase {
  public:
    // Edits game's start position. source (may be null) is what "Copy board" copies; with
    // fixedState only the pieces can be changed.
    SetupBoardDialog(Game& game, const Position* source, bool fixedState);

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

    // The piece a tap places.
    PieceCode SelectedPiece() const { return selected_; }

  private:
    void ShowChoices(const SetupChoices& choices);
    void ShowCastling(const bool castling[4]);
    void Tap(int x, int y);
    void DrawPieceButton(const DRAWITEMSTRUCT& item);
    bool Accept();

    Game& game_;
    Position& edited_;
    const Position* source_;
    bool fixedState_;
    PieceCode selected_ = 1;  // the white pawn
    BoardRenderer renderer_;
};

}  // namespace velmora
