// vexo-pack: turns the content into the archive and the names that the rules use.

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Files/Base/Archive_Writer.h"
#include "tools/pack/Build.h"

namespace {

constexpr const char* kHelp =
    "vexo-pack CONTENT_DIR [--archive FILE] [--generated DIR] [--cache DIR] [--list]\n"
    "  --archive FILE    write the archive\n"
    "  --generated DIR   write Names.h, Builtins.h and CodeTable.cpp\n"
    "  --cache DIR       keep rendered pictures there and take unchanged ones from it\n"
    "  --list            print what is still to come: `placeholder` pictures, `later`\n"
    "                    functions, `empty` levels, `short` scenery, and a count of each\n"
    "                    kind of record\n"
    "An error in the content stops it with file, line and what was expected.\n";

struct Arguments {
    std::string content, archive, generated, cache;
    bool list = false;
};

bool ReadArguments(int argc, char** argv, Arguments& out)
{
    for (int i = 1; i < argc; ++i) {
        std::string word = argv[i];
        if (word == "--list") {
            out.list = true;
        } else if (word == "--archive" || word == "--generated" || word == "--cache") {
            if (++i >= argc) return false;
            std::string& folder = word == "--archive"     ? out.archive
                                  : word == "--generated" ? out.generated
                                                          : out.cache;
            folder = argv[i];
        } else if (word.rfind("--", 0) == 0 || !out.content.empty()) {
            return false;
        } else {
            out.content = word;
        }
    }
    return !out.content.empty();
}

// A file that already holds the same bytes keeps its time, so that nothing is built
// again for it.
void WriteFile(const std::string& path, const char* bytes, size_t size)
{
    std::ifstream before(path, std::ios::binary);
    if (before) {
        std::string held{std::istreambuf_iterator<char>(before), std::istreambuf_iterator<char>()};
        if (held.size() == size && held.compare(0, size, bytes, size) == 0) return;
    }
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(bytes, static_cast<std::streamsize>(size));
    stream.close();
    if (!stream) throw std::runtime_error(path + ": cannot be written");
}

void WriteText(const std::string& path, const std::string& text)
{
    WriteFile(path, text.data(), text.size());
}

void List(const pack::Built& built, const pack::CodePlan& plan)
{
    const archive::Content& content = built.content;
    for (const std::string& name : built.placeholders)
        std::printf("placeholder %s\n", name.c_str());
    for (const std::string& name : plan.later) std::printf("later %s\n", name.c_str());
    for (const std::string& name : built.emptyLevels) std::printf("empty %s\n", name.c_str());
    for (const std::string& line : built.shortages) std::printf("short %s\n", line.c_str());
    std::printf(
        "objects %zu, sprites %zu, backgrounds %zu, sounds %zu, fonts %zu, scripts %zu, "
        "rooms %zu, pages %zu (%.0f%% used), code rows %zu\n",
        content.objects.size(), content.sprites.size(), content.backgrounds.size(),
        content.sounds.size(), content.fonts.size(), content.scripts.size(), content.rooms.size(),
        content.pages.size(), built.pageUse * 100, plan.rows.size());
}

void Run(const Arguments& arguments)
{
    pack::Tables tables = pack::Tables_Read(arguments.content);
    pack::CodePlan plan = pack::Code_Plan(tables);
    pack::Built built = pack::Build_Archive(arguments.content, tables, plan, arguments.cache);
    if (!arguments.archive.empty()) {
        std::vector<uint8_t> bytes = archive::Write(built.content);
        WriteFile(arguments.archive, reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    if (!arguments.generated.empty()) {
        std::filesystem::create_directories(arguments.generated);
        WriteText(arguments.generated + "/Names.h", pack::Code_Names(tables, plan));
        WriteText(arguments.generated + "/Builtins.h", pack::Code_Builtins(tables));
        WriteText(arguments.generated + "/CodeTable.cpp", pack::Code_Table(tables, plan));
    }
    if (arguments.list) List(built, plan);
}

}  // namespace

int main(int argc, char** argv)
{
    Arguments arguments;
    if (!ReadArguments(argc, argv, arguments)) {
        std::fputs(kHelp, stderr);
        return 2;
    }
    try {
        Run(arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
