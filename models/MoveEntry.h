// MoveEntry: moves entered by tapping squares: the selection, the legality test, the promotion
// piece, and where the move goes in the game's tree (an existing line, the end of a line, or a
// new line the user adds or puts in place of another).
#pragma once

#include "core/ChessTypes.h"

namespace velmora {

class Game;
class GameView;
class MoveNode;
class Position;

// What the user answers when a move differs from every continuation of the position.
enum class NewLineChoice { Add, Replace, Cancel };

// What the window asks the user while a move is entered.
class MoveEntryHost {
  public:
    virtual ~MoveEntryHost() = default;
    // Asks whether move (its promotion already chosen) is added as a new variation of position
    // or replaces one of its continuations. With Replace, *replaced is the continuation to
    // replace (the first one unless the user picked another).
    virtual NewLineChoice AskNewLine(Position& position, Move move, MoveNode** replaced) = 0;
};

// What a tap did, so that the window knows what to redraw.
enum class TapOutcome {
    Ignored,        // nothing changes
    Selected,       // a square is now selected
    Deselected,     // the selection was cleared
    KeptSelection,  // an illegal target: the selection stays
    FollowedLine,   // the move already was a continuation: the game went there, unchanged
    Played,         // the move was played at the end of the line
    AddedLine,      // the move became a new variation
    ReplacedLine,   // the move took the place of a continuation
    Cancelled,      // the user cancelled the new line: the selection was cleared
};

class MoveEntry {
  public:
    // window is the game window's view: after "Add" and "Replace" it is the sender the other
    // views are told about (it redraws itself).
    MoveEntry(Game& game, MoveEntryHost& host, GameView* window);

    // A tap on square (0..63): selects, deselects, or enters the move from the selected
    // square. The promotion piece comes from the program's promotion chooser, given
    // promotionContext; the queen when there is none or it gives none.
    TapOutcome Tap(int square, void* promotionContext);
    // The selected square, or kNoSquare.
    Square Selected() const { return selected_; }
    void ClearSelection() { selected_ = kNoSquare; }

    // The colours the user may move (an engine plays the others).
    bool userPlaysWhite = true;
    bool userPlaysBlack = true;

  private:
    TapOutcome Select(int square);
    TapOutcome EnterMove(Move move);

    Game& game_;
    MoveEntryHost& host_;
    GameView* window_;
    Square selected_ = kNoSquare;
};

}  // namespace velmora
