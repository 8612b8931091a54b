// A game with two recording views, for the tests of what adds moves to a game from outside.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "core/MoveRules.h"
#include "core/San.h"
#include "game/Game.h"
#include "game/MoveTree.h"
#include "tests/core/TestBoards.h"

namespace velmora::testing {

// The move written "e2e4" or "e7e8q".
inline std::string MoveName(int from, int to, int promotion) {
    char16_t buffer[kSanBufferSize] = {};
    WriteCoordinates(Move{static_cast<Square>(from), static_cast<Square>(to),
                          static_cast<std::uint8_t>(promotion)},
                     buffer);
    return Narrow(buffer);
}
inline std::string Text(const MoveNode* node) {
    return MoveName(node->from, node->to, node->promotion);
}

// The moves from position, main line first: "e2e4 d2d4".
inline std::string Continuations(const Position& position) {
    std::string text;
    for (const MoveNode* node = position.FirstContinuation(); node; node = node->nextAlternative)
        text += (text.empty() ? "" : " ") + Text(node);
    return text;
}

// Records what the game tells it: "played e2e4 from window; position".
struct RecordingView final : GameView {
    explicit RecordingView(const char* viewName) : name(viewName) {}
    void OnMovePlayed(MoveNode* node, GameView* sender) override {
        const std::string from =
            sender ? " from " + static_cast<RecordingView*>(sender)->name : std::string();
        Call("played " + Text(node) + from);
    }
    void OnPositionChanged(Position*) override { Call("position"); }
    void Refresh() override { Call("refresh"); }
    MoveNode* ChooseContinuation(MoveNode* first) override { return first; }
    int EditHeaders() override { return 0; }
    int ChooseSaveTarget(std::u16string*) override { return 0; }
    int QueryClose() override { return 1; }
    void Call(const std::string& call) { calls += (calls.empty() ? "" : "; ") + call; }
    std::string name;
    std::string calls;
};

// A promotion chooser that gives the piece type its context points to.
inline int ChooseFromContext(void* context) {
    return *static_cast<int*>(context);
}

// A game shown by a window (its primary view) and a notation view.
struct ViewedGame {
    // Sets up board and hangs the lines "e2e4 e7e5, d2d4" into the tree, the first as the main
    // line, without telling anyone; the current position stays the start.
    explicit ViewedGame(const std::string& lines, const char* board = kStartText) {
        EXPECT_TRUE(game.StartPosition().SetFromText(
            std::u16string(board, board + std::char_traits<char>::length(board)).c_str()));
        for (const auto& line : Cases(lines)) {
            Position* position = &game.StartPosition();
            for (const std::string& word : line) {
                const Move move = MoveOf(word);
                position = position->PlayMove(move.from, move.to, nullptr, move.promotion, nullptr);
                EXPECT_NE(position, nullptr) << word;
            }
        }
        game.AddObserver(&window, true);
        game.AddObserver(&notation, false);
    }
    ~ViewedGame() { SetPromotionChooser(nullptr); }
    // What both views were told.
    std::string Calls() const { return window.calls + " | " + notation.calls; }

    Game game;
    RecordingView window{"window"}, notation{"notation"};
};

}  // namespace velmora::testing
