// The game headers dialog's data: reading a game into its fields and storing them back.
#include "models/GameHeadersForm.h"

#include <cstdio>

#include "game/Game.h"
#include "models/Settings.h"

namespace velmora {

namespace {

// Reads one whole number as "%d" does: blanks first, an optional sign, at least one digit.
bool ReadNumber(const char16_t*& at, int* number) {
    while (*at == u' ' || *at == u'\t' || *at == u'\n' || *at == u'\r' || *at == u'\v' ||
           *at == u'\f') {
        ++at;
    }
    bool negative = false;
    if (*at == u'+' || *at == u'-') negative = *at++ == u'-';
    if (*at < u'0' || *at > u'9') return false;
    long long value = 0;
    while (*at >= u'0' && *at <= u'9') {
        if (value < 100000000) value = value * 10 + (*at - u'0');
        ++at;
    }
    *number = static_cast<int>(negative ? -value : value);
    return true;
}

int DaysInMonth(int year, int month) {
    static constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}

std::u16string TextOf(const OwnedText& text) {
    return text.Get() != nullptr ? std::u16string(text.Get()) : std::u16string();
}

// Sets a name through setter when it differs from the game's, and makes it the newest name of
// recent (when there is one and the name is not empty).
template <typename Setter>
void StoreName(Game& game, const OwnedText& current, const std::u16string& text, Setter setter,
               RecentList* recent) {
    const std::u16string shown = text.substr(0, kHeaderFieldLength);
    if (shown == TextOf(current)) return;
    (game.*setter)(shown.c_str());
    if (recent != nullptr && !shown.empty()) recent->Add(shown);
}

}  // namespace

std::optional<CalendarDate> ParseHeaderDate(const char16_t* text) {
    if (text == nullptr) return std::nullopt;
    CalendarDate date;
    const char16_t* at = text;
    if (!ReadNumber(at, &date.year) || *at++ != u'.' || !ReadNumber(at, &date.month) ||
        *at++ != u'.' || !ReadNumber(at, &date.day)) {
        return std::nullopt;
    }
    // The date picker holds the years 1601 to 9999 only.
    if (date.year < 1601 || date.year > 9999 || date.month < 1 || date.month > 12 || date.day < 1 ||
        date.day > DaysInMonth(date.year, date.month)) {
        return std::nullopt;
    }
    return date;
}

std::u16string FormatHeaderDate(const std::optional<CalendarDate>& date) {
    if (!date) return u"????.??.??";
    char text[32];
    std::snprintf(text, sizeof text, "%04d.%02d.%02d", date->year, date->month, date->day);
    return std::u16string(text, text + std::char_traits<char>::length(text));
}

HeaderFields ReadHeaderFields(const Game& game) {
    HeaderFields fields;
    fields.white = TextOf(game.white);
    fields.black = TextOf(game.black);
    fields.site = TextOf(game.site);
    fields.event = TextOf(game.event);
    fields.round = TextOf(game.round);
    fields.date = ParseHeaderDate(game.date.Get());
    const int code = game.result & 0xFF;
    fields.result = code <= 3 ? code : -1;
    return fields;
}

void StoreHeaderFields(Game& game, const HeaderFields& fields, Settings* settings) {
    game.modified = 1;
    StoreName(game, game.white, fields.white, &Game::SetWhite,
              settings ? &settings->recentPlayers : nullptr);
    StoreName(game, game.black, fields.black, &Game::SetBlack,
              settings ? &settings->recentPlayers : nullptr);
    StoreName(game, game.site, fields.site, &Game::SetSite,
              settings ? &settings->recentSites : nullptr);
    StoreName(game, game.event, fields.event, &Game::SetEvent,
              settings ? &settings->recentEvents : nullptr);
    StoreName(game, game.round, fields.round, &Game::SetRound, nullptr);
    const std::u16string date = FormatHeaderDate(fields.date);
    if (date != TextOf(game.date)) game.SetDate(date.c_str());
    if (fields.result >= 0 && fields.result <= 3 && fields.result != (game.result & 0xFF)) {
        game.SetResultCode(fields.result);
    }
}

}  // namespace velmora
