// Loading a game into a Game: the visitor that builds its tags and its move tree.
#include <cstdio>
#include <string>
#include <vector>

#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/PgnLineReader.h"
#include "game/PgnParser.h"
#include "game/PgnTags.h"
#include "platform/CodePage.h"
#include "platform/SystemError.h"

namespace velmora {

namespace {

// Builds the game: its tags from the tag lines, its tree from the moves. The current position
// of each open variation waits on a stack until the variation closes.
class GameBuilder final : public PgnVisitor {
  public:
    explicit GameBuilder(Game& game) : game_(game) {}

    PgnError OnTagLine(std::string_view bytes) override {
        LoadedTag tag = ClassifyTagLine(bytes);
        if (PgnError error = rules_.Apply(tag, bytes, &game_.StartPosition().Value())) {
            return error;
        }
        if (tag == LoadedTag::Fen) game_.StartPosition().setUp = true;
        std::u16string line = platform::AnsiToWide(bytes);
        std::u16string value = QuotedValue(line);
        switch (tag) {
            case LoadedTag::White:
                game_.SetWhite(value.c_str());
                break;
            case LoadedTag::Black:
                game_.SetBlack(value.c_str());
                break;
            case LoadedTag::Result:
                // The display form of the draw is not taken here, unlike in the game list.
                game_.result = value == u"1-0"       ? kWhiteWins
                               : value == u"1/2-1/2" ? kDraw
                               : value == u"0-1"     ? kBlackWins
                                                     : kResultUnknown;
                break;
            case LoadedTag::Event:
                game_.SetEvent(value.c_str());
                break;
            case LoadedTag::Round:
                game_.SetRound(value.c_str());
                break;
            case LoadedTag::Site:
                game_.SetSite(value.c_str());
                break;
            case LoadedTag::Date:
                game_.SetDate(value.c_str());
                break;
            case LoadedTag::WhiteEmail:
                game_.SetWhiteEmail(value.c_str());
                break;
            case LoadedTag::BlackEmail:
                game_.SetBlackEmail(value.c_str());
                break;
            case LoadedTag::LastMoveDate:
                game_.SetLastMoveDate(value.c_str());
                break;
            case LoadedTag::LastMove:
                game_.lastMove = static_cast<std::uint16_t>(LeadingInteger(value));
                break;
            case LoadedTag::Trait:
                game_.trait = EqualsIgnoringCase(value.c_str(), u"White") ? kWhite : kBlack;
                break;
            case LoadedTag::SetUp:
            case LoadedTag::Fen:
                break;
            case LoadedTag::Other: {
                // The name runs from "[" to the first blank, the value is quoted after it.
                std::u16string_view rest = std::u16string_view(line).substr(1);
                std::size_t blank = rest.find(u' ');
                std::u16string name(rest.substr(0, blank));
                std::u16string_view tail =
                    blank == std::u16string_view::npos ? std::u16string_view() : rest.substr(blank);
                game_.AppendTag(name.c_str(), QuotedValue(tail).c_str());
                break;
            }
        }
        return kPgnOk;
    }

    bool SawWhiteTag() const override { return rules_.SawWhite(); }

    PgnError OnMoveSectionStart() override {
        current_ = &game_.StartPosition();
        return rules_.AtMoveSection();
    }

    MoveVerdict OnMove(const char16_t* san, bool firstOfVariation) override {
        if (!firstOfVariation) {
            Position* next = ReadSan(current_, san);
            if (next == nullptr) return {kPgnIllegalMove, current_->SideToMove()};
            current_ = next;
            return {};
        }
        // The first move of a variation replaces the move that led here: it is played from
        // the position before it, beside that move.
        MoveNode* varied = current_->ArrivalNode();
        if (varied == nullptr) return {kPgnBadVariation};
        Position* next = ReadSan(varied->positionBefore, san);
        if (next == nullptr) return {kPgnIllegalVariationMove};
        current_ = next;
        return {};
    }

    void OnComment(std::u16string_view text) override { current_->SetComment(text); }

    void OnNag(long value) override {
        if (value <= 10) {
            if (MoveNode* node = current_->ArrivalNode())
                node->nag = static_cast<std::uint8_t>(value);
        } else {
            current_->Value().evaluation = static_cast<std::uint8_t>(value);
        }
    }

    PgnError OnVariationStart() override {
        open_.push_back(current_);
        return kPgnOk;
    }

    void OnVariationEnd() override {
        current_ = open_.back();
        open_.pop_back();
    }

  private:
    Game& game_;
    SetUpRules rules_;
    Position* current_ = nullptr;
    std::vector<Position*> open_;
};

// Shows that the file could not be opened: the path and the system's text for the error.
void ReportOpenFailure(const std::u16string& path, platform::ErrorCode error, MessageOwner owner) {
    std::u16string text = u"File '" + path + u"' : ";
    std::u16string system = platform::SystemErrorText(error);
    if (system.empty()) {
        char number[16];
        std::snprintf(number, sizeof number, "0x%08X", static_cast<unsigned>(error));
        system.assign(number, number + std::char_traits<char>::length(number));
    }
    text += system;
    if (text.size() > 511) text.resize(511);
    ShowMessage(text, u"Unable to load file", MessageIcon::None, owner);
}

}  // namespace

PgnOutcome LoadGame(Game& game, MessageOwner owner, std::int64_t offset, int saveMode,
                    platform::FileSystem& fileSystem) {
    if (game.FilePath().empty() && game.Owner() != nullptr) {
        game.SetFilePath(game.Owner()->SharedPath());
    }
    platform::ErrorCode error = 0;
    std::unique_ptr<platform::File> file =
        fileSystem.Open(game.FilePath(), platform::OpenMode::ReadShared, &error);
    if (!file) {
        ReportOpenFailure(game.FilePath(), error, owner);
        return PgnOutcome{kPgnCannotOpen, {}};
    }
    if (offset == -1) return PgnOutcome{kPgnNothingToLoad, {}};
    PgnLineReader reader(*file);
    PgnOutcome outcome = LoadGame(game, reader, offset, saveMode);
    if (outcome.Ok()) game.savedText = FingerprintOf(*file, game.offset, game.endOffset);
    return outcome;
}

PgnOutcome LoadGame(Game& game, PgnLineReader& reader, std::int64_t offset, int saveMode) {
    if (offset == -1) return PgnOutcome{kPgnNothingToLoad, {}};
    game.saveMode = saveMode;
    game.offset = static_cast<std::uint32_t>(offset);
    GameBuilder builder(game);
    PgnOutcome outcome = ReadGame(reader, offset, builder);
    if (!outcome.Ok()) return outcome;
    game.endOffset = reader.Position();
    game.hasLocation = 1;
    game.loaded = 1;
    game.modifiedByNew = 0;
    game.modified = 0;
    return outcome;
}

}  // namespace velmora
