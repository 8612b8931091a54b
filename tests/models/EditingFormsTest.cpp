// The plain classes behind the editing dialogs: header fields, tag rows and save targets.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PgnTestSupport.h"
#include "game/Game.h"
#include "game/PgnSave.h"
#include "models/GameHeadersForm.h"
#include "models/SaveTargets.h"
#include "models/Settings.h"
#include "models/TagEditor.h"
#include "platform/CodePage.h"

namespace velmora {
namespace {

using test::Text;
using Texts = std::vector<std::u16string>;

std::u16string U(const std::string& text) {
    return platform::Utf8ToWide(text);
}
Texts Names(const RecentList& list) {  // oldest first
    Texts names;
    for (int i = 0; i < list.Count(); ++i)
        names.push_back(list.At(i));
    return names;
}
// White, Black, Site, Event, Round, Date and the result code, "<none>" for an absent text.
std::u16string Headers(const Game& game) {
    std::u16string text;
    for (const OwnedText* field :
         {&game.white, &game.black, &game.site, &game.event, &game.round, &game.date})
        text += Text(*field) + u"|";
    return text + static_cast<char16_t>(u'0' + game.result);
}

// A date reads as "%d.%d.%d" does: blanks and a sign before each number, nothing checked after
// the day. Only a date the calendar (and the date picker's years 1601 to 9999) holds counts.
TEST(GameHeadersForm, DatesReadAsThreeNumbersAndOnlyCalendarDatesCount) {
    for (const char* text : {" 1999. 5.\t7", "+1999.+5.07", "1999.05.07 round 2"})
        EXPECT_EQ(FormatHeaderDate(ParseHeaderDate(U(text).c_str())), u"1999.05.07") << text;
    for (const char* text : {"2000.02.29", "1601.01.01", "9999.12.31"})
        EXPECT_EQ(FormatHeaderDate(ParseHeaderDate(U(text).c_str())), U(text));
    for (const char* text :
         {"1999 .05.07", "1999.??.??", "1999.05", "", "1900.02.29", "2023.04.31", "1600.12.31"})
        EXPECT_FALSE(ParseHeaderDate(U(text).c_str())) << text;
    EXPECT_FALSE(ParseHeaderDate(nullptr));
}

// Intended: the form holds calendar dates only, so a year alone is not kept.
TEST(GameHeadersForm, FieldsShowAbsentTextsAsEmptyAndDropAYearAlone) {
    Game game;
    game.SetWhite(nullptr);
    game.SetResultCode(kBlackWins);
    const HeaderFields fields = ReadHeaderFields(game);
    EXPECT_EQ(fields.white + u"|" + fields.black, u"|Black");
    EXPECT_EQ(fields.result, 2);
    game.SetDate(u"1999.??.??");
    StoreHeaderFields(game, ReadHeaderFields(game), nullptr);
    EXPECT_EQ(Text(game.date), u"????.??.??");
}

TEST(GameHeadersForm, StoringSetsWhatDiffersAndRemembersNewNames) {
    Game game;
    Settings settings;
    settings.recentPlayers.Add(u"Karpov");
    settings.recentPlayers.Add(u"Tal");
    HeaderFields fields{u"Kasparov", u"Karpov", u"Seville", u"WCh", u"24", {{1987, 12, 19}}, 1};
    StoreHeaderFields(game, fields, &settings);
    EXPECT_EQ(Headers(game), u"Kasparov|Karpov|Seville|WCh|24|1987.12.19|1");
    // A known name becomes the newest, not a second entry.
    EXPECT_EQ(Names(settings.recentPlayers), (Texts{u"Tal", u"Kasparov", u"Karpov"}));
    EXPECT_EQ(Names(settings.recentEvents), Texts{u"WCh"});

    // A cleared name is stored as empty text, not as none, and is not remembered; with no
    // result button checked the result stays.
    fields.white.clear();
    fields.result = -1;
    StoreHeaderFields(game, fields, &settings);
    EXPECT_EQ(Headers(game), u"|Karpov|Seville|WCh|24|1987.12.19|1");
    EXPECT_EQ(Names(settings.recentPlayers), (Texts{u"Tal", u"Kasparov", u"Karpov"}));
}

// "name=value" of the game's tags in list order.
Texts Tags(const Game& game) {
    Texts tags;
    for (const ExtraTag* tag = game.FirstTag(); tag; tag = tag->next.get())
        tags.push_back(Text(tag->name) + u"=" + Text(tag->value));
    return tags;
}

// Adding and deleting rows through the dialog is run in tests/win32/EditingDialogsTest.cpp.
TEST(TagEditor, SetAndRemoveRowsFoundInAnyCaseAndRefuseHeaderNames) {
    Game game;
    game.SetTag(u"Annotator", u"Fritz");
    game.SetTag(u"PlyCount", u"41");
    game.modified = 0;
    TagEditor editor(game);
    // The names the program writes itself, in any case.
    for (const char16_t* name : {u"site", u"Result", u"setup", u"FEN", u"blackemail", u"Trait"})
        EXPECT_EQ(editor.Set(name, u"x"), TagEditor::Change::HeaderTag)
            << platform::WideToUtf8(name);
    EXPECT_EQ(editor.Set(u"", u"x"), TagEditor::Change::NoName);
    EXPECT_EQ(editor.Remove(u"Opening"), TagEditor::Change::NoSuchTag);
    EXPECT_EQ(game.modified, 0);
    EXPECT_EQ(editor.Set(u"ANNOTATOR", u"Me"), TagEditor::Change::Replaced);
    EXPECT_EQ(game.modified, 1);
    game.modified = 0;
    EXPECT_EQ(editor.Remove(u"annotator"), TagEditor::Change::Removed);
    EXPECT_EQ(game.modified, 1);
    EXPECT_EQ(Tags(game), (Texts{u"PlyCount=41"}));
    EXPECT_EQ(editor.RowCount(), 1);
}

// Button k names recent file k counted from the newest, by the name after the last separator
// of either kind; only the five newest get a button. The dialog shows newest first for two
// files (tests/win32/EditingDialogsTest.cpp). A path's leading double backslash is made single.
TEST(SaveTargets, RecentFilesNewestFirstAtMostFive) {
    RecentList recent(15);
    EXPECT_EQ(RecentTargetPath(recent, 0), u"");
    for (const char16_t* path :
         {u"\\a.pgn", u"\\b.pgn", u"\\c.pgn", u"\\d.pgn", u"\\e.pgn", u"a/b\\f.pgn", u"a\\b/g.pgn"})
        recent.Add(path);
    EXPECT_EQ(AppendLabels(recent),
              (Texts{u"Append to g.pgn", u"Append to f.pgn", u"Append to e.pgn", u"Append to d.pgn",
                     u"Append to c.pgn"}));
    EXPECT_EQ(RecentTargetPath(recent, 4), u"\\c.pgn");
    EXPECT_EQ(RecentTargetPath(recent, 5), u"");  // the list holds b.pgn, but has no button for it
    EXPECT_EQ(WithoutDoubleBackslash(u"\\\\server\\games.pgn"), u"\\server\\games.pgn");
    EXPECT_EQ(WithoutDoubleBackslash(u"x\\\\y.pgn"), u"x\\\\y.pgn");
}

}  // namespace
}  // namespace velmora
