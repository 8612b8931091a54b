// The engine host: discovery and loading of engine libraries, the game's moves passed to the
// engine, and the engine's callbacks stored for the game window.
#include "engine/host/EngineHost.h"

#include <algorithm>
#include <cstring>

#include "core/MoveRules.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "platform/CodePage.h"
#include "platform/DebugOutput.h"

namespace velmora {
namespace {

constexpr std::size_t kSearchLineLength = EngineHost::kSearchLineSize - 1;

// Copies text into out (capacity characters, at least 1), cut and zero-terminated.
void CopyCut(std::u16string_view text, char16_t* out, int capacity) {
    if (out == nullptr || capacity <= 0) return;
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(capacity - 1));
    std::copy_n(text.begin(), length, out);
    out[length] = u'\0';
}

// The promotion piece of a coordinate move's fifth character; anything else is none.
int PromotionOfLetter(char16_t letter) {
    switch (letter) {
        case u'q':
            return kQueen;
        case u'r':
            return kRook;
        case u'b':
            return kBishop;
        case u'n':
            return kKnight;
        default:
            return 0;
    }
}

// Keeps a library and the engine object it made, unused, for the rest of the process: the
// object's interface is unknown, so it can neither be released nor its library freed.
void KeepForever(std::unique_ptr<platform::Library> library, plugin::Engine* engine) {
    struct Kept {
        std::unique_ptr<platform::Library> library;
        plugin::Engine* engine;
    };
    static auto* kept = new std::vector<Kept>;
    kept->push_back({std::move(library), engine});
}

}  // namespace

std::string CleanSearchLine(const char* line) {
    std::string clean;
    if (line == nullptr) return clean;
    bool inControlRun = false;
    for (const char* c = line; *c != '\0' && clean.size() < kSearchLineLength; ++c) {
        const bool control = static_cast<unsigned char>(*c) < 32;
        if (control) {
            if (!inControlRun) clean += ' ';
        } else {
            clean += *c;
        }
        inControlRun = control;
    }
    return clean;
}

// Keeps the first kMaxEngines folders of the listing, in the listing's order.
EngineHost::EngineHost(std::u16string programFolder, platform::FileSystem& files,
                       LibraryLoader loader)
    : programFolder_(std::move(programFolder)), loader_(std::move(loader)) {
    std::vector<platform::FolderEntry> entries;
    if (files.ListFolder(programFolder_ + u"Engines", u"*", &entries) == 0) {
        for (const platform::FolderEntry& entry : entries) {
            if (!entry.isFolder) continue;
            names_.push_back(entry.name);
            if (names_.size() == kMaxEngines) break;
        }
    }
    soundPath_ = programFolder_ + u"move.wav";
}

EngineHost::~EngineHost() {
    if (engine_ != nullptr) engine_->Release();
    engine_ = nullptr;
    library_.reset();
}

void EngineHost::Send(unsigned message, std::uintptr_t wParam) {
    if (window_ != nullptr) window_->SendToWindow(message, wParam);
}

void EngineHost::Tell(int textId) {
    messageText_ = window_ != nullptr ? window_->LoadText(textId) : std::u16string();
    Send(kEngineMessageBox);
}

bool EngineHost::LoadEngine(int index) {
    if (engine_ != nullptr || library_ != nullptr || libraryKeptUnused_) {
        Tell(kTextEngineAlreadyLoaded);
        return false;
    }
    if (index < 0 || index >= EngineCount()) {
        Tell(kTextCannotLoadEngine);
        return false;
    }
    const char16_t separator = programFolder_.empty() ? u'\\' : programFolder_.back();
    const std::u16string& name = names_[static_cast<std::size_t>(index)];
    const std::u16string path = programFolder_ + u"Engines" + separator + name + separator + name;
    platform::ErrorCode error = 0;
    library_ = loader_(path, &error);
    if (library_ == nullptr) {
        Tell(kTextCannotLoadEngine);
        return false;
    }
    auto load =
        reinterpret_cast<plugin::LoadEngineFunction>(library_->Symbol(plugin::kEntryPointName));
    if (load == nullptr) {
        Tell(kTextEngineNotValid);
        return false;
    }
    plugin::Engine* engine = load(this);
    if (engine == nullptr) {
        Tell(kTextCannotInitEngine);
        return false;
    }
    plugin::EngineInfo info{};
    info.size = plugin::kEngineInfoSize;
    engine->GetInfo(&info);
    if (info.version != plugin::kInterfaceVersion) {
        // The object stays unused: its interface is not one this program can speak, so it
        // cannot be released either. Its library stays mapped until the process ends, since
        // the object may run threads inside it.
        KeepForever(std::move(library_), engine);
        libraryKeptUnused_ = true;
        Tell(kTextEngineVersion);
        return false;
    }
    engine_ = engine;
    info.name[31] = u'\0';
    engineName_ = info.name;
    loadedIndex_ = index;
    coordinateMoves_ = (info.flags & plugin::kCoordinateMoves) != 0;
    return true;
}

bool EngineHost::StartEngine(EngineHostWindow& window, bool* playMode, bool* enginePlaysBlack,
                             bool sendPosition, Game& game) {
    window_ = &window;
    StartGameChoice choice;
    choice.names = names_;
    choice.loadedIndex = engine_ != nullptr ? loadedIndex_ : -1;
    if (window.RunStartDialog(choice) != 1) return false;
    if (engine_ == nullptr && !LoadEngine(choice.chosen)) return false;
    playMode_ = choice.play;
    enginePlaysBlack_ = choice.enginePlaysBlack;
    *playMode = playMode_;
    *enginePlaysBlack = enginePlaysBlack_;
    gameOverCaption_.clear();
    gameOverText_.clear();
    knownNode_ = nullptr;
    if (game_ != &game) {
        if (game_ != nullptr) game_->RemoveObserver(this);
        game_ = &game;
        game.AddObserver(this, false);
    }
    knownPosition_ = game.Current();
    if (playMode_) engine_->SetWindow(window.Handle());
    char16_t text[Position::kTextBufferSize];
    const char16_t* positionText = nullptr;
    if (sendPosition) {
        knownPosition_->WriteText(text);
        positionText = text;
    }
    engine_->Start(enginePlaysBlack_ ? 1 : 0, playMode_ ? 0 : 1, positionText);
    if (playMode_) {
        WriteNameTag(engineName_.c_str());
        if (EnginesTurn(*knownPosition_)) {
            computingPosition_ = knownPosition_;
            thinking_ = true;
            engine_->Go();
        }
        engine_->SetAnalysis(0);
    } else {
        computingPosition_ = knownPosition_;
        engine_->SetAnalysis(1);
    }
    return true;
}

void EngineHost::StopEngine() {
    platform::DebugTrace(u"Fermeture de l'Engine\n");
    if (engine_ != nullptr) engine_->Stop();
    thinking_ = false;
}

void EngineHost::Detach() {
    if (game_ != nullptr) game_->RemoveObserver(this);
    game_ = nullptr;
    window_ = nullptr;
    knownPosition_ = nullptr;
    knownNode_ = nullptr;
    computingPosition_ = nullptr;
    moveReady_ = false;
    thinking_ = false;
    resend_ = false;
}

plugin::MenuHandle EngineHost::EngineMenu() {
    return engine_ != nullptr ? engine_->GetMenu() : nullptr;
}

std::intptr_t EngineHost::ForwardCommand(plugin::WindowHandle window, std::uintptr_t wParam,
                                         std::intptr_t lParam) {
    return engine_ != nullptr ? engine_->OnCommand(window, wParam, lParam) : 0;
}

bool EngineHost::IsAlive() {
    return engine_ == nullptr || engine_->IsAlive() != 0;
}

void EngineHost::PublishClockTimes(std::int32_t whiteMilliseconds, std::int32_t blackMilliseconds,
                                   std::int32_t movesToGo) {
    clockWhite_ = whiteMilliseconds;
    clockBlack_ = blackMilliseconds;
    clockMovesToGo_ = movesToGo;
}

bool EngineHost::EnginesTurn(const Position& position) const {
    return (position.SideToMove() == kBlack) == enginePlaysBlack_;
}

void EngineHost::SendPosition(const Position& position) {
    if (engine_ == nullptr) return;
    char16_t text[Position::kTextBufferSize];
    position.WriteText(text);
    engine_->SetPosition(text);
}

void EngineHost::WriteNameTag(const char16_t* name) {
    if (game_ == nullptr) return;
    if (enginePlaysBlack_) {
        game_->SetBlack(name);
    } else {
        game_->SetWhite(name);
    }
}

std::u16string EngineHost::MoveTextFor(const MoveNode& node) const {
    char16_t text[kSanBufferSize];
    const int length = coordinateMoves_
                           ? WriteCoordinates(&node, text)
                           : WriteSan(node.positionBefore->Value(),
                                      Move{node.from, node.to, node.promotion}, 0, {}, text);
    return std::u16string(text, static_cast<std::size_t>(length));
}

void EngineHost::OnMovePlayed(MoveNode* node, GameView*) {
    if (engine_ == nullptr || node == nullptr) return;
    // The engine's own move coming back.
    if (node == knownNode_) return;
    if (node->positionBefore != knownPosition_) {
        if (!playMode_) {
            knownPosition_ = computingPosition_ = node->positionAfter;
            knownNode_ = node;
            SendPosition(*knownPosition_);
            return;
        }
        SendPosition(*node->positionBefore);
    }
    const std::u16string text = MoveTextFor(*node);
    if (playMode_) thinking_ = true;
    knownPosition_ = computingPosition_ = node->positionAfter;
    knownNode_ = node;
    engine_->PlayMove(text.c_str());
}

void EngineHost::OnPositionChanged(Position* position) {
    if (!resend_) return;
    resend_ = false;
    if (engine_ == nullptr || position == nullptr) return;
    knownPosition_ = position;
    knownNode_ = position->ArrivalNode();
    SendPosition(*position);
    if (EnginesTurn(*position)) {
        computingPosition_ = position;
        thinking_ = true;
        engine_->Go();
    }
}

// Reads a coordinate move ("e2e4", "e7e8q") or SAN, as the engine said it would write them.
Position* EngineHost::PlayEngineMove(const std::u16string& text) {
    if (computingPosition_ == nullptr) return nullptr;
    if (!coordinateMoves_) return ReadSan(computingPosition_, text.c_str());
    if (text.size() < 4) return nullptr;
    // Squares outside the board wrap into 0..255 and are refused by the move rules.
    const int from = ((text[1] - u'1') * 8 + (text[0] - u'a')) & 255;
    const int to = ((text[3] - u'1') * 8 + (text[2] - u'a')) & 255;
    const int promotion = text.size() > 4 ? PromotionOfLetter(text[4]) : 0;
    // An existing continuation is followed rather than added twice.
    if (Position* known = computingPosition_->FindContinuation(from, to, promotion)) return known;
    return computingPosition_->PlayMove(from, to, nullptr, promotion, nullptr);
}

void EngineHost::HandleEngineMove() {
    if (!moveReady_.exchange(false)) return;
    thinking_ = false;
    const std::u16string text = moveBuffer_;
    Position* next = PlayEngineMove(text);
    if (next == nullptr || game_ == nullptr) {
        messageText_ = u"Invalid move from the Engine : " + text;
        Send(kEngineMessageBox);
        return;
    }
    game_->modified = 1;
    knownPosition_ = next;
    knownNode_ = next->ArrivalNode();
    game_->NotifyChanged(knownNode_, this);
    if (window_ != nullptr) window_->PlaySoundFile(soundPath_);
}

void EngineHost::GetSearchInfo(std::int32_t* depth, std::int32_t* speed, std::int32_t* nodes,
                               std::int32_t* milliseconds, char16_t* move, int moveSize,
                               char16_t* line, int lineSize) const {
    *depth = static_cast<std::int32_t>(searchNumbers_[0]);
    *speed = static_cast<std::int32_t>(searchNumbers_[1]);
    *nodes = static_cast<std::int32_t>(searchNumbers_[2]);
    *milliseconds = static_cast<std::int32_t>(searchNumbers_[3]);
    CopyCut(platform::AnsiToWide(searchMove_), move, moveSize);
    CopyCut(platform::AnsiToWide(searchLine_), line, lineSize);
}

// The callbacks below may run on the engine's thread: they store what they were given and
// send the window a message, waiting while the window reads it.

void EngineHost::MovePlayed(const char16_t* move) {
    moveBuffer_ = move != nullptr ? move : u"";
    moveReady_ = true;
    Send(kEngineMoveReady);
}

void EngineHost::FatalError(const char16_t* text) {
    messageText_ = text != nullptr ? text : u"";
    Send(kEngineFatalError);
}

void EngineHost::GameOver(const char16_t* caption, const char16_t* text) {
    const std::u16string newCaption = caption != nullptr ? caption : u"";
    const std::u16string newText = text != nullptr ? text : u"";
    if (newCaption != gameOverCaption_ || newText != gameOverText_) {
        gameOverCaption_ = newCaption;
        gameOverText_ = newText;
        Send(kEngineGameOver);
    }
    if (game_ != nullptr) game_->SetResultText(newCaption.c_str());
    thinking_ = false;
}

void EngineHost::SetEngineName(const char16_t* name) {
    if (playMode_) WriteNameTag(name);
}

void EngineHost::SwitchSides() {
    resend_ = true;
    enginePlaysBlack_ = !enginePlaysBlack_;
    if (game_ != nullptr) computingPosition_ = game_->Current();
    Send(kEngineSwitchedSides);
}

void EngineHost::ShowInfo(int show) {
    Send(kEngineShowInfo, show != 0 ? 1 : 0);
}

void EngineHost::SetTimeControl(std::int32_t timePerMove, std::int32_t firstMoves,
                                std::int32_t firstTime, std::int32_t secondMoves,
                                std::int32_t secondTime, std::int32_t thirdTime,
                                std::int32_t increment) {
    if (game_ == nullptr) return;
    game_->SetSettings(
        {timePerMove, firstMoves, firstTime, secondMoves, secondTime, thirdTime, increment});
}

void EngineHost::SearchInfo(std::uint32_t depth, std::uint32_t speed, std::uint32_t nodes,
                            std::uint32_t milliseconds, const char* move, const char* line) {
    searchNumbers_[0] = depth;
    searchNumbers_[1] = speed;
    searchNumbers_[2] = nodes;
    searchNumbers_[3] = milliseconds;
    searchMove_.assign(move != nullptr ? move : "");
    if (searchMove_.size() >= kSearchMoveSize) searchMove_.resize(kSearchMoveSize - 1);
    searchLine_ = CleanSearchLine(line);
    Send(kEngineSearchInfo);
}

void EngineHost::GetClockTimes(std::int32_t* whiteMilliseconds, std::int32_t* blackMilliseconds,
                               std::int32_t* movesToGo) {
    if (whiteMilliseconds != nullptr) *whiteMilliseconds = clockWhite_;
    if (blackMilliseconds != nullptr) *blackMilliseconds = clockBlack_;
    if (movesToGo != nullptr) *movesToGo = clockMovesToGo_;
}

}  // namespace velmora
