// The search dialog's criteria, the option pages' rules and the port typed in the port chooser,
// without windows. The search and options dialogs themselves, colours and the game window's
// response included, are run in tests/win32/SearchAndOptionsTest.cpp.
#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "models/OptionsForm.h"
#include "models/SearchForm.h"
#include "models/SerialPortChoice.h"

namespace velmora {
namespace {

TEST(SearchFormTest, CriteriaComeFromTheControlsAsTheSearchReadsThem) {
    SearchFormFields fields;
    fields.white = std::u16string(70, u'a');
    fields.eco = u"B90/Najdorf";
    fields.resultChoice = 3;  // "0-1"
    SearchCriteria criteria = CriteriaFromForm(fields);
    EXPECT_EQ(criteria.white.size(), 64u);
    EXPECT_EQ(criteria.eco, u"B90/Naj");
    EXPECT_EQ(criteria.result, 2);

    // The result alone is no criterion; "Don't care" and no selection leave it open.
    for (const auto& [choice, result] : {std::pair{0, -1}, {-1, -1}, {4, -1}, {1, 0}}) {
        SearchFormFields only;
        only.resultChoice = choice;
        EXPECT_EQ(CriteriaFromForm(only).result, result) << choice;
        EXPECT_FALSE(CriteriaFromForm(only).IsUsable());
    }

    // The position and material go in only when their boxes are checked (searches with them
    // checked run in the dialog's tests).
    SearchFormFields board;
    board.position.Put(12, 0);
    board.material.Set(true, 5, 0);
    EXPECT_FALSE(CriteriaFromForm(board).IsUsable());
}

TEST(SearchFormTest, MaterialCountsStayWithinWhatABoardCanHold) {
    MaterialWanted wanted;
    EXPECT_EQ(wanted.Text(), u"P8R2N2B2Q1/P8R2N2B2Q1");
    wanted.Set(true, 1, 9);    // at most 8 pawns
    wanted.Set(false, 5, 12);  // at most 9 queens
    wanted.Set(false, 2, -3);
    wanted.Set(true, 6, 1);  // no such type: ignored
    EXPECT_EQ(wanted.Text(), u"P8R2N2B2Q1/P8R0N2B2Q9");
}

TEST(OptionsFormTest, DisplayPageKeepsAnUnknownLayoutCode) {
    EXPECT_EQ(LayoutEntryOf(3), 4);
    EXPECT_FALSE(LayoutEntryOf(7).has_value());
    Settings settings;
    settings.layout = 7;
    settings.bitmapIndex = 2;
    DisplayPageState state;  // nothing selected in either list
    StoreDisplayPage(state, settings);
    EXPECT_EQ(settings.layout, 7u);
    EXPECT_EQ(settings.bitmapIndex, 2u);
}

// Intended: the shipped template has no 1005 or 1006, which read as unchecked, so closing the
// page stores "Open Last Database" 0 and "Database Option" 1 whatever was stored.
TEST(OptionsFormTest, StartupPageStoresWhatTheTemplateHolds) {
    // Open last, option; then the boxes: list, open last, new game alt, create new game.
    const std::uint32_t cases[][6] = {
        {0, 0, 1, 0, 1, 0}, {0, 1, 1, 0, 0, 1}, {1, 0, 0, 1, 1, 0}, {5, 2, 0, 1, 0, 0}};
    Settings settings;
    for (const auto& c : cases) {
        settings.openLastDatabase = c[0];
        settings.databaseOption = c[1];
        const StartupChecks checks = StartupChecksFor(settings);
        EXPECT_EQ((std::vector<bool>{checks.displayList, checks.openLast, checks.newGameAlt,
                                     checks.createNewGame}),
                  (std::vector<bool>{c[2] != 0, c[3] != 0, c[4] != 0, c[5] != 0}))
            << c[0] << " " << c[1];
    }

    std::map<int, bool> shipped = {
        {kStartupDisplayList, false}, {kStartupCreateNewGame, false}, {kStartupCheckAssoc, true}};
    StoreStartupPage([&](int id) { return shipped[id]; }, settings);
    EXPECT_EQ(settings.openLastDatabase, 0u);
    EXPECT_EQ(settings.databaseOption, 1u);
    EXPECT_EQ(settings.checkAssoc, 1u);
    // A template that has them decides through them.
    std::map<int, bool> full = {{kStartupOpenLast, true}, {kStartupNewGameAlt, true}};
    StoreStartupPage([&](int id) { return full[id]; }, settings);
    EXPECT_EQ(settings.openLastDatabase, 1u);
    EXPECT_EQ(settings.databaseOption, 0u);
    EXPECT_EQ(settings.checkAssoc, 0u);
}

TEST(SerialPortChoice, ReadsTypedPorts) {
    const std::pair<const char16_t*, int> cases[] = {
        {u" 12 ", 12},  {u"com7:", 7},  {u"COM3: (serial.dll)", 3},
        {u"", -1},      {u"256", -1},   {u"LPT1:", -1},
        {u"COM 5", -1}, {u"COM1:5", -1}};
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(PortNumberFromText(cases[i].first), cases[i].second) << "case " << i;
    EXPECT_EQ(PortOpenName(21), u"COM21:");
}

}  // namespace
}  // namespace velmora
