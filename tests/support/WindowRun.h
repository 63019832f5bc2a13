#pragma once
// The game in a real window, in a process of its own, on a screen of its own: an Xvfb
// that nobody looks at. xdotool is its hands.

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

// A screen without a monitor; ready() is false where Xvfb or xdotool is missing.
class Screen {
public:
    Screen();
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    bool ready() const { return !display_.empty(); }
    const std::string& display() const { return display_; }  // ":7"
    void hands(const std::string& xdotool) const;            // such as "key Return"

private:
    pid_t server_ = -1;
    std::string display_;
};

class WindowRun {
public:
    struct Options {
        std::vector<std::string> switches;
        int frames = 0;         // the run ends after them
        double pace = 1;        // of the clock; 0 runs as fast as it can
        std::string save = {};  // text of SaveGame.sav before the start
    };

    WindowRun(const Screen& screen, const Options& options);
    ~WindowRun();
    WindowRun(const WindowRun&) = delete;
    WindowRun& operator=(const WindowRun&) = delete;

    int frame() const;           // frames that are done
    bool wait_for(int frame);    // false when the run ended before
    bool finish();               // waits for the end; false when it failed
    std::string device() const;  // "gl" or "soft"
    std::string room_name() const;
    std::vector<uint64_t> hashes() const;  // of the world's state after each frame

private:
    struct Shared;
    [[noreturn]] void Play(const Screen& screen, const Options& options);
    Shared* shared_;
    pid_t process_ = -1;
    bool ended_ = false, clean_ = false;
};
