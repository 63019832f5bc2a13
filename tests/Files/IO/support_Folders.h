#pragma once
// A game's folder and a player's data folder, both fresh, with the built-ins of files.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Files/Base/Archive_Main.h"
#include "Files/IO/File_Names.h"
#include "tests/Files/Function/support_Builtins.h"

class FoldersTest : public BuiltinsTest {
protected:
    void SetUp() override
    {
        BuiltinsTest::SetUp();
        std::string pattern = testing::TempDir() + "folders-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        root_ = pattern;
        std::filesystem::create_directories(root_ / "game");
        std::filesystem::create_directories(root_ / "data");
        Stage_SetFolder((root_ / "game/").c_str());
        Stage_SetDataFolder((root_ / "data/").c_str());
        g_GameHeader.name = "MarlowickGame";
        g_WorkingDirectory = (root_ / "game/").c_str();
        g_DebugConsole = g_ErrorConsole;  // so that its lines are seen
    }
    void TearDown() override
    {
        Function_File_Close();
        g_GameHeader = GameHeader();
        VxString().swap(g_WorkingDirectory);
        BuiltinsTest::TearDown();
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }

    std::filesystem::path Saved(const std::string& name) const
    {
        return root_ / "data/MarlowickGame" / name;
    }
    std::filesystem::path Bundled(const std::string& name) const { return root_ / "game" / name; }
    static void Put(const std::filesystem::path& path, const std::string& content)
    {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << content;
    }
    static std::string Bytes(const std::filesystem::path& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // Plain files under a folder.
    static size_t Count(const std::filesystem::path& folder)
    {
        size_t count = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
            count += entry.is_regular_file() ? 1 : 0;
        return count;
    }
    static bool Said(const std::string& words)
    {
        for (const std::string& line : Lines())
            if (line.find(words) != std::string::npos) return true;
        return false;
    }

    std::filesystem::path root_;
};
