// Feeds any bytes to the mapping of names to paths: a path lies in its folder, or there
// is none.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/IO/File_Names.h"
#include "Host/Host_Stage.h"

namespace {

void Require(bool holds, const char* what, const std::string& path)
{
    if (holds) return;
    std::fprintf(stderr, "%s: %s\n", what, path.c_str());
    std::abort();
}

void Check(const std::string& path, const std::string& folder)
{
    if (path.empty()) return;
    const std::string framed = path.back() == '/' ? path : path + "/";
    Require(framed.compare(0, folder.size(), folder) == 0, "a path leads out", path);
    Require(path.size() < kPathSize, "a path is too long", path);
    for (const char* part : {"/../", "/./", "//", "\\"})
        Require(framed.find(part) == std::string::npos, "a path is not resolved", path);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    Host_UseStage();
    Stage_Reset();
    Stage_SetFolder("/a/game/");
    Stage_SetDataFolder("/a/data/");
    Console_Init();
    Console_SetSink([](void*, const char*) {}, nullptr);
    g_WorkingDirectory = "/a/other/";
    g_GameHeader.name = "Game";
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string name(reinterpret_cast<const char*>(data), size);
    const MappedPath saved(GetSaveFileName, name.c_str());
    Check(static_cast<const char*>(saved), "/a/data/Game/");
    Check(static_cast<const char*>(MappedPath(GetBundleFileName, name.c_str())), "/a/other/");
    if (!saved.Empty())
        Require(std::strcmp(MappedPath(GetSaveFileName, saved), saved) == 0,
                "a path of its own changes", static_cast<const char*>(saved));
    MatchesMask(name.c_str(), name.c_str() + name.size() / 2);
    return 0;
}
