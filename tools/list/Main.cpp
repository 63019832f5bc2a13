// vexo-list: an archive as text or JSON.

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tools/list/Records.h"

namespace {

constexpr char kHelp[] =
    "usage: vexo-list [--json] [FILE]\n"
    "Prints every chunk of an archive and every record in it.\n"
    "FILE is an archive, or a program with an archive linked in. Without FILE, the\n"
    "program marlowick of the same build is read.\n"
    "  --json  one JSON object: a member for each chunk, by its tag, in file order;\n"
    "          records have their fields in the order of the archive, an empty slot\n"
    "          is null. Example, the instances of a room:\n"
    "          vexo-list --json | jq '.ROOM.records[]|select(.name==\"room_level1\").instances'\n";

using Path = std::filesystem::path;

Path ProgramOfThisBuild()
{
    std::error_code unreadable;
    const Path own = std::filesystem::read_symlink("/proc/self/exe", unreadable);
    for (const Path& folder : {own.parent_path(), own.parent_path().parent_path()})
        for (const char* name : {"marlowick", "marlowick.win"})
            if (std::filesystem::is_regular_file(folder / name, unreadable)) return folder / name;
    return own.parent_path() / "marlowick";
}

int Complain(const Path& path, const std::string& what)
{
    std::fprintf(stderr, "vexo-list: %s: %s\n", path.c_str(), what.c_str());
    return 1;
}

int ListFile(const Path& path, bool json)
{
    std::error_code unreadable;
    if (!std::filesystem::is_regular_file(path, unreadable))
        return Complain(path, "there is no such file");
    std::ifstream file(path, std::ios::binary);
    if (!file) return Complain(path, "the file can't be read");
    const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(file),
                                     std::istreambuf_iterator<char>()};
    const std::vector<uint8_t> archive = list::FindArchive(bytes);
    if (archive.empty())
        return Complain(path, "neither an archive nor a program with an archive linked in");
    list::Value tree;
    std::string error;
    if (!list::Describe(archive, &tree, &error)) return Complain(path, error);
    const std::string text = json ? tree.Json() + "\n" : tree.Text();
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    return written && std::fflush(stdout) == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    bool json = false;
    Path path;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--json") == 0) {
            json = true;
        } else if (std::strcmp(argv[i], "--help") == 0) {
            std::fputs(kHelp, stdout);
            return 0;
        } else if (argv[i][0] == '-' || !path.empty()) {
            std::fprintf(stderr, "vexo-list: unexpected argument %s\n%s", argv[i], kHelp);
            return 2;
        } else {
            path = argv[i];
        }
    }
    return ListFile(path.empty() ? ProgramOfThisBuild() : path, json);
}
