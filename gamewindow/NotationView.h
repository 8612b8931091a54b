// NotationView: the game's moves as a list box, one row per move, variations indented and
// closed by parentheses; its selected row follows the game's current move.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "game/Game.h"
#include "models/NotationRows.h"

namespace velmora {

class NotationView : public GameView {
  public:
    NotationView() = default;
    ~NotationView() override;

    // Follows game as a further (not primary) observer.
    void Attach(Game* game);
    // Creates the list box child; false when it cannot be created.
    bool Create(HWND parent, int controlId, const RECT& rect);
    void Move(const RECT& rect);
    void Show(bool visible);
    HWND Window() const { return listBox_; }
    MoveNode* SelectedNode() const;
    int RowCount() const { return static_cast<int>(rows_.size()); }
    // Formats the node's row again; selects it when select is set.
    void RefreshRow(MoveNode* node, bool select);
    // Rebuilds every row, then selects node's row.
    void Rebuild(MoveNode* node);
    // Handles a notification of the list box (LBN_SELCHANGE moves the game's cursor).
    void OnNotify(int code);
    void SelectNode(MoveNode* node);

    void OnMovePlayed(MoveNode* node, GameView* sender) override;
    void OnPositionChanged(Position* position) override;
    void Refresh() override;
    MoveNode* ChooseContinuation(MoveNode*) override { return nullptr; }
    int EditHeaders() override { return 0; }
    int ChooseSaveTarget(std::u16string*) override { return 0; }
    int QueryClose() override { return 1; }

  private:
    static LRESULT CALLBACK Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void ComputeVisibleRows();
    // Puts row of rows_ into the list box: in place of the row there, or as a new one.
    void ReplaceListRow(int row);
    bool InsertListRow(int row);
    bool IndicateComment() const;

    HWND listBox_ = nullptr;
    // What the list box shows, row for row.
    std::vector<NotationRow> rows_;
    RECT rect_{};
    Game* game_ = nullptr;
    bool visible_ = true;
    int visibleRows_ = 20;
    WNDPROC previousProc_ = nullptr;
};

}  // namespace velmora
