// GameHeadersForm: what the game headers dialog shows and stores: the four names with their
// recent lists, the round, the date as a calendar date or none, and the result.
#pragma once

#include <optional>
#include <string>

namespace velmora {

class Game;
class Settings;

struct CalendarDate {
    int year = 0;
    int month = 0;
    int day = 0;
};

// Reads "year.month.day" as three whole numbers (blanks and a sign allowed before each, as
// "%d.%d.%d" reads them). A missing number ("????.??.??", "1999.??.??") or a date the
// calendar cannot show gives none.
std::optional<CalendarDate> ParseHeaderDate(const char16_t* text);
// "%04d.%02d.%02d", or "????.??.??" for none.
std::u16string FormatHeaderDate(const std::optional<CalendarDate>& date);

// The names a form field holds at most.
constexpr int kHeaderFieldLength = 128;

// The values of the dialog's controls.
struct HeaderFields {
    std::u16string white;
    std::u16string black;
    std::u16string site;
    std::u16string event;
    std::u16string round;
    std::optional<CalendarDate> date;
    // 0 "1-0", 1 "1/2-1/2", 2 "0-1", 3 "Line"; -1 when no button is checked.
    int result = -1;
};

// The fields showing game: absent texts as empty, the result code as the checked button.
HeaderFields ReadHeaderFields(const Game& game);

// Stores the fields into game: it is marked modified even when nothing changed; each text
// that differs from the game's is set, and a new non-empty name becomes the newest of its
// recent list ("Players", "Sites", "Events"). The date always goes through the calendar form,
// so a partial date such as "1999.??.??" comes back as "????.??.??".
void StoreHeaderFields(Game& game, const HeaderFields& fields, Settings* settings);

}  // namespace velmora
