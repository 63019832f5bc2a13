// Files, folders and the clock as both backends give them.

#include <errno.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cassert>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "Host/Posix_Files.h"

// What a failed assertion calls; a build without assertions does not declare it.
extern "C" void __assert_fail(const char* expression, const char* file, unsigned int line,
                              const char* function) noexcept;

namespace {

namespace fs = std::filesystem;

class FilesTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder_ = (fs::path(testing::TempDir()) / ("files-" + std::to_string(getpid()))).string();
        fs::create_directories(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }
    std::string Path(const char* name) const { return folder_ + "/" + name; }
    static std::string Read(const std::string& path)
    {
        uint32_t size = 0;
        uint8_t* data = posix::ReadAll(path.c_str(), &size);
        if (!data) return "<none>";
        EXPECT_EQ(data[size], 0) << "a zero stands behind the content";
        const std::string text(reinterpret_cast<char*>(data), size);
        MemoryManager::Free(data);
        return text;
    }
    std::string folder_;
};

TEST_F(FilesTest, WholeFilesAndTheirEnds)
{
    const std::string path = Path("a.bin");
    EXPECT_TRUE(posix::WriteAll(path.c_str(), "one\0two", 7));
    EXPECT_EQ(Read(path), std::string("one\0two", 7));
    EXPECT_TRUE(posix::Append(path.c_str(), "!", 1));
    EXPECT_EQ(Read(path), std::string("one\0two!", 8));
    EXPECT_TRUE(posix::WriteAll(path.c_str(), "", 0));
    EXPECT_EQ(Read(path), "");
    EXPECT_TRUE(posix::Exists(path.c_str()));
    EXPECT_FALSE(posix::FolderExists(path.c_str()));
    EXPECT_TRUE(posix::Rename(path.c_str(), Path("b.bin").c_str()));
    EXPECT_FALSE(posix::Exists(path.c_str()));
    EXPECT_TRUE(posix::Delete(Path("b.bin").c_str()));
    EXPECT_FALSE(posix::Delete(Path("b.bin").c_str()));
    EXPECT_STREQ(posix::LastError(), strerror(ENOENT));
}

TEST_F(FilesTest, FoldersAreNoFilesAndListInOrder)
{
    EXPECT_EQ(Read(folder_), "<none>");
    EXPECT_FALSE(posix::Exists(folder_.c_str()));
    EXPECT_TRUE(posix::MakeFolder(Path("b").c_str(), 0700));
    EXPECT_TRUE(posix::MakeFolder(Path("b").c_str(), 0700)) << "it stands already";
    EXPECT_EQ(fs::status(Path("b")).permissions(), fs::perms::owner_all);
    for (const char* name : {"c", "B", "a"}) posix::WriteAll(Path(name).c_str(), "123", 3);
    EXPECT_FALSE(posix::MakeFolder(Path("c").c_str(), 0700)) << "a file has the name";
    EXPECT_FALSE(posix::MakeFolder(Path("no/where").c_str(), 0700));
    std::string seen;
    const auto visit = [](void* context, const char* name, bool folder, uint64_t size) {
        *static_cast<std::string*>(context) +=
            name + std::string(folder ? "/ " : ":" + std::to_string(size) + " ");
    };
    EXPECT_TRUE(posix::List(folder_.c_str(), visit, &seen));
    EXPECT_EQ(seen, "B:3 a:3 b/ c:3 ");
    EXPECT_FALSE(posix::List(Path("missing").c_str(), visit, &seen));
}

TEST_F(FilesTest, StreamsReachTheDiskAtOnce)
{
    const std::string path = Path("stream");
    EXPECT_EQ(posix::OpenStream(path.c_str(), "rb"), nullptr);
    void* out = posix::OpenStream(path.c_str(), "wb");
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(posix::WriteStream(out, "abcdef", 6), 6U);
    EXPECT_EQ(Read(path), "abcdef") << "while it is still open";
    posix::CloseStream(out);
    void* in = posix::OpenStream(path.c_str(), "rb");
    char buffer[8] = {};
    EXPECT_EQ(posix::ReadStream(in, buffer, 4), 4U);
    EXPECT_EQ(posix::ReadStream(in, buffer + 4, 4), 2U);
    EXPECT_STREQ(buffer, "abcdef");
    posix::CloseStream(in);
    posix::CloseStream(nullptr);
}

TEST_F(FilesTest, PlacesOfTheUsersData)
{
    setenv("XDG_DATA_HOME", "/somewhere/data", 1);
    EXPECT_EQ(posix::LocalData(), "/somewhere/data/");
    setenv("XDG_DATA_HOME", "not/absolute", 1);
    setenv("HOME", "/home/player", 1);
    EXPECT_EQ(posix::LocalData(), "/home/player/.local/share/");
    unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(posix::RoamingData(), "/home/player/.config/");
    for (const char* home : {"", "not/absolute"}) {
        setenv("HOME", home, 1);
        EXPECT_EQ(posix::RoamingData().substr(0, 1), "/") << "as the system knows the user";
        EXPECT_EQ(posix::RoamingData().find("not/absolute"), VxString::npos);
    }
    EXPECT_EQ(posix::ProgramPath().substr(0, 1), "/");
    EXPECT_TRUE(posix::Exists(posix::ProgramPath().c_str()));
    EXPECT_EQ(posix::CurrentFolder().back(), '/');
}

TEST_F(FilesTest, WhatIsNoPlainFileIsNotRead)
{
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(Read(Path("pipe")), "<none>") << "and nobody waits for a writer";
    EXPECT_FALSE(posix::Exists(Path("pipe").c_str()));
}

TEST_F(FilesTest, TheLimitOfAFilesSizeIsAFailureAndNoEnd)
{
    const std::string path = Path("limited");
    EXPECT_EXIT(
        {
            posix::CatchFaults([](const HostFault&) {});
            rlimit before;
            getrlimit(RLIMIT_FSIZE, &before);
            rlimit limit = before;
            limit.rlim_cur = 10;
            setrlimit(RLIMIT_FSIZE, &limit);
            const bool small = posix::WritePrivate(path.c_str(), "0123456789", 10);
            const bool large = posix::WritePrivate(path.c_str(), "0123456789abc", 13);
            setrlimit(RLIMIT_FSIZE, &before);
            std::fprintf(stderr, "%d %d %s\n", small, large, posix::LastError());
            _exit(0);
        },
        testing::ExitedWithCode(0), "1 0 File too large");
}

TEST_F(FilesTest, BlockingLastsAsLongAsAsked)
{
    const int64_t start = posix::Micros();
    posix::Block(20);
    EXPECT_GE(posix::Micros() - start, 20000);
}

// A fault ends a watched process with a report and exit code 1, an assertion with its
// place in the source.
TEST(FaultsDeathTest, FaultsAreReported)
{
    const auto handler = [](const HostFault& fault) {
        if (fault.assertion)
            std::fprintf(stderr, "assertion %s in %s\n", fault.text, fault.function);
        else
            std::fprintf(stderr, "fault %u at %p\n", fault.code, fault.address);
    };
    EXPECT_EXIT(
        {
            posix::CatchFaults(handler);
            raise(SIGSEGV);
        },
        testing::ExitedWithCode(1), "fault 11 at");
    EXPECT_EXIT(
        {
            posix::CatchFaults(handler);
            abort();
        },
        testing::ExitedWithCode(1), "fault 6 at");
    EXPECT_EXIT(
        {
            posix::CatchFaults(handler);
            __assert_fail("cells > 0", "Rules.cpp", 12, "Push");
        },
        testing::ExitedWithCode(1), "assertion cells > 0 in Push");
    EXPECT_EXIT(
        {
            posix::CatchFaults([](const HostFault&) { raise(SIGSEGV); });
            raise(SIGFPE);
        },
        testing::ExitedWithCode(1), "");
}

}  // namespace
