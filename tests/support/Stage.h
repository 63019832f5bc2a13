#pragma once
// The stage: the real runtime with the game's rules and archive on the stage host
// and the soft device. Tests are short stories in its verbs:
//
//   Stage stage;
//   stage.room("room_level1").frames(1);
//   stage.hold('D').frames(13).release('D');
//   EXPECT_EQ(stage.find(oMonte)->x, 312);
//
// One stage lives at a time; its end unmakes everything that start-up made.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "Files/Code/Seam.h"
#include "tests/support/KeyScript.h"

struct Picture {
    int width = 0, height = 0;
    std::vector<uint32_t> pixels;  // 0xAARRGGBB, top row first
};

// Hands on a pad, by the script's constants ("gp_face1" is 0x8001).
class PadHands {
public:
    explicit PadHands(int slot) : slot_(slot) {}
    PadHands& press(int button, double how_far = 1);  // a trigger goes as far as one likes
    PadHands& release(int button) { return press(button, 0); }
    PadHands& axis(int axis, double value);  // -1 to 1; up and left are below 0
    void pull_out();

private:
    int slot_;
};

class Stage {
public:
    struct Options {
        std::vector<std::string> switches = {"-inawindow"};
        std::string archive;                     // a file; empty for the game's
        std::vector<uint8_t> archiveBytes;       // instead of a file, when not empty
        const RunnerData* attachment = nullptr;  // null for the game's
        std::string save;                        // text of SaveGame.sav before the start
        // A real window of the display, whose keys and mouse are then the hands. The
        // stage's clock stays: a wait of a second takes 1 / windowPace seconds, none for 0.
        bool window = false;
        double windowPace = 1;
        bool threads = false;  // as the desktop has them
        // Sound; else the run has none. It passes as the clock does and is heard by
        // Stage_Sound; with soundThreads it has the desktop's threads and clock, and no one
        // hears it.
        bool sound = false, soundThreads = false;
        // Files that lie beside the program: name and where they are copied from.
        std::vector<std::pair<std::string, std::string>> beside;
    };

    Stage();
    explicit Stage(const Options& options);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    static const std::vector<uint8_t>& game_archive();  // its bytes

    bool started() const { return started_; }  // InitGame came through
    bool running() const;                      // the main loop would go on

    // ---- time
    Stage& frames(int count);              // ends early when the game ends
    Stage& room(const std::string& name);  // asks for the room and runs until its first frame
    std::string room_name() const;

    // ---- hands
    Stage& hold(int key);  // down until released
    Stage& release(int key);
    Stage& tap(int key);  // down for one frame, which runs
    Stage& play(const std::vector<KeyHold>& script);
    Stage& play(const std::string& script);  // see KeyScript.h
    // Steps by W, A, S, D, one cell each, as quickly as the game speed allows.
    Stage& walk(const std::string& steps);
    PadHands pad(int slot);      // of slots 0 to 3; the first call plugs it in
    Stage& mouse(int x, int y);  // client pixels
    Stage& press(int x, int y);  // left button
    Stage& let_go(int x, int y);
    Stage& click(int x, int y);  // down and up over two frames

    // ---- looking
    CInstance* find(Object object, int number = 0) const;  // alive ones, oldest first; or null
    int count(Object object) const;
    double global(const char* name) const;  // NaN for an unset value
    std::string global_text(const char* name) const;
    double variable(CInstance* instance, const char* name) const;
    Picture picture() const;                           // of the window
    bool save_picture(const std::string& path) const;  // as a PNG file
    std::string save_file() const;                     // text of SaveGame.sav
    std::string console() const { return console_; }   // all lines of all consoles
    void clear_console() { console_.clear(); }

    // A number that signs the state of the world: all instances with their fields and
    // variables, the globals, the room and the random generator (FNV-1a, 64 bits).
    uint64_t state_hash() const;

private:
    void Boot(const Options& options);
    static void Listen(void* context, const char* text);
    bool started_ = false;
    std::string console_;
    std::filesystem::path folder_;
    std::vector<uint8_t> archive_;
};

// Frames that a figure takes for a cell at a speed word.
int FramesPerCell(const std::string& speed);
