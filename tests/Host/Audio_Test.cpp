// Sound output of the desktop, on the driver that plays to nobody at the pace of real time.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <atomic>

#include "Host/Host.h"
#include "Host/Host_Audio.h"

namespace {

struct Client {
    std::atomic<int> pulls{0}, frames{0};
    static void Pull(void* context, int16_t* samples, int32_t count)
    {
        auto* client = static_cast<Client*>(context);
        for (int32_t i = 0; i < 2 * count; ++i) samples[i] = 0;
        client->frames += count;
        ++client->pulls;
    }
};

TEST(HostAudio, PullsFromStartToCloseAndOpensAgain)
{
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    Host_UseSDL();
    EXPECT_FALSE(g_HostAudio.stepped);
    ASSERT_GT(g_HostAudio.DeviceCount(), 0);
    EXPECT_STREQ(g_HostAudio.DriverName(), "dummy");
    for (int round = 0; round < 2; ++round) {
        Client client;
        ASSERT_TRUE(g_HostAudio.Open(0, {48000, 2, 1600, Client::Pull, &client}))
            << g_HostAudio.LastError();
        usleep(80000);
        EXPECT_EQ(client.pulls, 0) << "silent until it is started";
        g_HostAudio.Start();
        for (int i = 0; i < 500 && client.pulls < 3; ++i) usleep(10000);
        g_HostAudio.Close();
        const int pulls = client.pulls;
        EXPECT_GE(pulls, 3);
        EXPECT_EQ(client.frames % pulls, 0);
        usleep(80000);
        EXPECT_EQ(client.pulls, pulls) << "nothing is pulled once it is closed";
    }
    g_HostAudio.Close();
    unsetenv("SDL_AUDIODRIVER");
}

TEST(HostAudio, ADriverThatIsNoneHasNoDevices)
{
    setenv("SDL_AUDIODRIVER", "no such driver", 1);
    Host_UseSDL();
    EXPECT_EQ(g_HostAudio.DeviceCount(), 0);
    EXPECT_FALSE(g_HostAudio.Open(0, {48000, 2, 1600, Client::Pull, nullptr}));
    EXPECT_STRNE(g_HostAudio.LastError(), "");
    unsetenv("SDL_AUDIODRIVER");
}

}  // namespace
