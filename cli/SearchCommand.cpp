// velmora-pgn search: the game search over PGN files from a shell.
#include <memory>
#include <string>

#include "cli/CommandSupport.h"
#include "cli/Commands.h"
#include "core/PositionText.h"
#include "game/GameSearch.h"

namespace velmora::cli {

const char kSearchUsage[] =
    "Usage: velmora-pgn search [--white P] [--black P] [--ignore-colors] [--eco E] "
    "[--result R] [--position TEXT] [--material W/B] FILE...\n"
    "Finds the games of the files that meet every criterion given:\n"
    "  --white P, --black P  the player's name is P exactly (case included), or, when P is\n"
    "                        \"@\" and a text, contains that text in any letter case\n"
    "  --ignore-colors       each name may be that of either player\n"
    "  --eco E               the ECO tag is E exactly\n"
    "  --result R            1-0, 1/2-1/2 or 0-1\n"
    "  --position TEXT       the main line reaches the position (squares only), given as a\n"
    "                        position text such as \"velmora-pgn play\" prints\n"
    "  --material W/B        the main line reaches this material: for White, then Black, piece\n"
    "                        letters P R N B Q each with a count, e.g. P8R2N2B2Q1/P8R2N2B2Q1;\n"
    "                        a letter left out means none\n"
    "A result alone is not enough. Each game found is printed as a line of \"list\" with its\n"
    "file and number first and, for --position and --material, where it was met last (+n after\n"
    "White's move n, -n after Black's, 0 at the start). A summary goes to standard error.\n"
    "Exits with 1 when a file could not be read, 2 on a usage error.\n";

namespace {

// Reads one side's material, e.g. "P8R2N2B2Q1", into counts by type. Returns false on
// anything else: an unknown letter, a letter given twice or a count missing or above 64.
bool ReadSideMaterial(std::u16string_view text, SearchPosition::WantedCounts* counts) {
    static constexpr char16_t kLetters[] = u"PRNBQ";  // types 1..5 in this order
    counts->fill(0);
    bool seen[6] = {};
    std::size_t i = 0;
    while (i < text.size()) {
        char16_t letter = text[i] >= u'a' && text[i] <= u'z' ? text[i] - 0x20 : text[i];
        std::u16string_view letters(kLetters);
        std::size_t index = letters.find(letter);
        if (index == std::u16string_view::npos) return false;
        int type = static_cast<int>(index) + 1;
        if (seen[type]) return false;
        seen[type] = true;
        std::size_t digits = ++i;
        int count = 0;
        while (i < text.size() && text[i] >= u'0' && text[i] <= u'9' && i - digits < 2)
            count = count * 10 + (text[i++] - u'0');
        if (i == digits || count > 64) return false;
        (*counts)[type] = static_cast<std::uint8_t>(count);
    }
    return true;
}

bool ReadMaterial(const std::u16string& text, SearchCriteria* criteria) {
    std::size_t slash = text.find(u'/');
    if (slash == std::u16string::npos) return false;
    std::u16string_view view(text);
    return ReadSideMaterial(view.substr(0, slash), &criteria->wantedWhite) &&
           ReadSideMaterial(view.substr(slash + 1), &criteria->wantedBlack);
}

// Prints each game as it is found, and the progress through the files.
class PrintingObserver final : public SearchObserver {
  public:
    PrintingObserver(std::ostream& out, std::ostream& err, bool showFoundAt)
        : out_(out), err_(err), progress_(err, u""), showFoundAt_(showFoundAt) {}

    void FileStarted(int, const std::u16string& path, std::int64_t size,
                     platform::ErrorCode error) override {
        progress_.SetLabel(path);
        if (size >= 0) return;
        unreadable = true;
        StreamMessages(err_).ShowUnopenable(path, error);
    }
    void Progress(int, std::uint32_t) override { progress_.Update("games", ++games_); }
    void Found(const GameRow& row, int number) override {
        line_.clear();
        AppendUtf8(line_, row.FilePath());
        line_ += '\t' + std::to_string(number) + '\t';
        AppendRow(line_, row);
        if (showFoundAt_) line_ += '\t' + std::to_string(row.FoundAt());
        line_ += '\n';
        out_.write(line_.data(), static_cast<std::streamsize>(line_.size()));
    }

    bool unreadable = false;

  private:
    std::ostream& out_;
    std::ostream& err_;
    cli::Progress progress_;
    bool showFoundAt_;
    long long games_ = 0;
    std::string line_;
};

}  // namespace

int RunSearch(const Arguments& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args, kSearchUsage, out)) return kExitOk;
    SearchCriteria criteria;
    std::vector<std::u16string> files;
    auto usage = [&](const char* problem) {
        if (problem) err << problem << '\n';
        err << kSearchUsage;
        return kExitUsage;
    };
    bool optionsEnded = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::u16string& arg = args[i];
        if (optionsEnded || arg.empty() || arg[0] != u'-') {
            files.push_back(arg);
            continue;
        }
        if (arg == u"--") {
            optionsEnded = true;
        } else if (arg == u"--ignore-colors") {
            criteria.ignoreColors = true;
        } else if (arg == u"--white" || arg == u"--black" || arg == u"--eco" ||
                   arg == u"--result" || arg == u"--position" || arg == u"--material") {
            if (i + 1 == args.size()) return usage("An option needs a value.");
            const std::u16string& value = args[++i];
            if (arg == u"--white") {
                criteria.white = value;
            } else if (arg == u"--black") {
                criteria.black = value;
            } else if (arg == u"--eco") {
                criteria.eco = value;
            } else if (arg == u"--result") {
                criteria.result = value == u"1-0"       ? kWhiteWins
                                  : value == u"1/2-1/2" ? kDraw
                                  : value == u"0-1"     ? kBlackWins
                                                        : -2;
                if (criteria.result == -2) return usage("--result is 1-0, 1/2-1/2 or 0-1.");
            } else if (arg == u"--position") {
                criteria.position.emplace();
                if (!ReadPositionText(value.c_str(), &*criteria.position)) {
                    return usage("--position: the position text cannot be read.");
                }
            } else if (!ReadMaterial(value, &criteria)) {
                return usage("--material: expected counts such as P8R2N2B2Q1/P8R2N2B2Q1.");
            } else {
                criteria.material = true;
            }
        } else {
            return usage("Unknown option.");
        }
    }
    if (criteria.position && criteria.material) {
        return usage("Give either --position or --material, not both.");
    }
    if (!criteria.IsUsable()) {
        StreamMessages(err).Show(GameSearch::kNoCriteriaText, GameSearch::kCaption,
                                 MessageIcon::Warning, MessageButtons::Ok, nullptr);
        return kExitUsage;
    }
    if (files.empty()) return usage("No file to search.");
    criteria.Truncate();

    StreamMessages messages(err);
    GameSearch search(criteria);
    int found = 0;
    bool unreadable = false;
    {
        PrintingObserver observer(out, err, criteria.position || criteria.material);
        search.Run(files, &observer);
        found = search.Found();
        unreadable = observer.unreadable;
    }
    err << search.GamesSearched() << " games searched in " << search.FilesSearched() << " files, "
        << found << " found\n";
    return unreadable ? kExitFailed : kExitOk;
}

}  // namespace velmora::cli
