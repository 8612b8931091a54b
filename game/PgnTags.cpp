// Tag lines as loading a game reads them.
#include "game/PgnTags.h"

#include "core/PositionText.h"
#include "platform/CodePage.h"

namespace velmora {

namespace {

// Whether line starts with prefix, ASCII letters compared ignoring case.
bool StartsWithIgnoringCase(std::string_view line, std::string_view prefix) {
    if (line.size() < prefix.size()) return false;
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        char a = line[i], b = prefix[i];
        if (a >= 'a' && a <= 'z') a = static_cast<char>(a - ('a' - 'A'));
        if (b >= 'a' && b <= 'z') b = static_cast<char>(b - ('a' - 'A'));
        if (a != b) return false;
    }
    return true;
}

}  // namespace

LoadedTag ClassifyTagLine(std::string_view line) {
    static constexpr std::pair<std::string_view, LoadedTag> kPrefixes[] = {
        {"[White ", LoadedTag::White},
        {"[Black ", LoadedTag::Black},
        {"[Result ", LoadedTag::Result},
        {"[Event ", LoadedTag::Event},
        {"[Round ", LoadedTag::Round},
        {"[Site ", LoadedTag::Site},
        {"[Date ", LoadedTag::Date},
        {"[WhiteEmail ", LoadedTag::WhiteEmail},
        {"[BlackEmail ", LoadedTag::BlackEmail},
        {"[LastMoveDate ", LoadedTag::LastMoveDate},
        {"[LastMove ", LoadedTag::LastMove},
        {"[Trait ", LoadedTag::Trait},
        {"[SetUp \"1\"]", LoadedTag::SetUp},
        {"[FEN ", LoadedTag::Fen},
    };
    // Only prefixes whose first letter agrees can match: most lines compare with one or two.
    if (line.size() < 2) return LoadedTag::Other;
    char letter = line[1];
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - ('a' - 'A'));
    for (const auto& [prefix, tag] : kPrefixes) {
        if (prefix[1] == letter && StartsWithIgnoringCase(line, prefix)) return tag;
    }
    return LoadedTag::Other;
}

PgnError SetUpRules::Apply(LoadedTag tag, std::string_view line, PositionValue* start) {
    switch (tag) {
        case LoadedTag::White:
            whiteSeen_ = true;
            break;
        case LoadedTag::SetUp:
            setUpPending_ = true;
            break;
        case LoadedTag::Fen: {
            if (!setUpPending_) return kPgnBadHeaders;
            setUpPending_ = false;
            std::u16string value = QuotedValue(platform::AnsiToWide(line));
            if (!ReadPositionText(value.c_str(), start)) return kPgnBadPosition;
            break;
        }
        default:
            break;
    }
    return kPgnOk;
}

}  // namespace velmora
