// vexo-levels: checks, solves, rates, makes and films the levels of the game.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "tools/levels/Check.h"
#include "tools/levels/Level_File.h"
#include "tools/levels/Make.h"
#include "tools/levels/Play.h"
#include "tools/levels/Shapes.h"
#include "tools/levels/Solver.h"

namespace {

using namespace levels;

constexpr char kHelp[] =
    "vexo-levels check CONTENT [FILE...]   checks levels, all of CONTENT/levels if no FILE;\n"
    "                                      prints a table, and what is wrong\n"
    "vexo-levels rate  CONTENT [FILE...]   the table with a summary of each world\n"
    "vexo-levels solve CONTENT FILE...     fewest pushes, or few and a bound, and the keys\n"
    "vexo-levels make  SETTINGS [OPTION...]\n"
    "  SETTINGS       such as \"world=3 boxes=4 seed=1\", as a made level's head has them:\n"
    "                 world 1 to 5; boxes; seed; gate=2 or 3 and start=8 or 9, rows of\n"
    "                 the map; area, least and most pushes; in world 5 drawing=, such as\n"
    "                 drawing=smile, for a form of your own choice\n"
    "  --seeds N      tries N seeds from the first (default 1)\n"
    "  --out FOLDER   writes each level to FOLDER instead of the screen\n"
    "vexo-levels film CONTENT FILE [FOLDER]\n"
    "                 the stored solution as pictures, one after each step (default .)\n";

[[noreturn]] void Refuse(const std::string& sentence)
{
    std::fprintf(stderr, "vexo-levels: %s\n%s", sentence.c_str(), kHelp);
    std::exit(2);
}

int Solve(const pack::Tables& tables, const std::vector<std::string>& paths)
{
    int unsolved = 0;
    for (const std::string& path : paths) {
        const LevelFile file = LevelFile_Read(tables, path);
        if (!file.fault.empty()) {
            std::printf("%s: %s\n", path.c_str(), file.fault.c_str());
            ++unsolved;
            continue;
        }
        SolveLimits limits;
        limits.nodes = 6'000'000;
        Solution solution = levels::Solve(file.board, limits);
        const uint32_t positions = solution.nodes;
        const int bound = solution.bound;
        if (solution.verdict == Verdict::gaveUp) solution = SolveHastily(file.board, 1'000'000);
        if (solution.verdict != Verdict::solved) {
            std::printf("%s: %s after %u positions, at least %d pushes\n", path.c_str(),
                        solution.verdict == Verdict::gaveUp ? "gave up" : "has no solution",
                        positions, bound);
            ++unsolved;
            continue;
        }
        Pushes pushes = Tidy(file.board, solution.pushes);
        std::string keys = Keys(file.board, pushes, file.board.PlayerTwo());
        if (keys.empty()) {
            Board clear = file.board;  // of the place where player two may stand
            if (clear.PlayerTwo() != kNoCell) clear.floor &= ~Bit(clear.PlayerTwo());
            const Solution other = levels::Solve(clear, limits);
            if (other.pushes.size() == pushes.size()) pushes = Tidy(clear, other.pushes);
            keys = Keys(file.board, pushes);
        }
        std::string proof;
        if (!solution.fewest) proof = ", not fewer than " + std::to_string(bound);
        std::printf("%s: %zu pushes%s, %zu steps, %u positions\n%s\n", path.c_str(), pushes.size(),
                    proof.c_str(), keys.size(), positions, ShortKeys(keys).c_str());
    }
    return unsolved ? 1 : 0;
}

int MakeLevels(int argc, char** argv)
{
    if (argc < 1) Refuse("make needs settings");
    MakeSettings settings = MakeSettings::Parse(argv[0]);
    int seeds = 1, made = 0;
    std::string folder;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string option = argv[i];
        if (option == "--seeds")
            seeds = std::atoi(argv[i + 1]);
        else if (option == "--out")
            folder = argv[i + 1];
        else
            Refuse("unknown argument " + option);
    }
    if (settings.world < 1 || settings.world > 5 || settings.boxes < 1 || settings.boxes > 20 ||
        settings.gateRow < 2 || settings.gateRow > 3 || settings.startRow < 8 ||
        settings.startRow > 9) {
        Refuse("settings out of range");
    }
    if (!settings.drawing.empty() && !Shape_IsDrawing(settings.drawing)) {
        Refuse("there is no drawing " + settings.drawing);
    }
    for (int i = 0; i < seeds; ++i, ++settings.seed) {
        const std::optional<MadeLevel> level = Make(settings);
        if (!level) continue;
        ++made;
        const std::string text = LevelFile_Text(AsNewLevel(settings, *level));
        if (folder.empty()) {
            std::fputs(text.c_str(), stdout);
            continue;
        }
        const std::string path =
            folder + "/w" + std::to_string(settings.world) + "b" + std::to_string(settings.boxes) +
            "g" + std::to_string(settings.gateRow) + std::to_string(settings.startRow) + "l" +
            std::to_string(settings.least) + "s" + std::to_string(settings.seed) + ".txt";
        std::ofstream(path) << text;
        if (!std::filesystem::exists(path)) Refuse("cannot write " + path);
    }
    std::fprintf(stderr, "%d levels of %d seeds\n", made, seeds);
    return made ? 0 : 1;
}

// The stage plays the keys; a step takes 4 frames at the speed "fast".
int Film(const std::string& self, const pack::Tables& tables, const std::string& path,
         const std::string& folder)
{
    const LevelFile file = LevelFile_Read(tables, path);
    if (file.level.solution.empty()) Refuse(path + " has no solution");
    constexpr int kFramesAStep = 4;
    std::string script, frames;
    for (size_t i = 0; i < file.level.solution.size(); ++i) {
        if (i) script += " ", frames += ",";
        script += file.level.solution[i] + std::string("*") + std::to_string(kFramesAStep);
        frames += std::to_string((static_cast<int>(i) + 1) * kFramesAStep);
    }
    const std::string film = (std::filesystem::path(self).parent_path() / "vexo-film").string();
    const std::string room = "room_level" + std::to_string(file.number);
    execl(film.c_str(), film.c_str(), "--room", room.c_str(), "--speed", "fast", "--keys",
          script.c_str(), "--at", frames.c_str(), "--out", folder.c_str(), nullptr);
    Refuse("cannot start " + film);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 3) Refuse("too few arguments");
    const std::string verb = argv[1];
    if (verb == "make") return MakeLevels(argc - 2, argv + 2);
    try {
        const std::string content = argv[2];
        const pack::Tables tables = pack::Tables_Read(content);
        std::vector<std::string> paths(argv + 3, argv + argc);
        if (verb == "film" && !paths.empty()) {
            return Film(argv[0], tables, paths[0], paths.size() > 1 ? paths[1] : ".");
        }
        if (verb == "solve") return Solve(tables, paths);
        if (verb != "check" && verb != "rate") Refuse("unknown verb " + verb);
        const bool whole = paths.empty();
        if (whole) paths = LevelFile_List(content + "/levels");
        std::vector<LevelFile> files;
        for (const std::string& path : paths) files.push_back(LevelFile_Read(tables, path));
        const Report report = Check(tables, files, whole);
        std::fputs(Report_Table(report, verb == "rate").c_str(), stdout);
        return report.faults.empty() ? 0 : 1;
    } catch (const pack::ContentError& error) {
        std::fprintf(stderr, "vexo-levels: %s\n", error.what());
        return 1;
    }
}
