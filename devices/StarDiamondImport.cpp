// The Star Diamond import: requests on timers, the position dump read rank by rank, then the
// moves fetched one line at a time and played into a new game.
#include "devices/StarDiamondImport.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <string>
#include <string_view>

#include "core/ChessTypes.h"
#include "game/Game.h"
#include "game/Position.h"
#include "platform/CodePage.h"
#include "platform/DebugOutput.h"

namespace velmora {
namespace {

// The most characters of a received line that are kept and shown.
constexpr std::size_t kKeptCharacters = 80;
// How long the computer is given before each request: to wake after "Origin", to print the
// header asked for with "H", to finish the position before the result is asked, and between
// lines of the move list.
constexpr int kWakeDelay = 3000;
constexpr int kLineDelay = 200;
constexpr int kMovesDelay = 2000;

// The line that opens and closes the position dump.
constexpr std::u16string_view kFilesHeader = u".  aa bb cc dd ee ff gg hh";
constexpr std::u16string_view kReplay = u"replay";

constexpr const char16_t* kPositionError = u"Unable to understand Star Diamond Position";
constexpr const char16_t* kMoveError = u"Unable to understand Star Diamond move";
constexpr const char16_t* kErrorCaption = u"Error";

// The square codes of a rank line, in piece type order from the pawn to the king.
constexpr std::u16string_view kWhiteCodes[] = {u"WP", u"WR", u"WN", u"WB", u"WQ", u"WK"};
constexpr std::u16string_view kBlackCodes[] = {u"bp", u"br", u"bn", u"bb", u"bq", u"bk"};

// Returns the first bytes of line, no more than maxBytes of them, without looking past its end.
std::string_view Head(const char* line, std::size_t maxBytes) {
    std::size_t length = 0;
    while (length < maxBytes && line[length] != '\0')
        ++length;
    return {line, length};
}

constexpr char16_t LowerAscii(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

// Whether text begins with prefix (written in lower case), ASCII letters in either case.
bool StartsWithNoCase(const char16_t* text, std::u16string_view prefix) {
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        if (LowerAscii(text[i]) != prefix[i]) return false;  // stops at text's terminator too
    }
    return true;
}

// Reads a decimal number as "%d" does: blanks skipped, an optional sign, then digits. Returns
// false when there are no digits; a number beyond int is held at its limit.
bool ReadDecimal(const char16_t* text, int* value) {
    while (*text == u' ' || (*text >= u'\t' && *text <= u'\r'))
        ++text;
    const bool negative = *text == u'-';
    if (*text == u'+' || *text == u'-') ++text;
    if (*text < u'0' || *text > u'9') return false;
    long long number = 0;
    for (; *text >= u'0' && *text <= u'9'; ++text)
        number = std::min(number * 10 + (*text - u'0'), static_cast<long long>(INT_MAX) + 1);
    *value =
        static_cast<int>(std::clamp(negative ? -number : number, static_cast<long long>(INT_MIN),
                                    static_cast<long long>(INT_MAX)));
    return true;
}

// Maps a square's two-character code to its piece; anything else is an empty square.
PieceCode PieceOfCode(std::u16string_view code) {
    for (int type = kPawn; type <= kKing; ++type) {
        if (code == kWhiteCodes[type - kPawn]) return static_cast<PieceCode>(kWhite + type);
        if (code == kBlackCodes[type - kPawn]) return static_cast<PieceCode>(kBlack + type);
    }
    return 0;
}

// Maps a file letter and a rank digit to a square; -1 when they name none (so that "i1" is not
// taken for a2).
int SquareOf(char16_t file, char16_t rank) {
    if (file < u'a' || file > u'h' || rank < u'1' || rank > u'8') return -1;
    return (rank - u'1') * 8 + (file - u'a');
}

}  // namespace

StarDiamondImport::StarDiamondImport(StarDiamondHost& host) : host_(host) {}

StarDiamondImport::~StarDiamondImport() = default;

std::unique_ptr<Game> StarDiamondImport::TakeGame() {
    position_ = nullptr;
    return std::move(game_);
}

void StarDiamondImport::Start() {
    importing_ = true;
    game_.reset();
    game_ = std::make_unique<Game>();
    position_ = &game_->StartPosition();
    position_->Clear();
    step_ = 0;
    headerSeen_ = false;
    resultRequested_ = false;
    movesAnnounced_ = 0;
    movesReceived_ = 0;
    host_.SendToComputer("Origin\r\n");
    host_.SetTimer(kWatchdogTimer, kWatchdogMilliseconds);
}

// Keeps and shows the line; the protocol only moves on while there is a game to build.
void StarDiamondImport::OnLine(const char* line) {
    if (line == nullptr) line = "";
    const std::size_t length = platform::AnsiToWide(
        Head(line, kKeptCharacters * platform::MaxAnsiCharBytes()), line_, kKeptCharacters);
    line_[length] = 0;
    std::u16string traced(line_, length);
    traced += u'\n';
    platform::DebugTrace(traced.c_str());
    host_.AppendMessage(line_);
    if (game_ != nullptr) StepOnLine();
}

// Sends the request of the current step, or gives up when the watchdog fires. Timers that fire
// once the import has ended (one already queued when it was killed, or the watchdog a late line
// armed after the import finished) do nothing: a finished game stays for the dialog to take.
void StarDiamondImport::OnTimer(int id) {
    if (!importing_) return;
    if (id == kWatchdogTimer) {
        // Ten seconds without a line: the computer is not answering.
        Stop(false);
        host_.ShowMessage(
            u"Star Diamond unavailable, please close this window, turn the Star "
            u"Diamond off and then on again and try again",
            u"Star Diamond not available", true);
        return;
    }
    if (id != kRequestTimer) return;
    switch (step_) {
        case 1:
            host_.SendToComputer("H\r\n");
            break;
        case 2:
            platform::DebugTrace(u">>>pos\n");
            host_.SendToComputer("pos\r\n");
            break;
        case 3:
            // The result first; each bare line then asks for the next line of the move list.
            if (!resultRequested_) {
                host_.SendToComputer("res\r\n");
                resultRequested_ = true;
            } else {
                host_.SendToComputer("\r\n");
            }
            break;
        default:
            break;
    }
}

// Restarts the watchdog and moves the protocol on: the first two lines only pace the requests,
// then come the position (between two file headers) and the moves.
void StarDiamondImport::StepOnLine() {
    host_.SetTimer(kWatchdogTimer, kWatchdogMilliseconds);
    switch (step_) {
        case 0:
            step_ = 1;
            host_.SetTimer(kRequestTimer, kWakeDelay);
            break;
        case 1:
            step_ = 2;
            host_.SetTimer(kRequestTimer, kLineDelay);
            break;
        case 2:
            if (StartsWithNoCase(line_, kFilesHeader)) {
                if (!headerSeen_) {
                    headerSeen_ = true;
                    platform::DebugTrace(u"D\u00e9but de position\n");
                } else {
                    step_ = 3;
                    host_.SetTimer(kRequestTimer, kMovesDelay);
                    platform::DebugTrace(u"Attente des coups\n");
                }
            } else if (line_[0] == u'.' && !ReadRankLine()) {
                Fail(kPositionError);
            }
            break;
        case 3:
            StepOnMoveLine();
            break;
        default:
            break;
    }
}

// Reads the move count or a move. Lines that come before the result was asked for are the
// tail of the position output and change nothing.
void StarDiamondImport::StepOnMoveLine() {
    if (!resultRequested_) return;
    if (StartsWithNoCase(line_, kReplay)) {
        int count = 0;
        ReadDecimal(line_ + kReplay.size(), &count);
        movesAnnounced_ = count;
        host_.AppendMessage((platform::Utf8ToWide(std::to_string(count)) + u" moves").c_str());
        // A count below zero has nothing to wait for either.
        if (count <= 0) Finish(u"No moves played");
    } else if (line_[0] == u'M') {
        if (!ReadMoveLine()) {
            Fail(kMoveError);
            return;
        }
        if (++movesReceived_ == movesAnnounced_) Finish(u"All moves received");
    }
    host_.SetTimer(kRequestTimer, kLineDelay);
}

// Reads a rank of the position dump: '.', the rank number, then the squares of files a..h as
// two-character codes at 3, 6, ..., 24. The line numbered 2 carries the side to move at 28.
bool StarDiamondImport::ReadRankLine() {
    int rank = 0;
    if (!ReadDecimal(line_ + 1, &rank) || rank < 1 || rank > 8) return false;
    const std::u16string_view line(line_);
    for (int file = 0; file < 8; ++file) {
        const std::size_t at = 3 + 3 * static_cast<std::size_t>(file);
        const PieceCode code = at + 2 <= line.size() ? PieceOfCode(line.substr(at, 2)) : 0;
        position_->SetSquare((rank - 1) * 8 + file, code);
    }
    if (rank == 2) {
        position_->Value().sideToMove = line.size() > 28 && line[28] == u'+' ? kWhite : kBlack;
    }
    return true;
}

// Reads "Move  1 e2-e4" or "Move 31 a7-a8/Q": the squares at 8-9 and 11-12, a promotion piece
// after '/' at 13. A piece must stand on the from square and the move must be legal on the
// position reached so far.
bool StarDiamondImport::ReadMoveLine() {
    const std::u16string_view line(line_);
    if (line.size() < 13) return false;
    const int from = SquareOf(line[8], line[9]);
    const int to = SquareOf(line[11], line[12]);
    // The rules would let "nothing" move from an empty square; no real move does.
    if (from < 0 || to < 0 || position_->GetSquare(from) == 0) return false;
    int promotion = 0;
    if (line.size() > 13 && line[13] == u'/') {
        promotion = line.size() > 14 ? TypeFromLetter(line[14]) : 0;
        if (promotion == 0) return false;
    }
    Position* next = position_->PlayMove(from, to, nullptr, promotion, nullptr);
    if (next == nullptr) return false;
    position_ = next;
    return true;
}

// Keeps the game, shown from its start, and tells the user the import is over. The state is
// settled before the message box, which runs a message loop of its own.
void StarDiamondImport::Finish(const char16_t* text) {
    Stop(true);
    Position& start = game_->StartPosition();
    start.CheckIfStandardStart();
    game_->modified = 1;
    game_->SetCurrent(&start);
    step_ = 4;
    host_.ShowMessage(text, u"Import finished", false);
}

// Stops before the message box is shown, so that no timer fires while it is up.
void StarDiamondImport::Fail(const char16_t* text) {
    Stop(false);
    host_.ShowMessage(text, kErrorCaption, true);
}

void StarDiamondImport::Stop(bool keepGame) {
    importing_ = false;
    host_.KillTimer(kRequestTimer);
    host_.KillTimer(kWatchdogTimer);
    if (!keepGame) {
        game_.reset();
        position_ = nullptr;
    }
    host_.ImportStopped();
}

}  // namespace velmora
