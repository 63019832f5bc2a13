// vexo-film: pictures of any room at any frame from a script of keys, without a
// screen. The same arguments give the same bytes.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>
#include <sstream>

#include "Files/Run/Run_State.h"
#include "tests/support/Stage.h"

namespace {

constexpr char kHelp[] =
    "vexo-film --room NAME [--keys SCRIPT] [--at FRAMES] [--out DIR]\n"
    "          [--archive FILE] [--switch SWITCH]... [--speed fast|normal|slow]\n"
    "\n"
    "Plays a room with keys and writes PNG pictures of the window.\n"
    "\n"
    "  --room NAME      the room to start in, such as room_level1\n"
    "  --keys SCRIPT    what is held for how many frames, from left to right:\n"
    "                     D*40      D held for 40 frames\n"
    "                     W         W held for one frame\n"
    "                     D+W*3     both held for 3 frames\n"
    "                     . or .*9  one or 9 frames without keys\n"
    "                   Letters and digits, Left Right Up Down Enter Escape Back Space\n"
    "                   F1 to F12. Frames behind the script run without keys.\n"
    "  --at FRAMES      frames to picture, counted from 1 once the room stands: 1,40\n"
    "                   (default 1)\n"
    "  --out DIR        where the pictures go, as NAME-FRAME.png (default .)\n"
    "  --archive FILE   another archive than the game's\n"
    "  --switch SWITCH  a switch for the program, may stand several times\n"
    "  --speed WORD     the game speed, as if chosen by the player (default normal)\n";

struct Film {
    std::string room, keys, out = ".", speed;
    std::set<int> at = {1};
    Stage::Options options;
};

[[noreturn]] void Refuse(const std::string& sentence)
{
    std::fprintf(stderr, "vexo-film: %s\nvexo-film --help tells how it reads.\n", sentence.c_str());
    std::exit(2);
}

std::set<int> ParseFrames(const std::string& text)
{
    std::set<int> frames;
    std::istringstream pieces(text);
    for (std::string piece; std::getline(pieces, piece, ',');) {
        const int frame = std::atoi(piece.c_str());
        if (frame < 1) Refuse("--at: \"" + piece + "\" is no frame; frames count from 1");
        frames.insert(frame);
    }
    return frames;
}

Film ParseArguments(int argc, char** argv)
{
    Film film;
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--help") {
            std::fputs(kHelp, stdout);
            std::exit(0);
        }
        if (i + 1 >= argc) Refuse(name + " needs a value");
        const std::string value = argv[++i];
        if (name == "--room")
            film.room = value;
        else if (name == "--keys")
            film.keys = value;
        else if (name == "--at")
            film.at = ParseFrames(value);
        else if (name == "--out")
            film.out = value;
        else if (name == "--archive")
            film.options.archive = value;
        else if (name == "--switch")
            film.options.switches.push_back(value);
        else if (name == "--speed")
            film.speed = value;
        else
            Refuse("unknown argument " + name);
    }
    if (film.room.empty() || film.at.empty()) Refuse("--room is missing");
    return film;
}

// The keys of each frame.
std::vector<std::vector<int32_t>> Unroll(const std::string& script)
{
    std::vector<KeyHold> holds;
    std::string error;
    if (!KeyScript_Parse(script, &holds, &error)) Refuse("--keys: " + error);
    std::vector<std::vector<int32_t>> frames;
    for (const KeyHold& hold : holds) frames.insert(frames.end(), hold.frames, hold.keys);
    return frames;
}

void Shoot(const Film& film, Stage* stage)
{
    const auto keys = Unroll(film.keys);
    std::vector<int32_t> held;
    for (int frame = 1; frame <= *film.at.rbegin(); ++frame) {
        const auto wanted =
            frame <= static_cast<int>(keys.size()) ? keys[frame - 1] : std::vector<int32_t>();
        if (wanted != held) {
            for (const int32_t key : held) stage->release(key);
            for (const int32_t key : wanted) stage->hold(key);
            held = wanted;
        }
        stage->frames(1);
        if (!film.at.count(frame)) continue;
        char name[256];
        std::snprintf(name, sizeof name, "%s/%s-%04d.png", film.out.c_str(), film.room.c_str(),
                      frame);
        if (!stage->save_picture(name)) Refuse(std::string("can't write ") + name);
        std::printf("%s  %s  state %016llx\n", name, stage->room_name().c_str(),
                    static_cast<unsigned long long>(stage->state_hash()));
    }
}

}  // namespace

int main(int argc, char** argv)
{
    Film film = ParseArguments(argc, argv);
    std::error_code failed;
    std::filesystem::create_directories(film.out, failed);
    film.out = std::filesystem::absolute(film.out).string();
    if (!film.speed.empty())
        film.options.save = "[preferencias]\r\nvelocidade=\"" + film.speed + "\"\r\n";
    Stage stage(film.options);
    if (!stage.started()) {
        std::fprintf(stderr, "vexo-film: the game did not start\n%s", stage.console().c_str());
        return 1;
    }
    stage.room(film.room);
    if (stage.room_name() != film.room) Refuse("no room is called " + film.room);
    Shoot(film, &stage);
    return 0;
}
