#include "tools/levels/Check.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <map>
#include <numeric>
#include <thread>

#include "tools/levels/Make.h"
#include "tools/levels/Play.h"
#include "tools/levels/Solver.h"

namespace levels {
namespace {

constexpr std::array<int, 100> kBoxes = {
    1, 2, 3, 3, 3,  3, 3, 3, 3, 3, 2, 4, 3, 3, 4, 4, 4, 6, 6, 10, 4, 3, 3,  5,  4,
    4, 6, 4, 2, 7,  4, 5, 1, 5, 5, 3, 6, 7, 1, 8, 4, 5, 4, 4, 5,  9, 4, 4,  4,  8,
    8, 5, 4, 6, 5,  4, 5, 8, 4, 8, 4, 4, 4, 4, 4, 8, 5, 4, 6, 8,  3, 5, 5,  4,  4,
    5, 4, 5, 7, 12, 4, 4, 8, 7, 4, 4, 6, 4, 7, 8, 4, 4, 8, 6, 5,  8, 8, 12, 14, 10};
constexpr int kLevels = static_cast<int>(kBoxes.size());

// Levels that were given with the game, and those that teach; they may be easier.
constexpr bool Given(int number)
{
    return number == 1 || number == 8;
}
constexpr int kLastTeaching = 7;

constexpr int kProvedBoxes = 10;  // up to here the fewest pushes are proved
// Positions looked at above that: a level that claims its optimum has time for the proof.
constexpr uint32_t kLongProof = 6'000'000, kBound = 400'000;
constexpr int kStartsOnTarget = 10;
constexpr double kLeastDifference = 0.15;  // of the floors of two levels

using Place = std::pair<int, int>;  // pixels

// Rain falls in these, the sun shines in the others.
bool Rains(int number)
{
    constexpr std::array<int, 10> kRain = {10, 20, 23, 27, 30, 34, 40, 90, 98, 99};
    return (number >= 71 && number <= 80) ||
           std::find(kRain.begin(), kRain.end(), number) != kRain.end();
}

Place StartOf(int number)
{
    if (number == 1) return {364, 260};
    return {416, number == 2 || number == 3 || number == 5 ? 312 : 364};
}
Place GateOf(int number)
{
    return {416, number == 1 || number == 2 || number == 4 ? 104 : 52};
}
const char* TargetOf(int number)
{
    return number >= 2 && number <= 20 ? "oFechado" : "oFechado2";
}

// What stands in a level's room, by object.
class Room {
public:
    Room(const pack::Tables& tables, const pack::Level& level)
    {
        for (const pack::PlacedInstance& placed : level.instances) {
            const std::string& name = tables.objectNames.List()[static_cast<size_t>(placed.object)];
            order_.push_back(name);
            places_[name].push_back({placed.x, placed.y});
        }
    }
    int Count(const std::string& name) const
    {
        return places_.count(name) ? static_cast<int>(places_.at(name).size()) : 0;
    }
    bool OneAt(const std::string& name, Place place) const
    {
        return Count(name) == 1 && places_.at(name)[0] == place;
    }
    bool Before(const std::string& one, const std::string& other) const
    {
        return std::find(order_.begin(), order_.end(), one) <
               std::find(order_.begin(), order_.end(), other);
    }
    bool OnGrid(const std::string& name) const
    {
        if (!places_.count(name)) return true;
        return std::all_of(places_.at(name).begin(), places_.at(name).end(), [](Place place) {
            return place.first % pack::kCell == 0 && place.second % pack::kCell == 0;
        });
    }

private:
    std::vector<std::string> order_;
    std::map<std::string, std::vector<Place>> places_;
};

std::string At(const std::string& name, Place place)
{
    return "expected one " + name + " at (" + std::to_string(place.first) + ", " +
           std::to_string(place.second) + ")";
}

void CheckRoom(const pack::Tables& tables, const LevelFile& file, std::vector<std::string>& faults)
{
    const Room room(tables, file.level);
    const int number = file.number;
    auto expect = [&](bool kept, const std::string& sentence) {
        if (!kept) faults.push_back(sentence);
    };
    expect(room.OneAt("oPlayerArrows", StartOf(number)), At("oPlayerArrows", StartOf(number)));
    expect(room.OneAt("oPortaoFechado", GateOf(number)), At("oPortaoFechado", GateOf(number)));
    expect(room.OneAt("oFinal", {416, -52}), At("oFinal", {416, -52}));
    expect(number == 1 ? room.Count("oPortaoFechadoBaixo") == 0
                       : room.OneAt("oPortaoFechadoBaixo", {416, 416}),
           At("oPortaoFechadoBaixo", {416, 416}) + ", none in level 1");
    for (const char* one : {"oControl", "oPause", "oMusica", "oClock"}) {
        expect(room.Count(one) == 1, std::string("expected one ") + one);
    }
    expect(room.OneAt(Rains(number) ? "oChuva" : "oRaiosDeSol", {0, 0}) &&
               room.Count(Rains(number) ? "oRaiosDeSol" : "oChuva") == 0,
           Rains(number) ? "expected weather rain" : "expected weather sun");
    const int boxes = kBoxes[static_cast<size_t>(number - 1)];
    expect(room.Count("oMonte") == boxes, "expected " + std::to_string(boxes) + " boxes");
    expect(room.Count(TargetOf(number)) == boxes,
           "expected " + std::to_string(boxes) + " targets of " + TargetOf(number));
    expect(room.Count("oFechado") + room.Count("oFechado2") == boxes,
           "expected targets of one kind");
    expect(room.Count("oWall") >= 8, "expected at least 8 walls");
    expect(room.Before("oPlayerArrows", "oControl"), "expected oPlayerArrows before oControl");
    for (const char* late : {"oPlayerArrows2", "oAberto", "oAberto2", "oPortaoAberto", "oSeta"}) {
        expect(room.Count(late) == 0, std::string(late) + " is made by the game, never placed");
    }
    for (const char* name : {"oPlayerArrows", "oMonte", "oWall", "oFechado", "oFechado2"}) {
        expect(room.OnGrid(name), std::string("expected ") + name + " on the grid of 52");
    }
}

// The walls beside the gate's column up to the end marker, and nothing in the way.
void CheckCorridor(const LevelFile& file, std::vector<std::string>& faults)
{
    const int column = 8, gateRow = GateOf(file.number).second / pack::kCell + 1;
    bool walls = file.level.Wall(column, 0);
    for (int row = 0; row <= gateRow; ++row) {
        walls = walls && file.level.Wall(column - 1, row) && file.level.Wall(column + 1, row);
        if (row > 0 && file.level.Wall(column, row)) {
            faults.push_back("a wall stands in the corridor");
        }
    }
    if (!walls) faults.push_back("a wall of the corridor is missing");
    if (Has(file.board.floor, CellAt(column, 10))) {
        faults.push_back("the cell of the lower gate is floor");
    }
}

void CheckSolution(const LevelFile& file, const Solution& best, Rating& rating,
                   std::vector<std::string>& faults)
{
    if (best.verdict == Verdict::unsolvable) faults.push_back("the solver finds no solution");
    const Replay replay = PlayKeys(file.board, file.level.solution);
    if (!replay.fault.empty()) {
        faults.push_back(replay.fault);
        return;
    }
    const int pushes = static_cast<int>(replay.pushes.size());
    if (best.verdict == Verdict::solved && static_cast<int>(best.pushes.size()) < pushes &&
        !Given(file.number)) {
        faults.push_back("the solution has " + std::to_string(pushes) + " pushes, " +
                         std::to_string(best.pushes.size()) + " are enough");
    }
    rating.fewest = best.fewest && static_cast<int>(best.pushes.size()) == pushes;
    if (Given(file.number)) return;
    if (rating.measures.boxes <= kProvedBoxes) {
        if (!best.fewest) faults.push_back("the fewest pushes are not proved");
        if (file.level.optimum != pushes) {
            faults.push_back("`optimum` is not the number of pushes, " + std::to_string(pushes));
        }
    } else if (file.level.optimum && (!rating.fewest || file.level.optimum != pushes)) {
        faults.push_back("`optimum` is not proved");
    } else if (!rating.fewest && (file.level.bound <= 0 || file.level.bound > best.bound)) {
        faults.push_back("`bound` is not a bound that the solver proves, " +
                         std::to_string(best.bound));
    }
}

Rating Rate(const LevelFile& file, std::vector<std::string>& faults)
{
    Rating rating;
    rating.number = file.number;
    rating.world = file.level.world;
    rating.title = file.level.title;
    rating.measures = Measure(file.board, file.level.solution);
    SolveLimits limits;
    if (rating.measures.boxes > kProvedBoxes) {
        limits.nodes = file.level.optimum ? kLongProof : kBound;
    }
    Solution best = Solve(file.board, limits);
    if (best.verdict == Verdict::gaveUp) {
        const Solution hasty = SolveHastily(file.board, 200'000);
        best.verdict = hasty.verdict;
        best.pushes = hasty.pushes;
        best.fewest = static_cast<int>(best.pushes.size()) == best.bound;
    }
    rating.positions = best.nodes;
    rating.bound = best.bound;
    rating.difficulty = Difficulty(rating.measures, best.nodes);
    CheckSolution(file, best, rating, faults);
    if (faults.empty() && !Given(file.number)) {
        const bool teaching = file.number <= kLastTeaching;
        const std::string refusal =
            Refusal(file.board, rating.measures, teaching ? 1 : LeastPushes(rating.measures.boxes));
        if (!refusal.empty()) faults.push_back(refusal);
    }
    return rating;
}

// Lines that all levels meet together.
void CheckWhole(Report& report)
{
    std::map<int, int> byNumber;
    int two = 0, four = 0, eight = 0, onTarget = 0;
    for (const Rating& rating : report.ratings) {
        ++byNumber[rating.number];
        onTarget += rating.measures.startOnTarget > 0;
        if (rating.measures.boxes < 3) continue;
        ++two;
        four += rating.measures.Gap() >= 4;
        eight += rating.measures.Gap() >= 8;
    }
    auto expect = [&](bool kept, const std::string& sentence) {
        if (!kept) report.faults.push_back(sentence);
    };
    for (int number = 1; number <= kLevels; ++number) {
        expect(byNumber[number] == 1, "level " + std::to_string(number) + ": missing");
    }
    expect(four * 2 >= two, "expected a detour of 4 pushes in half of the levels, it is in " +
                                std::to_string(four) + " of " + std::to_string(two));
    expect(eight >= 15,
           "expected a detour of 8 pushes in 15 levels, it is in " + std::to_string(eight));
    for (const std::string& fault : OrderFaults(report.ratings)) report.faults.push_back(fault);
    expect(onTarget <= kStartsOnTarget, "expected a box on a target at the start in at most " +
                                            std::to_string(kStartsOnTarget) + " levels");
}

bool SameLevel(const Board& one, const Board& other)
{
    const Board fixed = Cropped(one, 0);
    for (int symmetry = 0; symmetry < 8; ++symmetry) {
        const Board turned = Cropped(other, symmetry);
        if (Count(turned.floor) == Count(other.floor) && turned.floor == fixed.floor &&
            turned.boxes == fixed.boxes && turned.targets == fixed.targets) {
            return true;
        }
    }
    return false;
}

void CheckPairs(const std::vector<LevelFile>& files, Report& report)
{
    for (size_t i = 0; i < files.size(); ++i) {
        for (size_t j = 0; j < i; ++j) {
            if (!files[i].fault.empty() || !files[j].fault.empty()) continue;
            const std::string pair = "levels " + std::to_string(files[j].number) + " and " +
                                     std::to_string(files[i].number);
            const double difference = FloorDifference(files[i].board, files[j].board);
            if (SameLevel(files[i].board, files[j].board)) {
                report.faults.push_back(pair + ": the same level");
            } else if (difference < kLeastDifference) {
                report.faults.push_back(pair + ": their floors differ by " +
                                        std::to_string(static_cast<int>(difference * 100)) +
                                        "% only");
            }
        }
    }
}

std::string Line(const Rating& r)
{
    const Measures& m = r.measures;
    char text[256];
    const std::string proof =
        r.fewest ? "fewest" : (r.bound < m.pushes ? ">=" + std::to_string(r.bound) : "");
    const std::string two =
        std::string(m.idleTwo ? "i" : "-") + (m.bothTwo ? "b" : "-") + (m.turnsTwo ? "t" : "-");
    std::snprintf(text, sizeof text, "%5d %5d %5d %6d %6d %-6s %4d %7d %6d %3s %9u %6.1f  %s\n",
                  r.number, m.boxes, m.floor, m.moves, m.pushes, proof.c_str(), m.Gap(), m.changes,
                  m.unused, two.c_str(), r.positions, r.difficulty, r.title.c_str());
    return text;
}

std::string Summary(const Report& report)
{
    std::string text =
        "\nworld levels  boxes pushes  moves    gap changes difficulty (means; least to most)\n";
    for (int world = 1; world <= 5; ++world) {
        double sums[5] = {}, difficulty = 0, least = 1e9, most = 0;
        int count = 0;
        for (const Rating& r : report.ratings) {
            if (r.world != world) continue;
            ++count;
            const int values[] = {r.measures.boxes, r.measures.pushes, r.measures.moves,
                                  r.measures.Gap(), r.measures.changes};
            for (size_t i = 0; i < 5; ++i) sums[i] += values[i];
            difficulty += r.difficulty;
            least = std::min(least, r.difficulty);
            most = std::max(most, r.difficulty);
        }
        if (!count) continue;
        char line[160];
        std::snprintf(line, sizeof line,
                      "%5d %6d %6.1f %6.1f %6.1f %6.1f %7.1f %6.1f (%.1f to %.1f)\n", world, count,
                      sums[0] / count, sums[1] / count, sums[2] / count, sums[3] / count,
                      sums[4] / count, difficulty / count, least, most);
        text += line;
    }
    return text;
}

}  // namespace

std::vector<std::string> OrderFaults(const std::vector<Rating>& ratings)
{
    std::vector<std::string> faults;
    constexpr int kFive = 5, kWorld = 20;
    double difficulty[kLevels + 1] = {};
    for (const Rating& rating : ratings) {
        if (rating.number <= kLevels) difficulty[rating.number] = rating.difficulty;
    }
    auto fiveUpTo = [&](int number) {
        return std::accumulate(difficulty + number - kFive + 1, difficulty + number + 1, 0.0);
    };
    for (int number = kFive; number <= kLevels; number += kFive) {
        const std::string levels =
            "levels " + std::to_string(number - kFive + 1) + " to " + std::to_string(number);
        if ((number - 1) % kWorld >= kFive && fiveUpTo(number) <= fiveUpTo(number - kFive)) {
            faults.push_back(levels + " are no harder than the five before");
        }
        const bool last = number % kWorld == 0;
        if (!last && 2 * difficulty[number] >= difficulty[number - 1] + difficulty[number + 1]) {
            faults.push_back("level " + std::to_string(number) +
                             ": no breather between its neighbours");
        }
    }
    return faults;
}

std::vector<std::string> CheckFacts(const pack::Tables& tables, const LevelFile& file)
{
    if (!file.fault.empty()) return {file.fault};
    if (file.number < 1 || file.number > kLevels) return {"expected a name such as level007.txt"};
    std::vector<std::string> faults;
    CheckRoom(tables, file, faults);
    CheckCorridor(file, faults);
    const int world = (file.number - 1) / 20 + 1;
    if (file.level.world != world) faults.push_back("expected world " + std::to_string(world));
    return faults;
}

Report Check(const pack::Tables& tables, const std::vector<LevelFile>& files, bool whole)
{
    struct Result {
        std::vector<std::string> faults;
        Rating rating;
        bool rated = false;
    };
    std::vector<Result> results(files.size());
    std::atomic<size_t> next = 0;
    auto work = [&] {
        for (size_t i = next++; i < files.size(); i = next++) {
            results[i].faults = CheckFacts(tables, files[i]);
            if (!files[i].fault.empty()) continue;
            results[i].rating = Rate(files[i], results[i].faults);
            results[i].rated = true;
        }
    };
    std::thread second(work);
    work();
    second.join();
    Report report;
    for (size_t i = 0; i < files.size(); ++i) {
        const std::string name = "level " + std::to_string(files[i].number) + ": ";
        if (results[i].rated) report.ratings.push_back(results[i].rating);
        for (const std::string& fault : results[i].faults) report.faults.push_back(name + fault);
        for (const std::string& known : files[i].level.shortfalls) {
            report.shortfalls.push_back(name + known);
        }
    }
    if (whole) CheckWhole(report);
    CheckPairs(files, report);
    return report;
}

std::string Report_Table(const Report& report, bool summary)
{
    std::string text =
        "level boxes floor  moves pushes proof   gap changes unused two positions rating  title\n";
    for (const Rating& rating : report.ratings) text += Line(rating);
    if (summary) text += Summary(report);
    for (const std::string& known : report.shortfalls) text += "known shortfall: " + known + "\n";
    for (const std::string& fault : report.faults) text += "FAULT " + fault + "\n";
    text += std::to_string(report.ratings.size()) + " levels, " +
            std::to_string(report.faults.size()) + " faults\n";
    return text;
}

}  // namespace levels
