// The game window's engine and clock: starting an engine, the messages of the engine host, the
// one-second tick that runs the clock and checks that the engine lives, and the large clocks.
#include <windows.h>

#include <mmsystem.h>

#include "engine/host/EngineHost.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "gamewindow/BoardView.h"
#include "gamewindow/StartGameDialog.h"
#include "resources/resource.h"
#include "ui/Application.h"
#include "ui/MenuBar.h"
#include "ui/MessageBoxes.h"

namespace velmora {
namespace {

constexpr UINT_PTR kClockTimer = 1;
constexpr UINT kClockPeriod = 1000;
// Where the engine menu opens: above and centred on this point of the screen.
constexpr POINT kEngineMenuPoint = {100, 300};
constexpr int kBlinkFrames = 6;
// The liveness check runs on every tenth tick of the engine's time.
constexpr unsigned kLivenessPeriod = 10;
// Counts the engine's ticks across game windows, as the liveness check wants.
unsigned gEngineTicks = 0;

}  // namespace

void BoardView::SendToWindow(unsigned message, std::uintptr_t wParam) {
    if (window_ != nullptr) SendMessageW(window_, message, wParam, 0);
}

int BoardView::RunStartDialog(StartGameChoice& choice) {
    return RunStartGameDialog(window_, choice);
}

std::u16string BoardView::LoadText(int id) {
    wchar_t text[512];
    const int length =
        LoadStringW(App().resourceInstance, static_cast<UINT>(id), text, std::size(text));
    return std::u16string(Utf16(text), static_cast<std::size_t>(length > 0 ? length : 0));
}

void BoardView::PlaySoundFile(const std::u16string& path) {
    sndPlaySoundW(Wide(path.c_str()), SND_SYNC | SND_NODEFAULT);
}

void BoardView::SetUserColours(bool white, bool black) {
    userPlaysWhite_ = entry_.userPlaysWhite = white;
    userPlaysBlack_ = entry_.userPlaysBlack = black;
}

// Starts an engine on the current position: in play the user takes the other colour and the
// clock starts; in analysis the user plays both and no clock runs.
void BoardView::StartEngine() {
    EngineHost* host = App().engineHost;
    if (host == nullptr) return;
    const bool sendPosition = game_.Current() != &game_.StartPosition() || game_.SetUpFlag() != 0;
    bool play = false;
    bool engineBlack = true;
    // The engine may ask for its information display while it starts.
    const bool wasActive = engineActive_;
    engineActive_ = true;
    if (!host->StartEngine(*this, &play, &engineBlack, sendPosition, game_)) {
        engineActive_ = wasActive;
        return;
    }
    engineStopped_ = false;
    analysisMode_ = !play;
    if (play) {
        SetUserColours(engineBlack, !engineBlack);
        StartClock();
    } else {
        SetUserColours(true, true);
    }
    entry_.ClearSelection();
    board_.ClearSelection();
    InvalidateRect(window_, nullptr, FALSE);
}

// Shows the clock with the game's time control and starts the one-second tick.
void BoardView::StartClock() {
    clockSettings_ = game_.GetSettings();
    clock_.SetTimeControl(TimeControl::FromSettings(clockSettings_));
    clock_.SetLarge(largeClocks_);
    if (!clockShown_) {
        clockShown_ = true;
        ComputeLayout();
        PlaceChildren();
    }
    clockWindow_.Show(true);
    UpdateClockMoveText();
    PublishClockTimes();
    SetTimer(window_, kClockTimer, kClockPeriod, nullptr);
    // The large clocks can be shown once a clock runs.
    if (HMENU menu = pocketpc::MenuBarMenu(menuBar_)) {
        EnableMenuItem(menu, ID_LARGE_CLOCKS, MF_BYCOMMAND | MF_ENABLED);
    }
}

// One second of the game against the engine: the clock of the side to move runs while the
// engine thinks, or while the user stands at the end of the line; every tenth second of the
// engine's time the engine is asked whether it still lives.
void BoardView::ClockTick() {
    // With a chessboard connected the clock runs for the players even without an engine.
    if ((!engineActive_ || analysisMode_) && !chessboardConnected_) return;
    FollowTimeControl();
    EngineHost* host = App().engineHost;
    Position* current = game_.Current();
    const Colour side = current->SideToMove();
    const int clockSide = ClockSideOf(side);
    const int number = ClockMoveNumber(*current);
    const bool enginesTurn = side == kBlack ? !userPlaysBlack_ : !userPlaysWhite_;
    if (enginesTurn) {
        if (gEngineTicks++ % kLivenessPeriod == 0 && host != nullptr && !host->IsAlive()) {
            MessageFromStrings(IDS_ENGINE_STOPPED, IDS_CAPTION, MB_OK | MB_ICONSTOP, window_);
            // The game goes on without the engine: the user may move both colours.
            engineActive_ = false;
            SetUserColours(true, true);
            if (!chessboardConnected_) KillTimer(window_, kClockTimer);
            InvalidateRect(window_, nullptr, FALSE);
            return;
        }
        if (host == nullptr || !host->Thinking()) return;
        clock_.Tick(clockSide, number);
        AdvanceBlink();
    } else if (current->FirstContinuation() == nullptr) {
        clock_.Tick(clockSide, number);
    }
    PublishClockTimes();
}

// Gives the engine, which may ask from its own thread, the clock's times.
void BoardView::PublishClockTimes() {
    if (EngineHost* host = App().engineHost) {
        std::int32_t white = 0, black = 0, movesToGo = 0;
        clock_.GetTimes(&white, &black, &movesToGo);
        host->PublishClockTimes(white, black, movesToGo);
    }
}

// Sets the clock anew when the engine has set another time control (as it starts, or from its
// menu): both sides get the new control's time.
void BoardView::FollowTimeControl() {
    if (!clockShown_ || game_.GetSettings() == clockSettings_) return;
    clockSettings_ = game_.GetSettings();
    clock_.SetTimeControl(TimeControl::FromSettings(clockSettings_));
    PublishClockTimes();
}

void BoardView::AdvanceBlink() {
    blinkPhase_ = (blinkPhase_ + 1) % kBlinkFrames;
    const Rect indicator = layout_.IndicatorRect();
    RECT area{indicator.left, indicator.top, indicator.right, indicator.bottom};
    InvalidateRect(window_, &area, FALSE);
}

// The engine's own menu once it runs, else the menu that starts one.
void BoardView::ShowEngineMenu() {
    HMENU menu = engineMenu_;
    if (engineActive_ && App().engineHost != nullptr) {
        if (HMENU own = static_cast<HMENU>(App().engineHost->EngineMenu())) menu = own;
    }
    if (menu == nullptr) return;
    POINT point = kEngineMenuPoint;
    ClientToScreen(window_, &point);
    TrackPopupMenu(menu, TPM_BOTTOMALIGN | TPM_CENTERALIGN, point.x, point.y, 0, window_, nullptr);
}

void BoardView::ToggleLargeClocks() {
    if (!clockShown_) return;
    largeClocks_ = !largeClocks_;
    clock_.SetLarge(largeClocks_);
    if (HMENU menu = pocketpc::MenuBarMenu(menuBar_)) {
        CheckMenuItem(menu, ID_LARGE_CLOCKS, MF_BYCOMMAND | (largeClocks_ ? MF_CHECKED : 0));
    }
    ComputeLayout();
    PlaceChildren();
    UpdateClockMoveText();
}

// In large mode the clock shows the move that led to the current position.
void BoardView::UpdateClockMoveText() {
    if (!clockShown_) return;
    MoveNode* arrival = game_.Current()->ArrivalNode();
    if (!largeClocks_ || arrival == nullptr) {
        clock_.SetMoveText(nullptr);
    } else {
        char16_t san[kSanBufferSize];
        WriteSan(arrival, san, {.withNumber = true});
        clock_.SetMoveText(san);
    }
    clockWindow_.Refresh();
}

bool BoardView::OnEngineMessage(UINT message, WPARAM wParam) {
    EngineHost* host = App().engineHost;
    switch (message) {
        case kEngineFatalError:
            if (host != nullptr) {
                MessageBoxW(window_, Wide(host->MessageText().c_str()), L"Fatal error",
                            MB_OK | MB_ICONSTOP | MB_SETFOREGROUND | MB_TOPMOST);
            }
            return true;
        case kEngineMessageBox:
            MessageBoxW(window_, host != nullptr ? Wide(host->MessageText().c_str()) : L"",
                        L"Velmora 2.0", MB_OK);
            return true;
        case kEngineSearchInfo:
            engineInfo_.SetSource(host);
            engineInfo_.Update();
            return true;
        case kEngineSwitchedSides:
            if (engineActive_ && !analysisMode_) SetUserColours(userPlaysBlack_, userPlaysWhite_);
            InvalidateRect(window_, nullptr, FALSE);
            return true;
        case kEngineShowInfo: {
            if (!engineActive_) return true;
            const bool show = wParam == 1;
            if (show) {
                const Rect& pane = layout_.comment;
                engineInfo_.Attach(window_, RECT{pane.left, pane.top, pane.right, pane.bottom});
            }
            ShowWindow(comment_, show ? SW_HIDE : SW_SHOW);
            engineInfo_.SetSource(host);
            engineInfo_.Show(show);
            if (show) engineInfo_.Update();
            return true;
        }
        case kEngineMoveReady:
            if (host != nullptr) host->HandleEngineMove();
            return true;
        case kEngineGameOver:
            if (host != nullptr) {
                MessageBoxW(window_, Wide(host->GameOverText().c_str()),
                            Wide(host->GameOverCaption().c_str()), MB_OK);
            }
            return true;
        default:
            return false;
    }
}

// Tells the engine to finish, once: the window is about to end.
void BoardView::StopEngineOnClose() {
    if (!engineActive_ || engineStopped_ || App().engineHost == nullptr) return;
    App().engineHost->StopEngine();
    engineStopped_ = true;
}

// Stops the engine and leaves the game: the window is closing.
void BoardView::EndEngine() {
    KillTimer(window_, kClockTimer);
    EngineHost* host = App().engineHost;
    if (host == nullptr) return;
    StopEngineOnClose();
    host->Detach();
}

}  // namespace velmora
