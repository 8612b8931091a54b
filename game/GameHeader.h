// GameHeader and GameSummary: a game's tags and the record a loaded game keeps beside its moves.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "game/OwnedText.h"

namespace velmora {

// 0 White wins "1-0", 1 draw "1/2-1/2", 2 Black wins "0-1", 3 unknown "*", -1 no Result tag
// seen yet.
using ResultCode = std::int32_t;
constexpr ResultCode kWhiteWins = 0;
constexpr ResultCode kDraw = 1;
constexpr ResultCode kBlackWins = 2;
constexpr ResultCode kResultUnknown = 3;
constexpr ResultCode kResultUnset = -1;

// The code of a result text: "1-0", "0-1", "1/2-1/2" or "½-½" (exact); any other text gives 3.
ResultCode ResultFromText(std::u16string_view text);

// How a result is written: as in PGN files ("1/2-1/2"), or as the game list shows it ("½-½").
enum class ResultForm { Pgn, Display };
// "1-0", "1/2-1/2" or "½-½", "0-1", else "*".
const char16_t* ResultTextOf(ResultCode result, ResultForm form);

// The seven standard tag values, the result and the correspondence tags.
class GameHeader {
  public:
    // White "White", Black "Black", Event, Site and Round "?", Date "????.??.??", Result 3.
    GameHeader();
    GameHeader(const GameHeader&) = default;
    GameHeader& operator=(const GameHeader&) = default;
    virtual ~GameHeader() = default;

    // Each setter copies the text, or stores no value for null.
    virtual void SetWhite(const char16_t* text) { white.Set(text); }
    virtual void SetBlack(const char16_t* text) { black.Set(text); }
    virtual void SetDate(const char16_t* text) { date.Set(text); }
    virtual void SetRound(const char16_t* text) { round.Set(text); }
    virtual void SetSite(const char16_t* text) { site.Set(text); }
    virtual void SetEvent(const char16_t* text) { event.Set(text); }
    // Sets the result from "1-0", "0-1", "1/2-1/2" or "½-½" (exact); any other text gives 3.
    virtual void SetResultText(const char16_t* text);
    // Stores the low 8 bits of code (so -1 becomes 255).
    virtual void SetResultCode(int code) { result = static_cast<std::uint8_t>(code); }

    void SetWhiteEmail(const char16_t* text) { whiteEmail.Set(text); }
    void SetBlackEmail(const char16_t* text) { blackEmail.Set(text); }
    void SetLastMoveDate(const char16_t* text) { lastMoveDate.Set(text); }

    // The state the file scanner starts each game from: White and Black none, Result -1, Date
    // "??\??", Event, Site and Round "?".
    void Reset();
    // True when the six texts are present and a result was seen.
    bool IsComplete() const;
    const char16_t* ResultText(ResultForm form) const { return ResultTextOf(result, form); }

    OwnedText white;
    OwnedText black;
    OwnedText event;
    OwnedText date;
    OwnedText round;
    OwnedText site;
    ResultCode result = kResultUnknown;
    OwnedText whiteEmail;  // its presence decides whether the correspondence tags are written
    OwnedText blackEmail;
    OwnedText lastMoveDate;
    std::uint16_t lastMove = 0;  // number of the last move sent; 0 none
    std::uint16_t trait = 0;     // side to move of a correspondence game: 0 White, 32 Black
};

// One extra tag pair of a game; names compare case-insensitively.
struct ExtraTag {
    OwnedText value;
    OwnedText name;
    std::unique_ptr<ExtraTag> next;

    ExtraTag() = default;
    ExtraTag(const ExtraTag&) = delete;
    ExtraTag& operator=(const ExtraTag&) = delete;
    virtual ~ExtraTag();  // frees the rest of the list without recursion
};

using SettingsBlock = std::array<std::int32_t, 7>;

// A header plus what a game keeps beside its moves: offsets, file path, ECO, the start text,
// the extra tags and the settings words, all as UTF-16 texts. Game builds on it; a game list
// keeps its games as rows of their file's bytes instead (GameIndex).
class GameSummary : public GameHeader {
  public:
    static constexpr std::size_t kStartLength = 30;
    static constexpr SettingsBlock kInitialSettings = {0, -1, 1800, -1, 0, 0, 0};

    GameSummary() = default;
    GameSummary(const GameSummary&) = delete;
    GameSummary& operator=(const GameSummary&) = delete;

    // Replaces the value of the first tag whose name equals name ignoring case, or appends a
    // new tag; returns that tag.
    virtual ExtraTag* SetTag(const char16_t* name, const char16_t* value);
    // Unlinks tag from the list without freeing it; the caller takes ownership. Nothing
    // happens when tag is not in the list (the result is then null).
    virtual std::unique_ptr<ExtraTag> RemoveTag(ExtraTag* tag);
    // Appends a tag without looking for one of the same name.
    ExtraTag* AppendTag(const char16_t* name, const char16_t* value);
    ExtraTag* FirstTag() const { return tags_.get(); }

    void SetEco(const char16_t* text) { eco.Set(text); }
    // Keeps at most the first 30 characters.
    void SetStart(const char16_t* text);
    void SetSettings(const SettingsBlock& words);
    SettingsBlock GetSettings() const { return settings_ ? *settings_ : kInitialSettings; }

    // The path of the file the game belongs to; empty when it has none.
    const std::u16string& FilePath() const;
    void SetFilePath(std::shared_ptr<const std::u16string> path) { path_ = std::move(path); }
    void SetFilePath(const std::u16string& path);
    const std::shared_ptr<const std::u16string>& SharedFilePath() const { return path_; }

    std::uint32_t offset = 0;     // byte offset of the game's first tag line
    std::uint32_t endOffset = 0;  // byte offset just past the game's text
    OwnedText eco;
    OwnedText start;

  private:
    std::shared_ptr<const std::u16string> path_;  // shared by the games of one file
    std::unique_ptr<ExtraTag> tags_;
    // Null while the words are the initial ones, as they are for nearly every game.
    std::unique_ptr<SettingsBlock> settings_;
};

// Compares two texts ignoring the case of ASCII letters; null equals empty.
bool EqualsIgnoringCase(const char16_t* a, const char16_t* b);

}  // namespace velmora
