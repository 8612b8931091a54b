// GameHeader and GameSummary: defaults, the scanner's reset, results, tags and the start text.
#include "game/GameHeader.h"

#include <algorithm>

namespace velmora {

namespace {

char16_t FoldCase(char16_t c) {
    return (c >= u'a' && c <= u'z') ? c - (u'a' - u'A') : c;
}

}  // namespace

bool EqualsIgnoringCase(const char16_t* a, const char16_t* b) {
    if (a == nullptr) a = u"";
    if (b == nullptr) b = u"";
    for (; *a && *b; ++a, ++b) {
        if (FoldCase(*a) != FoldCase(*b)) return false;
    }
    return *a == *b;
}

ResultCode ResultFromText(std::u16string_view text) {
    if (text == u"1-0") return kWhiteWins;
    if (text == u"0-1") return kBlackWins;
    if (text == u"1/2-1/2" || text == u"\u00BD-\u00BD") return kDraw;
    return kResultUnknown;
}

GameHeader::GameHeader()
    : white(u"White"), black(u"Black"), event(u"?"), date(u"????.??.??"), round(u"?"), site(u"?") {}

void GameHeader::SetResultText(const char16_t* text) {
    result = text == nullptr ? kResultUnknown : ResultFromText(text);
}

// Sets the scanner's starting state. Its Date text differs from a new game's on purpose.
void GameHeader::Reset() {
    // Shared: every game the scanner starts takes these, so they are made once.
    static const OwnedText unknownDate(u"??\\??");
    static const OwnedText unknown(u"?");
    white.Reset();
    black.Reset();
    result = kResultUnset;
    date = unknownDate;
    round = unknown;
    site = unknown;
    event = unknown;
}

bool GameHeader::IsComplete() const {
    return !white.IsNull() && !black.IsNull() && !event.IsNull() && !round.IsNull() &&
           !site.IsNull() && !date.IsNull() && result != kResultUnset;
}

const char16_t* ResultTextOf(ResultCode result, ResultForm form) {
    switch (result) {
        case kWhiteWins:
            return u"1-0";
        case kDraw:
            return form == ResultForm::Display ? u"\u00BD-\u00BD" : u"1/2-1/2";
        case kBlackWins:
            return u"0-1";
        default:
            return u"*";
    }
}

ExtraTag::~ExtraTag() {
    // Unchain the rest first so a long list is freed in a loop, not by nested destructors.
    std::unique_ptr<ExtraTag> rest = std::move(next);
    while (rest)
        rest = std::move(rest->next);
}

ExtraTag* GameSummary::SetTag(const char16_t* name, const char16_t* value) {
    for (ExtraTag* tag = tags_.get(); tag; tag = tag->next.get()) {
        if (EqualsIgnoringCase(tag->name.Get(), name)) {
            tag->value.Set(value);
            return tag;
        }
    }
    return AppendTag(name, value);
}

ExtraTag* GameSummary::AppendTag(const char16_t* name, const char16_t* value) {
    std::unique_ptr<ExtraTag>* slot = &tags_;
    while (*slot)
        slot = &(*slot)->next;
    *slot = std::make_unique<ExtraTag>();
    (*slot)->name.Set(name);
    (*slot)->value.Set(value);
    return slot->get();
}

std::unique_ptr<ExtraTag> GameSummary::RemoveTag(ExtraTag* tag) {
    for (std::unique_ptr<ExtraTag>* slot = &tags_; *slot; slot = &(*slot)->next) {
        if (slot->get() == tag) {
            std::unique_ptr<ExtraTag> removed = std::move(*slot);
            *slot = std::move(removed->next);
            return removed;
        }
    }
    return nullptr;
}

void GameSummary::SetSettings(const SettingsBlock& words) {
    if (words == kInitialSettings) {
        settings_.reset();
    } else if (settings_) {
        *settings_ = words;
    } else {
        settings_ = std::make_unique<SettingsBlock>(words);
    }
}

void GameSummary::SetStart(const char16_t* text) {
    if (text == nullptr) {
        start.Reset();
        return;
    }
    std::u16string_view view(text);
    start.Set(view.substr(0, std::min(view.size(), kStartLength)));
}

const std::u16string& GameSummary::FilePath() const {
    static const std::u16string empty;
    return path_ ? *path_ : empty;
}

void GameSummary::SetFilePath(const std::u16string& path) {
    path_ = std::make_shared<const std::u16string>(path);
}

}  // namespace velmora
