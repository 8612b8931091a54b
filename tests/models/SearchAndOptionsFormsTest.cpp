// The search dialog's criteria, the start-up page's rule and the port typed in the port chooser,
// without windows; the dialogs themselves run in tests/win32/SearchAndOptionsTest.cpp.
#include <gtest/gtest.h>

#include <map>

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
}

// Intended: the shipped template has no 1005 or 1006, which read as unchecked, so closing the
// page stores "Open Last Database" 0 and "Database Option" 1 whatever was stored.
TEST(OptionsFormTest, StartupPageStoresWhatTheTemplateHolds) {
    Settings settings;
    settings.openLastDatabase = 1;
    settings.databaseOption = 0;
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
