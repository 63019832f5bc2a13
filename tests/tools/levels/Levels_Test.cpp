// The level tool: levels broken on purpose are found out, the solver knows the fewest
// pushes, and a made level can be made again.

#include <gtest/gtest.h>

#include <algorithm>
#include <queue>
#include <set>

#include "tests/tools/Pack_Game.h"
#include "tools/levels/Check.h"
#include "tools/levels/Make.h"
#include "tools/levels/Packing.h"
#include "tools/levels/Play.h"
#include "tools/levels/Pulls.h"
#include "tools/levels/Random.h"
#include "tools/levels/Solver.h"

using namespace levels;

namespace {

// Level 7 as it might be: three boxes, in order in every respect.
const char kGood[] =
    "title Sample\nworld 1\nseed 1\noptimum 21\n\nmap\n"
    "       ###\n"
    "       #F#\n"
    "       #G##\n"
    "      ##  #\n"
    "     ##   #\n"
    "     # $$ #\n"
    "     # #  ##\n"
    "     #     ##\n"
    "     ###$ ..#\n"
    "      # @#.##\n"
    "      ######\n";

Board Parsed(const std::vector<std::string>& map)
{
    Board board;
    EXPECT_EQ(Board_Parse(map, board), "");
    return board;
}

// A level without its solution, solved; what `change` does to the text comes after.
struct Broken {
    std::string text;

    explicit Broken(std::string good = kGood) : text(std::move(good))
    {
        const LevelFile file = LevelFile_Parse(Game::Get().tables, "level007.txt", text);
        const Solution solution = Solve(file.board);
        const std::string keys =
            Keys(file.board, Tidy(file.board, solution.pushes), file.board.PlayerTwo());
        EXPECT_EQ(solution.pushes.size(), 21u);
        text += "\nsolution " + ShortKeys(keys) + "\n";
    }
    Broken& Change(const std::string& from, const std::string& to)
    {
        const size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        if (at != std::string::npos) text.replace(at, from.size(), to);
        return *this;
    }
    // All faults that are found, in one line.
    std::string Faults() const
    {
        const pack::Tables& tables = Game::Get().tables;
        const Report report = Check(tables, {LevelFile_Parse(tables, "level007.txt", text)}, false);
        std::string all;
        for (const std::string& fault : report.faults) all += fault + "; ";
        return all;
    }
};

#define EXPECT_TELLS(faults, words) \
    EXPECT_NE((faults).find(words), std::string::npos) << "told: " << (faults)

// The fewest pushes by plain breadth-first search over single steps: another way to the
// same number.
int FewestByWalking(const Board& board)
{
    struct State {
        Bits boxes;
        Cell figure;
        bool operator<(const State& o) const
        {
            return boxes != o.boxes ? boxes < o.boxes : figure < o.figure;
        }
    };
    std::set<State> seen;
    std::deque<std::pair<State, int>> queue = {{{board.boxes, board.start}, 0}};
    while (!queue.empty()) {
        auto [state, pushes] = queue.front();
        queue.pop_front();
        if (!seen.insert(state).second) continue;
        if (state.boxes == board.targets) {
            if (Has(Reach(board.floor & ~state.boxes, Bit(state.figure)), board.exit)) {
                return pushes;
            }
            continue;
        }
        for (Direction direction : kDirections) {
            const Bits next = Shift(Bit(state.figure), direction) & board.floor;
            if (!next) continue;
            if (!(next & state.boxes)) {
                queue.push_front({{state.boxes, First(next)}, pushes});
                continue;
            }
            const Bits to = Shift(next, direction) & board.floor & ~state.boxes;
            if (to) queue.push_back({{(state.boxes & ~next) | to, First(next)}, pushes + 1});
        }
    }
    return -1;
}

// A small room by chance: pillars, boxes and targets anywhere, start below the gate.
Board RoomByChance(Random& random)
{
    Board board;
    const int columns = random.Between(4, 7), rows = random.Between(4, 6);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            if (random.Chance(82)) board.floor |= Bit(CellAt(6 + column, kFirstMapRow + row));
        }
    }
    board.start = board.exit = CellAt(8, kFirstMapRow);
    board.floor = Reach(board.floor | Bit(board.exit), Bit(board.exit));
    for (Bits* set : {&board.boxes, &board.targets}) {
        const int count = std::min(5, Count(board.floor) / 5);
        while (Count(*set) < count) {
            Bits rest = board.floor & ~*set & ~Bit(board.exit);
            for (int skip = random.Below(Count(rest)); skip > 0; --skip) TakeFirst(rest);
            *set |= Bit(First(rest));
        }
    }
    return board;
}

}  // namespace

TEST(Levels, CheckFindsWhatWasBrokenOnPurpose)
{
    EXPECT_EQ(Broken().Faults(), "");
    {
        SCOPED_TRACE("a box that no push can free");
        const std::string faults = Broken().Change("# $$ #", "#$ $ #").Faults();
        EXPECT_TELLS(faults, "the solver finds no solution");
    }
    {
        SCOPED_TRACE("one target short");
        EXPECT_TELLS(Broken().Change("@#.##", "@# ##").Faults(), "2 targets and 3 boxes");
    }
    {
        SCOPED_TRACE("a wall missing in the corridor");
        EXPECT_TELLS(Broken().Change("       #F#", "       #F").Faults(), "corridor");
    }
    {
        SCOPED_TRACE("a wall missing around the floor");
        EXPECT_TELLS(Broken().Change("      ######", "      # ####").Faults(), "walls all around");
    }
    {
        SCOPED_TRACE("the solution off by one step, at its head and at its end");
        Broken shorter, longer, turned;
        shorter.text.erase(shorter.text.find_last_of('W'));
        EXPECT_TELLS(shorter.Faults(), "the solution");
        longer.text.insert(longer.text.size() - 1, " W");
        EXPECT_TELLS(longer.Faults(), "comes after the end");
        turned.Change("solution ", "solution A ");
        EXPECT_TELLS(turned.Faults(), "level 7: ");
    }
    {
        SCOPED_TRACE("a wrong optimum, a start out of place, a fourth box");
        Broken wrong;
        wrong.text.replace(wrong.text.find("optimum ") + 8, 2, "20");
        EXPECT_TELLS(wrong.Faults(), "`optimum`");
        EXPECT_TELLS(Broken().Change("# @#", "#@ #").Faults(),
                     "expected one oPlayerArrows at (416, 364)");
        EXPECT_TELLS(Broken().Change("#     ##", "#  .$ ##").Faults(), "expected 3 boxes");
    }
}

TEST(Levels, CheckComparesLevelsAsAWhole)
{
    const pack::Tables& tables = Game::Get().tables;
    const std::string text = Broken().text;
    std::string mirrored;
    // The same level mirrored about the gate's column is no second level.
    const Board board = LevelFile_Parse(tables, "level007.txt", text).board;
    Board other = board;
    auto mirror = [](Bits cells) {
        Bits result = 0;
        while (cells) {
            const Cell cell = TakeFirst(cells);
            result |= Bit(cell + 2 * (8 - ColumnOf(cell)));
        }
        return result;
    };
    other.floor = mirror(board.floor);
    other.boxes = mirror(board.boxes);
    other.targets = mirror(board.targets);
    NewLevel copy;
    copy.board = other;
    copy.title = "Copy";
    copy.keys = Keys(other, Solve(other).pushes);
    const Report report = Check(tables,
                                {LevelFile_Parse(tables, "level007.txt", text),
                                 LevelFile_Parse(tables, "level009.txt", LevelFile_Text(copy))},
                                true);
    std::string all;
    for (const std::string& fault : report.faults) all += fault + "; ";
    EXPECT_TELLS(all, "levels 7 and 9: the same level");
    EXPECT_TELLS(all, "level 6: missing");
    EXPECT_EQ(FloorDifference(board, other), 0);
}

TEST(Levels, AWorldGetsHarderWithABreatherNowAndThen)
{
    std::vector<Rating> ratings(100);
    auto difficulty = [&](int number) -> double& {
        return ratings[static_cast<size_t>(number - 1)].difficulty;
    };
    for (int number = 1; number <= 100; ++number) {
        ratings[static_cast<size_t>(number - 1)].number = number;
        const bool breather = number % 5 == 0 && number % 20 != 0;
        difficulty(number) = (number - 1) % 20 - (breather ? 3 : 0);
    }
    EXPECT_TRUE(OrderFaults(ratings).empty());
    std::swap(difficulty(33), difficulty(38));
    ASSERT_EQ(OrderFaults(ratings).size(), 0u) << "small turns are free";
    difficulty(45) = difficulty(46);
    difficulty(61) = 40;
    EXPECT_EQ(OrderFaults(ratings),
              (std::vector<std::string>{"level 45: no breather between its neighbours",
                                        "levels 66 to 70 are no harder than the five before"}));
}

TEST(Levels, SolverKnowsTheFewestPushes)
{
    const std::vector<std::string> paths = LevelFile_List(std::string(CONTENT_FOLDER) + "/levels");
    int compared = 0;
    for (const std::string& path : paths) {
        const LevelFile file = LevelFile_Read(Game::Get().tables, path);
        if (!file.fault.empty() || Count(file.board.boxes) > 3 || compared == 12) continue;
        ++compared;
        const Solution solution = Solve(file.board);
        ASSERT_EQ(solution.verdict, Verdict::solved) << path;
        EXPECT_EQ(static_cast<int>(solution.pushes.size()), FewestByWalking(file.board)) << path;
        SolveLimits hasty;
        hasty.weight = 3;
        EXPECT_FALSE(Keys(file.board, Solve(file.board, hasty).pushes).empty()) << path;
    }
    EXPECT_GT(compared, 1);
}

TEST(Levels, CoveringAllTargetsWithTheGateShutOffIsNoSolution)
{
    // The box can be pushed onto its target only from above, and then stands between the
    // figure and nothing: from below it shuts the figure in.
    const Board open = Parsed(
        {"  ###", "  #F#", " ##G##", " #   #", " # $ #", " # . #", " # @ #", " #   #", " #####"});
    EXPECT_EQ(Solve(open).pushes.size(), 1u);
    const Board shut = Parsed(
        {"  ###", "  #F#", "  #G#", "  # #", "  #.#", "  #$#", " #   #", " # @ #", " #####"});
    EXPECT_EQ(Solve(shut).verdict, Verdict::unsolvable);
}

TEST(Levels, PruningLosesNoSolution)
{
    Random random(20);
    uint32_t pruned = 0, plain = 0;
    int solved = 0;
    for (int i = 0; i < 12000; ++i) {
        const Board board = RoomByChance(random);
        SolveLimits all;
        all.corrals = false;
        const Solution one = Solve(board), other = Solve(board, all);
        std::string map;
        for (const std::string& line : Board_Map(board, 2)) map += line + "\n";
        ASSERT_EQ(one.verdict, other.verdict) << map;
        ASSERT_EQ(one.pushes.size(), other.pushes.size()) << map;
        SolveLimits packed;
        packed.weight = 3;
        packed.packed = 1;
        const Solution hasty = Solve(board, packed);
        ASSERT_EQ(hasty.verdict, one.verdict) << "packed\n" << map;
        ASSERT_GE(hasty.pushes.size(), one.pushes.size()) << map;
        solved += one.verdict == Verdict::solved && !one.pushes.empty();
        pruned += one.nodes;
        plain += other.nodes;
    }
    EXPECT_GT(solved, 300);
    EXPECT_LT(pruned * 10, plain * 9) << "corrals are pruned at all";
}

// Targets in an alcove of one cell's width fill from its end; one in the open waits for
// nobody.
TEST(Levels, PackingFillsTheFarEndFirst)
{
    const Board board = Parsed({"  ###", "  #F#", " ##G#####", " #     ####", " # $ $ ...#",
                                " # $$  ####", " #   . #", " #  @  #", " #######"});
    Packing packing(board);
    auto at = [](int column, int row) { return Bit(CellAt(column, row)); };
    const Bits near = at(7, 4), middle = at(8, 4), far = at(9, 4), open = at(5, 6);
    const std::vector<Cell> order = packing.Order();
    ASSERT_EQ(order.size(), 4u);
    Bits alcove = 0;
    for (Cell cell : order) {
        const bool inOrder = Bit(cell) == open || (alcove | Bit(cell)) == far ||
                             (alcove | Bit(cell)) == (far | middle) || alcove == (far | middle);
        EXPECT_TRUE(inOrder) << "column " << ColumnOf(cell);
        if (Bit(cell) != open) alcove |= Bit(cell);
    }
    EXPECT_EQ(packing.InTheWay(0), 0);
    EXPECT_EQ(packing.InTheWay(far | open), 0);
    EXPECT_EQ(packing.InTheWay(far | near), 1);
    EXPECT_EQ(packing.InTheWay(near), 1);
    EXPECT_EQ(packing.InTheWay(near | middle | open), 2);
}

TEST(Levels, PackingSolvesManyBoxesSooner)
{
    int compared = 0;
    for (const std::string& path : LevelFile_List(std::string(CONTENT_FOLDER) + "/levels")) {
        const LevelFile file = LevelFile_Read(Game::Get().tables, path);
        if (Count(file.board.boxes) < 12) continue;
        SolveLimits limits;
        limits.weight = 3;
        limits.nodes = 60'000;
        const Solution with = Solve(file.board, limits);
        limits.packed = 99;
        const Solution without = Solve(file.board, limits);
        std::printf("%s: %u positions with packing, %s%u without\n", file.level.title.c_str(),
                    with.nodes, without.verdict == Verdict::solved ? "" : "more than ",
                    without.nodes);
        EXPECT_FALSE(Keys(file.board, with.pushes).empty()) << path;
        EXPECT_FALSE(with.fewest) << "packing proves nothing";
        EXPECT_LT(with.nodes, without.nodes) << path;
        ++compared;
    }
    EXPECT_EQ(compared, 3);
}

TEST(Levels, PullsAndPushesAgreeOnDepth)
{
    const LevelFile file = LevelFile_Parse(Game::Get().tables, "level007.txt", kGood);
    const PullSearch search(file.board, PullLimits());
    ASSERT_TRUE(search.Exact());
    int compared = 0;
    for (uint32_t i = 1; i < search.Size(); i += 1 + search.Size() / 60) {
        Board board = file.board;
        board.boxes = search.Boxes(i);
        board.start = First(search.Area(i));
        const Solution solution = Solve(board);
        ASSERT_EQ(static_cast<int>(solution.pushes.size()), search.Depth(i)) << i;
        EXPECT_FALSE(Keys(board, search.Way(i)).empty()) << i;
        EXPECT_FALSE(Keys(board, Tidy(board, search.Way(i))).empty()) << i;
        ++compared;
    }
    EXPECT_GT(compared, 40);
}

TEST(Levels, AMadeLevelIsMadeAgain)
{
    for (const char* name : {"005", "014", "033", "071", "092"}) {  // quick ones of each kind
        const std::string path = std::string(CONTENT_FOLDER) + "/levels/level" + name + ".txt";
        const LevelFile file = LevelFile_Read(Game::Get().tables, path);
        ASSERT_FALSE(file.level.made.empty()) << path;
        EXPECT_EQ(MakeSettings::Parse(file.level.made).Text(), file.level.made);
        const std::optional<MadeLevel> again = Make(MakeSettings::Parse(file.level.made));
        ASSERT_TRUE(again) << path;
        EXPECT_EQ(again->board.floor, file.board.floor) << path;
        EXPECT_EQ(again->board.boxes, file.board.boxes) << path;
        EXPECT_EQ(again->keys, file.level.solution) << path;
    }
}

TEST(Levels, TwoFiguresNeedRoomForEachOther)
{
    // In a passage of one cell's width player two, above player one, can leave first; when
    // he stands at the box's far end he is in nobody's way.
    const Board passage = Parsed({"  ###", "  #F#", " ##G##", " #   #", " ## ##", " ## ##",
                                  " #  .#", " # $ #", " #@  #", " #####"});
    const Solution solution = Solve(passage);
    ASSERT_EQ(solution.verdict, Verdict::solved);
    EXPECT_TRUE(TwoCanPlay(passage, solution.pushes, false));
    EXPECT_TRUE(TwoCanPlay(passage, solution.pushes, true));
    EXPECT_EQ(passage.PlayerTwo(), passage.start + 1);
}
