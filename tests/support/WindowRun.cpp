#include "tests/support/WindowRun.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "Files/Graphics_API/Device.h"
#include "tests/support/Stage.h"

namespace {

constexpr int kMostFrames = 10000;
constexpr useconds_t kLookMicros = 1000;  // between two looks at the other process

bool HasProgram(const std::string& name)
{
    return std::system(("command -v " + name + " >/dev/null 2>&1").c_str()) == 0;
}

void Silence()
{
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
}

// Starts Xvfb on a number that it picks itself; the number, or "" when it failed.
std::string StartServer(pid_t* server)
{
    int ends[2];
    if (pipe(ends) != 0) return "";
    *server = fork();
    if (*server == 0) {
        close(ends[0]);
        Silence();
        const std::string end = std::to_string(ends[1]);
        execlp("Xvfb", "Xvfb", "-displayfd", end.c_str(), "-screen", "0", "1280x1024x24",
               "-nolisten", "tcp", "-noreset", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(ends[1]);
    std::string number;
    char digit;
    while (read(ends[0], &digit, 1) == 1 && digit != '\n') number += digit;
    close(ends[0]);
    return number;
}

void End(pid_t process)
{
    if (process <= 0) return;
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
}

}  // namespace

Screen::Screen()
{
    if (!HasProgram("Xvfb") || !HasProgram("xdotool")) return;
    const std::string number = StartServer(&server_);
    if (!number.empty()) display_ = ":" + number;
}

Screen::~Screen()
{
    End(server_);
}

void Screen::hands(const std::string& xdotool) const
{
    const std::string command = "DISPLAY=" + display_ + " xdotool " + xdotool + " >/dev/null";
    if (std::system(command.c_str()) != 0) std::fprintf(stderr, "failed: %s\n", command.c_str());
}

struct WindowRun::Shared {
    std::atomic<int> frame{0};
    char device[16] = {}, room[64] = {};
    uint64_t hashes[kMostFrames] = {};
};

WindowRun::WindowRun(const Screen& screen, const Options& options)
{
    void* memory =
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) std::abort();
    shared_ = new (memory) Shared;
    std::fflush(nullptr);
    process_ = fork();
    if (process_ == 0) Play(screen, options);
}

void WindowRun::Play(const Screen& screen, const Options& options)
{
    setenv("DISPLAY", screen.display().c_str(), 1);
    setenv("SDL_VIDEODRIVER", "x11", 1);
    unsetenv("WAYLAND_DISPLAY");
    Stage::Options stageOptions;
    stageOptions.switches.insert(stageOptions.switches.end(), options.switches.begin(),
                                 options.switches.end());
    stageOptions.window = true;
    stageOptions.windowPace = options.pace;
    stageOptions.save = options.save;
    {
        Stage stage(stageOptions);
        if (!stage.started()) _exit(1);
        std::snprintf(shared_->device, sizeof shared_->device, "%s", g_Device->name);
        while (shared_->frame < options.frames && stage.running()) {
            stage.frames(1);
            shared_->hashes[shared_->frame] = stage.state_hash();
            std::snprintf(shared_->room, sizeof shared_->room, "%s", stage.room_name().c_str());
            ++shared_->frame;
        }
    }
    _exit(shared_->frame == options.frames ? 0 : 2);
}

WindowRun::~WindowRun()
{
    if (!ended_) End(process_);
    munmap(shared_, sizeof(Shared));
}

int WindowRun::frame() const
{
    return shared_->frame;
}

bool WindowRun::wait_for(int frame)
{
    while (!ended_ && shared_->frame < frame) {
        int status = 0;
        ended_ = waitpid(process_, &status, WNOHANG) == process_;
        clean_ = ended_ && WIFEXITED(status) && WEXITSTATUS(status) == 0;
        if (!ended_) usleep(kLookMicros);
    }
    return shared_->frame >= frame;
}

bool WindowRun::finish()
{
    wait_for(kMostFrames + 1);  // never reached: ends with the process
    return clean_;
}

std::string WindowRun::device() const
{
    return shared_->device;
}

std::string WindowRun::room_name() const
{
    return shared_->room;
}

std::vector<uint64_t> WindowRun::hashes() const
{
    return {shared_->hashes, shared_->hashes + shared_->frame};
}
