// vexo-music: plays a score into a file.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <stdexcept>

#include "tools/music/Ogg.h"

namespace {

constexpr const char* kHelp =
    "vexo-music SCORE OUT.ogg\n"
    "vexo-music --tone RATE CHANNELS FRAMES HERTZ OUT.ogg   a sine, for tests\n"
    "An error in the score stops it with file, line and what was expected.\n";
constexpr float kQuality = 0.3F;

void Write(const char* path, const std::vector<uint8_t>& bytes)
{
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(bytes.data()),
                 static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) throw std::runtime_error(std::string(path) + ": cannot be written");
}

}  // namespace

int main(int argc, char** argv)
{
    const bool tone = argc == 7 && std::strcmp(argv[1], "--tone") == 0;
    if (!tone && (argc != 3 || argv[1][0] == '-')) {
        std::fputs(kHelp, stderr);
        return 2;
    }
    try {
        const music::Sound sound =
            tone ? music::Synth_Tone(std::atoi(argv[2]), std::atoi(argv[3]),
                                     static_cast<size_t>(std::atoll(argv[4])), std::atof(argv[5]))
                 : music::Synth_Render(music::Score_Read(argv[1]));
        Write(argv[argc - 1], music::Ogg_Encode(sound, kQuality));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
