// The game record: defaults, results, tags, the start text, observers and the cursor.
#include <gtest/gtest.h>

#include <string>

#include "PgnTestSupport.h"
#include "core/San.h"
#include "game/Game.h"
#include "game/MoveTree.h"

namespace velmora {
namespace {

using test::Text;

// Logs each call as the view's letter and a letter for the call, so that order shows.
class View final : public GameView {
  public:
    View(char name, std::string* log) : name_(name), log_(log) {}
    void OnMovePlayed(MoveNode*, GameView*) override { Log('m'); }
    void OnPositionChanged(Position*) override { Log('p'); }
    void Refresh() override { Log('r'); }
    MoveNode* ChooseContinuation(MoveNode*) override { return nullptr; }
    int EditHeaders() override { return 0; }
    int ChooseSaveTarget(std::u16string*) override { return 0; }
    int QueryClose() override { return 1; }

  private:
    void Log(char call) { *log_ += {name_, call, ' '}; }
    char name_;
    std::string* log_;
};

TEST(GameRecord, NewGameAndScannerResetDefaults) {
    Game game;
    EXPECT_EQ(Text(game.white) + u"|" + Text(game.black) + u"|" + Text(game.date),
              u"White|Black|????.??.??");
    EXPECT_EQ(Text(game.event) + Text(game.site) + Text(game.round), u"???");
    EXPECT_EQ(std::u16string(game.ResultText(1)), u"*");
    EXPECT_EQ(game.GetSettings(), (SettingsBlock{0, -1, 1800, -1, 0, 0, 0}));
    EXPECT_EQ(game.modifiedByNew, 1);
    EXPECT_EQ(game.Current(), &game.StartPosition());
    EXPECT_TRUE(game.IsComplete());

    // The scanner's reset writes the date differently from a new game: intended.
    game.Reset();
    EXPECT_EQ(Text(game.date) + u"|" + Text(game.white) + Text(game.black), u"??\\??|<none><none>");
    EXPECT_EQ(game.result, kResultUnset);
    EXPECT_EQ(std::u16string(game.ResultText(1)), u"*");
    game.SetWhite(u"");  // an empty name counts as present
    game.SetBlack(u"B");
    EXPECT_FALSE(game.IsComplete());
    game.SetResultText(u"*");
    EXPECT_TRUE(game.IsComplete());
    game.SetRound(nullptr);
    EXPECT_FALSE(game.IsComplete());
    EXPECT_EQ(game.modified, 1);  // every setter of a game marks it modified
}

TEST(GameRecord, ResultsFromTextAndCode) {
    const std::pair<const char16_t*, ResultCode> texts[] = {
        {u"1-0", 0},  {u"0-1", 2}, {u"1/2-1/2", 1}, {u"\u00BD-\u00BD", 1},
        {u"1-0 ", 3}, {u"*", 3},   {u"1/2", 3},     {u"", 3}};
    for (const auto& [text, code] : texts) {
        GameHeader header;
        header.SetResultText(text);
        EXPECT_EQ(header.result, code) << testing::PrintToString(std::u16string(text));
    }
    const char16_t* forms[][2] = {
        {u"1-0", u"1-0"}, {u"1/2-1/2", u"\u00BD-\u00BD"}, {u"0-1", u"0-1"}, {u"*", u"*"}};
    GameHeader header;
    for (int code = 0; code < 4; ++code) {
        header.SetResultCode(code + 256);  // only the low 8 bits are kept
        EXPECT_EQ(header.result, code);
        EXPECT_EQ(std::u16string(header.ResultText(0)), forms[code][0]);
        EXPECT_EQ(std::u16string(header.ResultText(1)), forms[code][1]);
    }
}

TEST(GameRecord, StartTextAndTags) {
    GameSummary summary;
    summary.SetStart(u"1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 4. Ba4 Nf6 5. O-O");  // 45 characters
    EXPECT_EQ(Text(summary.start), u"1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 ");

    ExtraTag* eco = summary.SetTag(u"ECO", u"B01");
    ExtraTag* opening = summary.SetTag(u"Opening", u"Scandinavian");
    EXPECT_EQ(summary.SetTag(u"eco", u"C20"), eco);
    EXPECT_EQ(Text(eco->name) + u"=" + Text(eco->value), u"ECO=C20");
    EXPECT_EQ(summary.FirstTag(), eco);
    EXPECT_EQ(eco->next.get(), opening);
    EXPECT_EQ(opening->next, nullptr);
    EXPECT_EQ(summary.RemoveTag(opening).get(), opening);
    EXPECT_EQ(eco->next, nullptr);
    EXPECT_EQ(summary.RemoveTag(opening), nullptr);  // no longer listed: nothing happens
    EXPECT_EQ(summary.RemoveTag(eco).get(), eco);
    EXPECT_EQ(summary.FirstTag(), nullptr);
}

TEST(GameRecord, ObserverSlotsAndNotificationOrder) {
    std::string log;
    View primary('P', &log), second('Q', &log), extra('X', &log);
    std::vector<std::unique_ptr<View>> views;
    Game game;
    EXPECT_EQ(game.AddObserver(&primary, 1), 1);
    EXPECT_EQ(game.AddObserver(&second, 1), 0);
    EXPECT_EQ(game.PrimaryObserver(), &primary);
    for (char name = 'a'; name < 'a' + 10; ++name) {
        views.push_back(std::make_unique<View>(name, &log));
        EXPECT_EQ(game.AddObserver(views.back().get(), 0), 1);
    }
    EXPECT_EQ(game.AddObserver(&extra, 0), 0);
    EXPECT_EQ(game.ObserverCount(), 10);
    for (int i = 9; i >= 2; --i)
        game.RemoveObserver(views[i].get());

    Position* after = ReadSan(&game.StartPosition(), "e4");
    ASSERT_NE(after, nullptr);
    log.clear();
    game.GoToEnd();
    game.GoBack();
    game.GoBack();  // at the start already: no notification
    EXPECT_EQ(log, "Pp ap bp Pp ap bp ");
    log.clear();
    game.NotifyChanged(after->ArrivalNode(), views[0].get());
    EXPECT_EQ(game.Current(), after);
    game.RefreshAll(views[0].get());  // only the primary observer refreshes the others
    game.RefreshAll(&primary);
    EXPECT_EQ(log, "bm Pm ar br ");

    // Removing a view that was never added lowers the count and loses the last view: intended.
    log.clear();
    game.RemoveObserver(&extra);
    game.RefreshAll(nullptr);
    EXPECT_EQ(log, "ar ");
    game.RemoveObserver(&primary);
    EXPECT_EQ(game.PrimaryObserver(), nullptr);
    EXPECT_EQ(game.ObserverCount(), 1);
}

TEST(GameRecord, GoToLastMoveFindsTheCorrespondencePosition) {
    Game game;
    Position* position = &game.StartPosition();
    for (int n = 1; n <= 13; ++n) {
        for (const char* san : {n % 2 ? "Nf3" : "Ng1", n % 2 ? "Nf6" : "Ng8"}) {
            position = ReadSan(position, san);
            ASSERT_NE(position, nullptr);
        }
    }
    // lastMove, trait, plies from the start to the position reached (no such move: the start).
    const int cases[][3] = {{12, 0, 24},  {12, 32, 23}, {1, 0, 2},
                            {13, 32, 25}, {0, 0, 0},    {14, 0, 0}};
    for (const auto& c : cases) {
        game.lastMove = static_cast<std::uint16_t>(c[0]);
        game.trait = static_cast<std::uint16_t>(c[1]);
        game.GoToEnd();
        game.GoToLastMove();
        int plies = 0;
        for (Position* p = game.Current(); p->PreviousPosition(); p = p->PreviousPosition())
            ++plies;
        EXPECT_EQ(plies, c[2]) << c[0] << " " << c[1];
    }
}

}  // namespace
}  // namespace velmora
