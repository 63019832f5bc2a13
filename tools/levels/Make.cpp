#include "tools/levels/Make.h"

#include <algorithm>
#include <sstream>
#include <vector>

#include "tools/levels/Matching.h"
#include "tools/levels/Play.h"
#include "tools/levels/Pulls.h"
#include "tools/levels/Shapes.h"
#include "tools/levels/Solver.h"

namespace levels {
namespace {

constexpr int kLostOfDrawing = 4;  // cells that may miss before nobody knows it any more
constexpr size_t kKept = 20;       // levels found that may stand in if no proof comes for one
constexpr int kProvedBoxes = 10;   // up to here the least number of pushes is proved

// Cells that grow from a first one, in a line, a block or a slant.
Bits Cluster(Bits allowed, int count, Random& random)
{
    std::vector<Cell> cells;
    for (Bits rest = allowed; rest;) cells.push_back(TakeFirst(rest));
    if (cells.empty()) return 0;
    Bits cluster = Bit(cells[static_cast<size_t>(random.Below(static_cast<int>(cells.size())))]);
    const int manner = random.Below(4);
    while (Count(cluster) < count) {
        Bits edge = manner == 0   ? cluster << 1 | cluster >> 1
                    : manner == 1 ? cluster << kStride | cluster >> kStride
                    : manner == 2 ? cluster << (kStride + 1) | cluster >> (kStride + 1)
                                  : Beside(cluster);
        edge &= allowed & ~cluster;
        if (!edge) edge = (Beside(cluster) | Beside(Beside(cluster))) & allowed & ~cluster;
        if (!edge) return 0;
        for (int skip = random.Below(Count(edge)); skip > 0; --skip) TakeFirst(edge);
        cluster |= Bit(First(edge));
    }
    return cluster;
}

Bits ChooseTargets(const Board& board, const MakeSettings& settings, Random& random)
{
    const Bits allowed = board.floor & ~Bit(board.exit) & ~Bit(board.start);
    const int boxes = settings.boxes;
    if (boxes < 4 || random.Chance(60)) return Cluster(allowed, boxes, random);
    const int first = random.Between(boxes / 3, boxes - boxes / 3);
    const Bits one = Cluster(allowed, first, random);
    const Bits other = Cluster(allowed & ~one & ~Beside(one), boxes - first, random);
    return one && other ? one | other : 0;
}

// Walls instead of floor that the solution does not need, as far as the rule on such
// floor asks for it: corners first, so that the form stays.
void TakeAwayUnused(Board& board, const Pushes& pushes, bool all)
{
    const Cell second = board.PlayerTwo();
    Bits unused = board.floor & ~UsedCells(board, pushes) & ~Bit(second);
    int most = all ? 0 : Count(board.floor) / 10 - 1;
    while (Count(unused) > most) {
        Cell corner = First(unused);
        int fewest = 9;
        for (Bits rest = unused; rest;) {
            const Cell cell = TakeFirst(rest);
            const int around = Count(Beside(Bit(cell)) & board.floor);
            if (around < fewest) {
                fewest = around;
                corner = cell;
            }
        }
        board.floor &= ~Bit(corner);
        board.floor = Reach(board.floor, Bit(board.start));
        unused &= board.floor;
        if (!all) most = Count(board.floor) / 10 - 1;
    }
}

double Beauty(const Measures& m)
{
    return 3.0 * m.Gap() + 2.0 * m.changes - 0.35 * m.pushes - 0.06 * m.moves - 0.5 * m.unused;
}

class Maker {
public:
    explicit Maker(const MakeSettings& settings)
        : settings_(settings),
          random_(settings.seed * 1000003 + static_cast<uint64_t>(settings.world) * 101 +
                  static_cast<uint64_t>(settings.boxes))
    {
        least_ = settings.least ? settings.least : LeastPushes(settings.boxes);
        most_ = settings.most ? settings.most : least_ * 2 + 10;
    }

    std::optional<MadeLevel> Run()
    {
        const bool many = settings_.boxes >= 6;  // the first one found is taken
        for (int i = 0; i < (many ? 150 : 60) && !(many && !found_.empty()); ++i) {
            if (!LayOut()) continue;
            PullLimits limits;
            limits.seed = settings_.seed;
            limits.positions = settings_.boxes <= 5 ? 400'000 : 900'000;
            limits.uncut = settings_.boxes <= 5 ? 400'000 : 40'000;
            limits.depth = settings_.boxes <= 5 ? 250 : most_ + 12;
            Improve(PullSearch(board_, limits));
        }
        for (MadeLevel& level : found_) {
            if (Prove(level)) return level;
        }
        return std::nullopt;
    }

private:
    bool LayOut()
    {
        ShapeSettings shape;
        shape.world = settings_.world;
        shape.gateRow = settings_.gateRow;
        shape.startRow = settings_.startRow;
        shape.area = 17 + 3 * settings_.boxes + random_.Below(8);
        if (settings_.area) shape.area = settings_.area;
        shape.drawing = settings_.drawing;
        const Shape made = Shape_Make(shape, random_);
        shape_ = made.name;
        board_.floor = made.floor;
        board_.exit = CellAt(8, settings_.gateRow + 1);
        board_.start = CellAt(8, settings_.startRow);
        // Levels are sought with player two's place closed: then he is in nobody's way.
        second_ = board_.start + (Has(board_.floor, board_.start + 1) ? 1 : -1);
        board_.floor = Reach(board_.floor & ~Bit(second_), Bit(board_.start));
        if (!Has(board_.floor, board_.exit)) return false;
        if (Count(board_.floor) < 14 + 3 * settings_.boxes) return false;
        board_.targets = ChooseTargets(board_, settings_, random_);
        if (Count(board_.targets) != settings_.boxes) return false;
        for (int walls = 0; walls < 8; ++walls) {
            const Cell corner = OpenArea(board_);
            if (corner == kNoCell) return true;
            PutWallInto(corner);
        }
        return false;
    }

    // Breaks an open area with a wall on one of its middle cells; in world 3 and in a drawing
    // with its like on the other side.
    void PutWallInto(Cell corner)
    {
        const Cell cell = corner + kStride * random_.Between(1, 2) + random_.Between(1, 2);
        const Cell like = cell + 2 * (8 - ColumnOf(cell));
        Bits wall = Bit(cell);
        const bool even = settings_.world == 3 || !settings_.drawing.empty();
        if (even && like / kStride == cell / kStride) wall |= Bit(like);
        wall &= ~(board_.targets | Bit(board_.start) | Bit(board_.exit));
        const Bits without = board_.floor & ~wall;
        if (Reach(without, Bit(board_.start)) == without) board_.floor = without;
    }

    // Positions where a level can begin, drawn by chance from all depths asked for.
    std::vector<uint32_t> Drawn(const PullSearch& search)
    {
        std::vector<uint32_t> fit;
        const int most = search.Exact() ? most_ : most_ + 12;
        for (uint32_t i = 0; i < search.Size(); ++i) {
            if (search.Depth(i) < least_ || search.Depth(i) > most) continue;
            const Bits boxes = search.Boxes(i);
            if (boxes & (board_.targets | Bit(board_.start))) continue;
            if (!Has(search.Area(i), board_.start)) continue;
            fit.push_back(i);
        }
        const size_t drawn = search.Exact() ? 150 : 30;
        if (!search.Exact()) KeepFarthest(search, fit);
        for (size_t i = 0; i < fit.size() && i < drawn; ++i) {
            std::swap(
                fit[i],
                fit[i + static_cast<size_t>(random_.Below(static_cast<int>(fit.size() - i)))]);
        }
        if (fit.size() > drawn) fit.resize(drawn);
        return fit;
    }

    // Of a cut search, the positions with the highest bounds: their depth says little.
    void KeepFarthest(const PullSearch& search, std::vector<uint32_t>& fit) const
    {
        const Distances distances(board_);
        std::vector<std::pair<int, uint32_t>> ranked;
        for (uint32_t number : fit) {
            const int bound = Matching(distances, search.Boxes(number)).Cost();
            if (bound + 14 >= least_) ranked.emplace_back(-bound, number);
        }
        std::sort(ranked.begin(), ranked.end());
        if (ranked.size() > 400) ranked.resize(400);
        fit.clear();
        for (auto [bound, number] : ranked) fit.push_back(number);
    }

    void Improve(const PullSearch& search)
    {
        int hard = 0;
        for (uint32_t number : Drawn(search)) {
            MadeLevel level;
            level.board = board_;
            level.board.boxes = search.Boxes(number);
            level.shape = shape_;
            level.pushes = search.Way(number);
            if (!search.Exact() && !Shorten(level, hard)) {
                if (hard > 5) return;
                continue;
            }
            if (!found_.empty() && BoxChanges(level.pushes) * 2 < found_[0].measures.changes) {
                continue;
            }
            level.pushes = Tidy(level.board, level.pushes);
            level.board.floor |= Bit(second_);
            Finish(level);
            if (level.keys.empty()) continue;
            if (!Refusal(level.board, level.measures, least_).empty()) continue;
            if (!settings_.drawing.empty() && level.lost > kLostOfDrawing) continue;
            Keep(level);
        }
    }

    // Among the best so far, the best first.
    void Keep(const MadeLevel& level)
    {
        const auto worse = std::find_if(found_.begin(), found_.end(), [&](const MadeLevel& other) {
            return Worth(level) > Worth(other);
        });
        found_.insert(worse, level);
        if (found_.size() > kKept) found_.pop_back();
    }

    // The way of a cut search is seldom the shortest. From some number of boxes on, the
    // solver cannot always tell, and a way found soon stands for it. `hard` counts the
    // levels that it gives up.
    bool Shorten(MadeLevel& level, int& hard) const
    {
        SolveLimits limits;
        limits.nodes = 40'000;
        Solution solution = Solve(level.board, limits);
        hard += solution.verdict != Verdict::solved;
        if (solution.verdict != Verdict::solved && settings_.boxes > kProvedBoxes) {
            limits.weight = 3;
            solution = Solve(level.board, limits);
            if (solution.verdict != Verdict::solved) return true;
        }
        if (solution.verdict != Verdict::solved) return false;
        if (solution.pushes.size() < level.pushes.size()) level.pushes = solution.pushes;
        return static_cast<int>(level.pushes.size()) >= least_;
    }

    // A form that is to be recognised loses by every cell that was taken from it.
    double Worth(const MadeLevel& level) const
    {
        const bool form = settings_.boxes <= 5 && (settings_.world == 3 || settings_.world == 5);
        return Beauty(level.measures) - (form ? 2.5 * level.lost : 0);
    }

    void Finish(MadeLevel& level) const
    {
        const int before = Count(level.board.floor);
        TakeAwayUnused(level.board, level.pushes, settings_.world == 1);
        level.lost = before - Count(level.board.floor);
        level.keys = Keys(level.board, level.pushes, level.board.PlayerTwo());
        if (!level.keys.empty()) level.measures = Measure(level.board, level.keys);
    }

    // Fewest pushes by the solver, which may know a shorter way than the one pulled.
    bool Prove(MadeLevel& level) const
    {
        const bool proved = settings_.boxes <= kProvedBoxes;
        SolveLimits limits;
        limits.nodes = proved ? 500'000 : 1'500'000;
        const Solution solution = Solve(level.board, limits);
        level.positions = solution.nodes;
        level.bound = solution.bound;
        level.fewest = solution.fewest;
        Pushes better = solution.pushes;
        if (solution.verdict != Verdict::solved) {
            if (proved || solution.verdict != Verdict::gaveUp) return false;
            const Solution hasty = SolveHastily(level.board, 200'000);
            better = Polish(level.board, level.pushes, 32, 20'000);
            if (hasty.verdict == Verdict::solved && hasty.pushes.size() < better.size()) {
                better = hasty.pushes;
            }
            level.fewest = static_cast<int>(better.size()) == level.bound;
        }
        if (better.size() < level.pushes.size()) {
            level.pushes = Tidy(level.board, better);
            Finish(level);
            if (level.keys.empty()) return false;
            if (!Refusal(level.board, level.measures, least_).empty()) return false;
        }
        return true;
    }

    const MakeSettings settings_;
    Random random_;
    int least_, most_;
    Board board_;
    Cell second_ = kNoCell;  // player two's place
    std::string shape_;
    std::vector<MadeLevel> found_;
};

}  // namespace

std::string MakeSettings::Text() const
{
    std::ostringstream text;
    text << "world=" << world << " boxes=" << boxes << " gate=" << gateRow << " start=" << startRow;
    if (area) text << " area=" << area;
    if (!drawing.empty()) text << " drawing=" << drawing;
    text << " least=" << least << " most=" << most << " seed=" << seed;
    return text.str();
}

MakeSettings MakeSettings::Parse(const std::string& text)
{
    MakeSettings settings;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const size_t equals = word.find('=');
        if (equals == std::string::npos) continue;
        const std::string key = word.substr(0, equals);
        const long long value = std::atoll(word.c_str() + equals + 1);
        const std::pair<const char*, int*> numbers[] = {
            {"world", &settings.world},  {"boxes", &settings.boxes},    {"area", &settings.area},
            {"gate", &settings.gateRow}, {"start", &settings.startRow}, {"least", &settings.least},
            {"most", &settings.most}};
        for (auto [name, number] : numbers) {
            if (key == name) *number = static_cast<int>(value);
        }
        if (key == "drawing") settings.drawing = word.substr(equals + 1);
        if (key == "seed") settings.seed = static_cast<uint64_t>(value);
    }
    return settings;
}

std::optional<MadeLevel> Make(const MakeSettings& settings)
{
    return Maker(settings).Run();
}

NewLevel AsNewLevel(const MakeSettings& settings, const MadeLevel& level)
{
    NewLevel file;
    file.title = level.shape;
    file.made = settings.Text();
    file.world = settings.world;
    file.gateRow = settings.gateRow;
    file.seed = static_cast<uint32_t>(settings.seed % 100000);
    file.board = level.board;
    file.keys = level.keys;
    if (level.fewest) file.optimum = level.measures.pushes;
    if (!level.fewest) file.bound = level.bound;
    return file;
}

std::string Refusal(const Board& board, const Measures& m, int leastPushes)
{
    auto number = [](int value) { return std::to_string(value); };
    const int changes = m.boxes >= 9 ? (17 * m.boxes + 9) / 10 : 2 * m.boxes;
    if (m.pushes < leastPushes) {
        return "only " + number(m.pushes) + " pushes, at least " + number(leastPushes);
    }
    if (m.unmoved) return number(m.unmoved) + " boxes need no push";
    if (m.boxes >= 3 && m.Gap() < 2) return "no detour: as many pushes as for boxes alone";
    if (m.boxes >= 3 && m.changes < changes) {
        return "only " + number(m.changes) + " box changes, at least " + number(changes);
    }
    if (m.unused * 10 > m.floor) {
        return number(m.unused) + " of " + number(m.floor) + " floor cells are not needed";
    }
    if (OpenArea(board) != kNoCell) return "an open area of 3 by 4 without a target";
    if (!m.idleTwo) return "the solution does not keep clear of an idle player two";
    if (!m.bothTwo || !m.turnsTwo) return "two players cannot play it together and in turn";
    return "";
}

}  // namespace levels
