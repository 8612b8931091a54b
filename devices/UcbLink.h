// UcbLink: the conversation with a UCB electronic chessboard, fed one received line at a time.
// Moves made on the board enter the game; the board's requests are answered with fixed lines.
#pragma once

#include <string>

namespace velmora {

class Game;
class GameView;
class MoveNode;
class PositionValue;

// What the link needs from the game window.
class UcbLinkHost {
  public:
    virtual ~UcbLinkHost() = default;
    // Writes text to the board; false when the write failed.
    virtual bool SendToBoard(const char* text) = 0;
    // Shows the received line (at most 32 characters) in the comment pane.
    virtual void ShowBoardLine(const char16_t* text) = 0;
    // Redraws the board after the board's move or take-back changed the position shown.
    virtual void RedrawBoard() = 0;
};

class UcbLink {
  public:
    // The identification line the program sends.
    static constexpr const char* kIdentification = "Velmora 2.1\r\n";

    // window is the game window's view: the sender the game names when the board adds a move.
    UcbLink(Game& game, GameView* window, UcbLinkHost& host, void* promotionContext = nullptr);

    // Handles one line from the board (ASCII, without its line end): shows it, writes it to
    // the debug output, then answers a request, takes back, goes to the start, or plays a move.
    void OnBoardLine(const char* line);

    // The line that tells the board about move node: "Me2-e4\r\n", "Me7-e8/q\r\n".
    static std::string MoveLine(const MoveNode& node);
    // The answer to "P": eight lines from rank 8 to rank 1, colours not told apart, the side to
    // move at the end of rank 1.
    static std::string PositionDump(const PositionValue& position);

  private:
    void PlayBoardMove(const char* line);

    Game& game_;
    GameView* window_;
    UcbLinkHost& host_;
    void* promotionContext_;
};

}  // namespace velmora
