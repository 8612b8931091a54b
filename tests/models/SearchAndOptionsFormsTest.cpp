// The search dialog's criteria and texts, and the option pages' rules, without windows.
#include <gtest/gtest.h>

#include <array>
#include <map>

#include "models/OptionsForm.h"
#include "models/SearchForm.h"

namespace velmora {
namespace {

TEST(SearchFormTest, CriteriaComeFromTheControlsAsTheSearchReadsThem) {
    SearchFormFields fields;
    fields.white = std::u16string(70, u'a');
    fields.black = u"@Carl";
    fields.ignoreColors = true;
    fields.eco = u"B90/Najdorf";
    fields.resultChoice = 3;  // "0-1"
    SearchCriteria criteria = CriteriaFromForm(fields);
    EXPECT_EQ(criteria.white.size(), 64u);
    EXPECT_EQ(criteria.black, u"@Carl");
    EXPECT_TRUE(criteria.ignoreColors);
    EXPECT_EQ(criteria.eco, u"B90/Naj");
    EXPECT_EQ(criteria.result, 2);
    EXPECT_FALSE(criteria.position.has_value());
    EXPECT_FALSE(criteria.material);

    // The result alone is no criterion; "Don't care" and no selection leave it open.
    for (const auto& [choice, result] : {std::pair{0, -1}, {-1, -1}, {4, -1}, {1, 0}}) {
        SearchFormFields only;
        only.resultChoice = choice;
        EXPECT_EQ(CriteriaFromForm(only).result, result) << choice;
        EXPECT_FALSE(CriteriaFromForm(only).IsUsable());
    }

    // The position and material go in only when their boxes are checked.
    SearchFormFields board;
    board.position.Put(12, 0);
    board.material.Set(true, 5, 0);
    SearchCriteria unchecked = CriteriaFromForm(board);
    EXPECT_FALSE(unchecked.position.has_value());
    EXPECT_FALSE(unchecked.IsUsable());
    board.positionOn = true;
    board.materialOn = true;
    SearchCriteria checked = CriteriaFromForm(board);
    ASSERT_TRUE(checked.position.has_value());
    EXPECT_EQ(checked.position->At(12), 0);
    EXPECT_TRUE(checked.material);
    EXPECT_EQ(checked.wantedWhite[5], 0);
    EXPECT_EQ(checked.wantedBlack[5], 1);
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

TEST(SearchFormTest, TextsShownWhileSearching) {
    EXPECT_EQ(FilesToParseText(19), u"19 files to parse");
    EXPECT_EQ(FileNameShown(u"C:\\games\\club\\2024.pgn"), u"2024.pgn");
    EXPECT_EQ(FileNameShown(u"Z:/work/a.pgn"), u"a.pgn");
}

TEST(OptionsFormTest, DisplayPageFindsTheLayoutAndKeepsAnUnknownCode) {
    const std::uint32_t codes[] = {0, 4, 2, 1, 3};
    for (int entry = 0; entry < kLayoutChoiceCount; ++entry)
        EXPECT_EQ(LayoutEntryOf(codes[entry]), entry);
    EXPECT_FALSE(LayoutEntryOf(7).has_value());

    Settings settings;
    settings.layout = 7;
    settings.bitmapIndex = 2;
    DisplayPageState state;  // nothing selected in either list
    state.indicateComment = false;
    state.displayArrow = true;
    StoreDisplayPage(state, settings);
    EXPECT_EQ(settings.layout, 7u);
    EXPECT_EQ(settings.bitmapIndex, 2u);
    EXPECT_EQ(settings.indicateComment, 0u);
    EXPECT_EQ(settings.displayArrow, 1u);
    state.layoutCode = 1;
    state.pieceSet = 3;
    StoreDisplayPage(state, settings);
    EXPECT_EQ(settings.layout, 1u);
    EXPECT_EQ(settings.bitmapIndex, 3u);
}

TEST(OptionsFormTest, StartupPageStoresWhatTheTemplateHolds) {
    struct Case {
        std::uint32_t openLast, option;
        bool displayList, openLastChecked, newGameAlt, createNewGame;
    };
    const Case cases[] = {{0, 0, true, false, true, false},
                          {0, 1, true, false, false, true},
                          {1, 0, false, true, true, false},
                          {5, 2, false, true, false, false}};
    for (const Case& c : cases) {
        Settings settings;
        settings.openLastDatabase = c.openLast;
        settings.databaseOption = c.option;
        const StartupChecks checks = StartupChecksFor(settings);
        EXPECT_EQ(checks.displayList, c.displayList);
        EXPECT_EQ(checks.openLast, c.openLastChecked);
        EXPECT_EQ(checks.newGameAlt, c.newGameAlt);
        EXPECT_EQ(checks.createNewGame, c.createNewGame);
    }

    // Intended: the shipped template has no 1005 or 1006, which read as unchecked, so closing
    // the page stores "Open Last Database" 0 and "Database Option" 1 whatever was stored.
    Settings settings;
    settings.openLastDatabase = 1;
    settings.databaseOption = 0;
    std::map<int, bool> shipped = {
        {kStartupDisplayList, false}, {kStartupCreateNewGame, false}, {kStartupCheckAssoc, true}};
    auto read = [&](int id) { return shipped.count(id) ? shipped[id] : false; };
    StoreStartupPage(read, settings);
    EXPECT_EQ(settings.openLastDatabase, 0u);
    EXPECT_EQ(settings.databaseOption, 1u);
    EXPECT_EQ(settings.checkAssoc, 1u);
    // A template that has them decides through them.
    std::map<int, bool> full = {{kStartupOpenLast, true}, {kStartupNewGameAlt, true}};
    StoreStartupPage([&](int id) { return full.count(id) ? full[id] : false; }, settings);
    EXPECT_EQ(settings.openLastDatabase, 1u);
    EXPECT_EQ(settings.databaseOption, 0u);
    EXPECT_EQ(settings.checkAssoc, 0u);
}

TEST(OptionsFormTest, ColourBoxesKeepTheirLowEightBits) {
    EXPECT_EQ(ColourFromBoxes(255, 128, 0), 0x000080FFu);
    EXPECT_EQ(ColourFromBoxes(300, 511, 0x1FF), 0x00FFFF2Cu);
    EXPECT_EQ(BoxesOfColour(0x00FF80FE), (std::array<std::uint32_t, 3>{254, 128, 255}));
}

TEST(OptionsFormTest, WhatTheGameWindowRedoesAfterTheOptions) {
    Settings settings;
    settings.layout = 4;
    settings.bitmapIndex = 1;
    EXPECT_EQ(EffectOfOptions(4, 1, settings), OptionsEffect::kNone);
    EXPECT_EQ(EffectOfOptions(4, 0, settings), OptionsEffect::kNewPieceImages);
    // A new layout lays everything out again, the piece images with it.
    EXPECT_EQ(EffectOfOptions(0, 0, settings), OptionsEffect::kRelayout);
}

}  // namespace
}  // namespace velmora
