// The game record: results, the scanner's reset, tags, observers and the cursor.
#include <gtest/gtest.h>
#include <deque>

#include "PgnTestSupport.h"
#include "game/Game.h"
#include "game/MoveText.h"

namespace velmora {
namespace {

using test::Text;
std::string calls;  // what the views were told, in order

// Logs each call as the view's letter and a letter for the call, so that order shows.
struct View final : GameView {
    explicit View(char name) : name(name) {}
    void OnMovePlayed(MoveNode*, GameView*) override { calls += {name, 'm', ' '}; }
    void OnPositionChanged(Position*) override { calls += {name, 'p', ' '}; }
    void Refresh() override { calls += {name, 'r', ' '}; }
    MoveNode* ChooseContinuation(MoveNode*) override { return nullptr; }
    int EditHeaders() override { return 0; }
    int ChooseSaveTarget(std::u16string*) override { return 0; }
    int QueryClose() override { return 1; }
    char name;
};

TEST(GameRecord, ResultsResetCompletenessAndTags) {
    Game game;
    const std::pair<const char16_t*, ResultCode> texts[] = {
        {u"1-0", 0}, {u"0-1", 2}, {u"1/2-1/2", 1}, {u"1-0 ", 3}, {u"\u00BD-\u00BD", 1}, {u"", 3}};
    const char16_t* forms[] = {u"1-0 1-0", u"1/2-1/2 \u00BD-\u00BD", u"0-1 0-1", u"* *"};
    for (const auto& [text, code] : texts) {
        game.SetResultText(text);
        EXPECT_EQ(game.result, code) << testing::PrintToString(std::u16string(text));
        game.SetResultCode(code + 256);  // only the low 8 bits are kept
        EXPECT_EQ(std::u16string(game.ResultText(ResultForm::Pgn)) + u" " +
                      game.ResultText(ResultForm::Display),
                  forms[code]);
    }
    // Intended: the scanner's reset writes the date differently from a new game.
    game.Reset();
    EXPECT_EQ(Text(game.white) + Text(game.black) + Text(game.date), u"<none><none>??\\??");
    game.SetWhite(u"");  // an empty name counts as present
    game.SetBlack(u"B");
    EXPECT_FALSE(game.IsComplete());  // no result seen yet
    game.SetResultText(u"*");
    EXPECT_TRUE(game.IsComplete());
    EXPECT_EQ(game.modified, 1);  // every setter of a game marks it modified
    ExtraTag* eco = game.SetTag(u"ECO", u"B01");
    ExtraTag* opening = game.SetTag(u"Opening", u"Scandinavian");
    EXPECT_EQ(game.SetTag(u"eco", u"C20"), eco);
    EXPECT_EQ(Text(eco->name) + u"=" + Text(eco->value), u"ECO=C20");
    EXPECT_TRUE(game.FirstTag() == eco && eco->next.get() == opening && !opening->next);
    EXPECT_EQ(game.RemoveTag(eco).get(), eco);
    EXPECT_TRUE(!game.RemoveTag(eco) && game.FirstTag() == opening);  // eco is no longer listed
}

TEST(GameRecord, ObserversAndCursor) {
    View primary('P'), extra('X');
    std::deque<View> views;
    Game game;
    std::vector<Position*> line{&game.StartPosition()};
    for (int ply = 0; ply < 26; ++ply)
        line.push_back(ReadSan(line.back(), std::array{"Nf3", "Nf6", "Ng1", "Ng8"}[ply % 4]));
    EXPECT_EQ(game.AddObserver(&primary, true), 1);
    for (char name = 'a'; name < 'k'; ++name)
        EXPECT_EQ(game.AddObserver(&views.emplace_back(name), false), 1);
    EXPECT_EQ(game.AddObserver(&extra, true) + game.AddObserver(&extra, false),
              0);  // all slots taken
    for (View& view : views)
        if (view.name != 'b' && view.name != 'j') game.RemoveObserver(&view);
    game.NotifyChanged(line[1]->ArrivalNode(), &views[1]);
    game.GoBack();
    game.GoBack();  // at the start already: no notification
    game.GoToEnd();
    game.RefreshAll(&views[1]);  // only the primary observer refreshes the others
    game.RefreshAll(&primary);
    EXPECT_EQ(calls, "jm Pm Pp bp jp Pp bp jp br jr ");
    // Intended: removing a view that was never added lowers the count and loses the last view.
    game.RemoveObserver(&extra);
    game.RemoveObserver(&primary);
    calls.clear();
    game.NotifyChanged(line[1]->ArrivalNode(), nullptr);
    EXPECT_EQ(calls, "bm ");
    EXPECT_EQ(game.PrimaryObserver(), nullptr);
    // lastMove, trait, plies from the start to the position reached (no such move: the start).
    const std::uint16_t cases[][3] = {{12, 0, 24},  {12, 32, 23}, {1, 0, 2},
                                      {13, 32, 25}, {0, 0, 0},    {14, 0, 0}};
    for (const auto& c : cases) {
        std::tie(game.lastMove, game.trait) = std::tie(c[0], c[1]);
        game.GoToEnd();
        game.GoToLastMove();
        EXPECT_EQ(game.Current(), line[c[2]]) << c[0] << " " << c[1];
    }
}

}  // namespace
}  // namespace velmora
