// The mixer alone: exact samples out of known buffers.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "Files/Base/Console.h"
#include "Files/Sound/VXOpenAL/ALu.h"
#include "Host/Host_Stage.h"
#include "Host/Host_Stage_Audio.h"

namespace {

constexpr float kAtCentre = 0.70710678F;  // of each of two speakers, for a sound at the listener

// An output that renders when it is told to.
struct Output final : ALCdevice_struct {
    explicit Output(ALenum wanted = AL_FORMAT_STEREO16)
    {
        format = wanted;
        ALu_BuildPan(this);
    }
    void open(const char*) override {}
    void close() override {}
    void reset() override {}
    void start() override {}
    void stop() override {}
};

class Mixer : public testing::Test {
protected:
    void SetUp() override
    {
        Host_UseStage();
        Stage_Reset();
        Stage_MoveClock(1000000);
        Console_Init();
        Console_SetSink([](void* to, const char* text) { *static_cast<std::string*>(to) += text; },
                        &console_);
        Console_SetFiles(nullptr, "/dev/null");
        Use(AL_FORMAT_STEREO16);
    }
    void TearDown() override
    {
        Drop();
        Console_SetSink(nullptr, nullptr);
        Console_Quit();
        Stage_Quit();
    }
    void Drop()
    {
        alcMakeContextCurrent(nullptr);
        alcDestroyContext(context_);
        VxDelete(output_);
        context_ = nullptr;
        output_ = nullptr;
    }
    void Use(ALenum format)
    {
        if (output_) Drop();
        output_ = VxNew<Output>(format);
        context_ = alcCreateContext(output_, nullptr);
        alcMakeContextCurrent(context_);
    }
    template <class Sample>
    static ALuint Buffer(ALenum format, const std::vector<Sample>& samples, int rate = 48000)
    {
        ALuint buffer = 0;
        alGenBuffers(1, &buffer);
        alBufferData(buffer, format, samples.data(),
                     static_cast<ALsizei>(samples.size() * sizeof(Sample)), rate);
        return buffer;
    }
    static ALuint Source(ALuint buffer = 0)
    {
        ALuint source = 0;
        alGenSources(1, &source);
        if (buffer) alSourcei(source, AL_BUFFER, static_cast<ALint>(buffer));
        return source;
    }
    static ALint Value(ALuint source, ALenum property)
    {
        ALint value = -1;
        alGetSourcei(source, property, &value);
        return value;
    }
    // The next block at its time, all channels of a frame side by side.
    std::vector<int16_t> Render(uint32_t frames)
    {
        Stage_MoveClock(frames * int64_t{1000000} / output_->frequency);
        std::vector<int16_t> block(frames * static_cast<size_t>(output_->channels));
        ALu_Block(output_, block.data(), frames);
        return block;
    }
    static std::vector<int16_t> Ramp(int count, int from = 0)
    {
        std::vector<int16_t> ramp;
        for (int i = 0; i < count; ++i) ramp.push_back(static_cast<int16_t>(from + i));
        return ramp;
    }
    static int16_t Scaled(int sample, float gain)
    {
        return static_cast<int16_t>(static_cast<float>(sample) / 32768 * gain * 32768);
    }

    Output* output_ = nullptr;
    ALCcontext* context_ = nullptr;
    std::string console_;
};

TEST_F(Mixer, LevelsAddUpAndStopAtTheEnds)
{
    const ALuint mono = Buffer<int16_t>(AL_FORMAT_MONO16, {16384, -16384});
    const ALuint stereo = Buffer<int16_t>(AL_FORMAT_STEREO16, {8192, -4096, 8192, -4096});
    const ALuint bytes = Buffer<uint8_t>(AL_FORMAT_MONO8, {128, 192});
    const ALuint first = Source(mono), second = Source(stereo), third = Source(bytes);
    for (const ALuint source : {first, second, third}) alSourcePlay(source);
    std::vector<int16_t> block = Render(2);
    const auto level = [](double sum) { return sum * static_cast<double>(kAtCentre); };
    EXPECT_NEAR(block[0], level(16384 + 8192), 1);
    EXPECT_NEAR(block[1], level(16384 - 4096), 1);
    EXPECT_NEAR(block[2], level(-16384 + 16384 + 8192), 1);

    alListenerf(AL_GAIN, 0.5F);
    alSourcef(second, AL_GAIN, 0.25F);
    alSourcePlay(second);
    EXPECT_NEAR(Render(1)[0], level(8192) / 8, 1);

    // On one speaker the gain is 1, so that sums of exactly 1 and -1 can be made.
    Use(AL_FORMAT_MONO16);
    const ALuint ends = Source(Buffer<float>(AL_FORMAT_MONO_FLOAT_VX, {1.0F, -1.0F, 1.5F, -7.0F}));
    alSourcePlay(ends);
    block = Render(4);
    EXPECT_EQ(block, (std::vector<int16_t>{32767, -32768, 32767, -32768}));
    EXPECT_EQ(alGetError(), AL_NO_ERROR);
}

TEST_F(Mixer, ARateIsSampledAtTheNearestEarlierFrame)
{
    Use(AL_FORMAT_MONO16);
    const ALuint source = Source(Buffer(AL_FORMAT_MONO16, Ramp(2000), 44100));
    alSourcePlay(source);
    const std::vector<int16_t> block = Render(1600);
    for (int i = 0; i < 1600; ++i) ASSERT_EQ(block[static_cast<size_t>(i)], i * 15052 / 16384);
    EXPECT_EQ(Value(source, AL_SAMPLE_OFFSET), 1600 * 15052 / 16384);

    // A sine at another rate is off by no more than one frame of its slope.
    std::vector<int16_t> sine;
    const double turn = 2 * M_PI * 440 / 22050;
    for (int i = 0; i < 3000; ++i)
        sine.push_back(static_cast<int16_t>(std::lround(20000 * std::sin(i * turn))));
    const ALuint other = Source(Buffer(AL_FORMAT_MONO16, sine, 22050));
    alSourceStop(source);
    alSourcef(other, AL_PITCH, 1.5F);
    alSourcePlay(other);
    const std::vector<int16_t> heard = Render(1600);
    double worst = 0;
    for (int i = 0; i < 1600; ++i)
        worst = std::max(worst, std::fabs(heard[static_cast<size_t>(i)] -
                                          20000 * std::sin(i * 22050.0 * 1.5 / 48000 * turn)));
    EXPECT_LT(worst, 20000 * turn + 2);
    EXPECT_GT(worst, 20000 * turn / 4) << "it is not interpolated";
}

TEST_F(Mixer, ALoopWrapsInsideTheBlock)
{
    Use(AL_FORMAT_MONO16);
    const ALuint source = Source(Buffer(AL_FORMAT_MONO16, Ramp(7, 100)));
    alSourcei(source, AL_LOOPING, AL_TRUE);
    alSourcePlay(source);
    int frame = 0;
    for (const uint32_t frames : {20U, 1U, 50U})
        for (const int16_t sample : Render(frames)) ASSERT_EQ(sample, 100 + frame++ % 7);
    // Three octaves up it passes the end more than once between two frames.
    alSourcef(source, AL_PITCH, 20);
    alSourcePlay(source);
    frame = 0;
    for (const int16_t sample : Render(30)) ASSERT_EQ(sample, 100 + frame++ * 20 % 7);
}

TEST_F(Mixer, AQueueRunsThroughItsBuffersAndStops)
{
    Use(AL_FORMAT_MONO16);
    ALuint buffers[] = {Buffer(AL_FORMAT_MONO16, Ramp(10)), Buffer(AL_FORMAT_MONO16, Ramp(10, 10))};
    const ALuint source = Source();
    alSourceQueueBuffers(source, 2, buffers);
    alSourcePlay(source);
    const std::vector<int16_t> first = Render(12);
    EXPECT_EQ(first, Ramp(12)) << "no gap between two buffers";
    EXPECT_EQ(Value(source, AL_BUFFERS_PROCESSED), 1);
    alBufferData(buffers[1], AL_FORMAT_MONO16, "", 0, 48000);
    EXPECT_EQ(alGetError(), AL_INVALID_OPERATION) << "a queued buffer keeps its samples";

    ALuint done = 0;
    alSourceUnqueueBuffers(source, 1, &done);
    EXPECT_EQ(done, buffers[0]);
    alSourceUnqueueBuffers(source, 1, &done);
    EXPECT_EQ(alGetError(), AL_INVALID_VALUE);
    std::vector<int16_t> rest = Ramp(8, 12);
    rest.resize(20, 0);
    EXPECT_EQ(Render(20), rest);
    EXPECT_EQ(Value(source, AL_SOURCE_STATE), AL_STOPPED);
    EXPECT_EQ(Value(source, AL_SAMPLE_OFFSET), 0);
    // Out of data, it goes on with what comes.
    alSourceUnqueueBuffers(source, 1, &done);
    alSourceQueueBuffers(source, 1, buffers);
    alSourcePlay(source);
    EXPECT_EQ(Render(10), Ramp(10));

    alDeleteBuffers(1, buffers);
    EXPECT_EQ(alGetError(), AL_INVALID_OPERATION) << "a source has it";
    alDeleteSources(1, &source);
    alDeleteBuffers(2, buffers);
    EXPECT_EQ(alGetError(), AL_NO_ERROR);
    EXPECT_FALSE(alIsBuffer(buffers[0]));
}

TEST_F(Mixer, ASourceBeginsAtItsFrameOfTheBlock)
{
    Use(AL_FORMAT_MONO16);
    const ALuint source = Source(Buffer(AL_FORMAT_MONO16, Ramp(4000, 1)));
    Render(1600);
    Stage_MoveClock(10000);
    alSourcePlay(source);
    Stage_MoveClock(-10000);
    const std::vector<int16_t> block = Render(1600);
    EXPECT_EQ(block[479], 0);
    EXPECT_EQ(block[480], 1);
    EXPECT_EQ(block[1599], 1120);
    EXPECT_EQ(Render(1600)[0], 1121);
}

TEST_F(Mixer, PauseHoldsThePlaceAndPlayBeginsAnew)
{
    Use(AL_FORMAT_MONO16);
    const ALuint source = Source(Buffer(AL_FORMAT_MONO16, Ramp(100)));
    alSourcePlay(source);
    Render(10);
    alSourcePause(source);
    EXPECT_EQ(Render(5), std::vector<int16_t>(5, 0));
    alSourcePlay(source);
    EXPECT_EQ(Render(5), Ramp(5, 10));
    alSourcePlay(source);
    EXPECT_EQ(Render(5), Ramp(5)) << "a source that plays begins again";
    alSourcei(source, AL_SAMPLE_OFFSET, 40);
    EXPECT_EQ(Render(2), Ramp(2, 40));
    alSourcef(source, AL_SEC_OFFSET, 50.0F / 48000);
    EXPECT_NEAR(Render(1)[0], 50, 1);
    alSourcei(source, AL_SAMPLE_OFFSET, 100);
    EXPECT_EQ(alGetError(), AL_INVALID_VALUE);
    alSourcei(source, AL_SOURCE_MASK_VX, 2);
    EXPECT_EQ(Render(2), std::vector<int16_t>(2, 0)) << "this output does not hear it";
    alSourceStop(source);
    EXPECT_EQ(Value(source, AL_SOURCE_STATE), AL_STOPPED);
}

TEST_F(Mixer, PlaceAndDistanceAreHeard)
{
    const auto heard = [this](ALuint source) {
        alSourcePlay(source);
        return Render(1);
    };
    const ALuint source = Source(Buffer<int16_t>(AL_FORMAT_MONO16, {10000}));
    const struct {
        float x, y, z, left, right;
    } places[] = {
        {1, 0, 0, 0, 1},
        {-1, 0, 0, 1, 0},
        {0, 0, -1, kAtCentre, kAtCentre},
        {0, 0, 1, kAtCentre, kAtCentre},
        {0, 1, 0, kAtCentre, kAtCentre},
        {0.5F, 0, -0.5F, 0.38268F, 0.92388F},
    };
    alDistanceModel(AL_NONE);
    for (const auto& place : places) {
        alSource3f(source, AL_POSITION, place.x, place.y, place.z);
        const std::vector<int16_t> block = heard(source);
        EXPECT_NEAR(block[0], 10000 * static_cast<double>(place.left), 2) << place.x << place.z;
        EXPECT_NEAR(block[1], 10000 * static_cast<double>(place.right), 2) << place.x << place.z;
    }
    // The listener turns round: what was right is left. A head-relative source stays.
    const ALfloat back[] = {0, 0, 1, 0, 1, 0};
    alListenerfv(AL_ORIENTATION, back);
    alSource3f(source, AL_POSITION, 1, 0, 0);
    EXPECT_NEAR(heard(source)[0], 10000, 2);
    alSourcei(source, AL_SOURCE_RELATIVE, AL_TRUE);
    EXPECT_NEAR(heard(source)[1], 10000, 2);

    const struct {
        ALenum model;
        float distance, gain;
    } models[] = {
        {AL_INVERSE_DISTANCE, 4, 0.25F},          {AL_INVERSE_DISTANCE, 0.5F, 1},
        {AL_INVERSE_DISTANCE_CLAMPED, 40, 0.1F},  {AL_LINEAR_DISTANCE, 5.5F, 0.5F},
        {AL_LINEAR_DISTANCE_CLAMPED, 40, 0},      {AL_EXPONENT_DISTANCE, 8, 0.125F},
        {AL_EXPONENT_DISTANCE_CLAMPED, 40, 0.1F},
    };
    alSourcef(source, AL_MAX_DISTANCE, 10);
    for (const auto& model : models) {
        alDistanceModel(model.model);
        alSource3f(source, AL_POSITION, model.distance, 0, 0);
        EXPECT_NEAR(heard(source)[1], 10000 * static_cast<double>(model.gain), 2) << model.model;
    }
    alDistanceModel(AL_NONE);
    alSource3f(source, AL_POSITION, 2, 0, 0);
    alSource3f(source, AL_DIRECTION, 1, 0, 0);  // away from the listener
    alSourcef(source, AL_CONE_INNER_ANGLE, 60);
    alSourcef(source, AL_CONE_OUTER_ANGLE, 120);
    alSourcef(source, AL_CONE_OUTER_GAIN, 0.25F);
    EXPECT_NEAR(heard(source)[1], 2500, 2);
    EXPECT_EQ(alGetError(), AL_NO_ERROR);
}

TEST_F(Mixer, WhatComesNearerSoundsHigher)
{
    Use(AL_FORMAT_MONO16);
    const ALuint source = Source(Buffer(AL_FORMAT_MONO16, Ramp(5000)));
    alDistanceModel(AL_NONE);
    alSpeedOfSound(300);
    alSource3f(source, AL_POSITION, 0, 0, -10);
    alSource3f(source, AL_VELOCITY, 0, 0, 150);  // towards the listener
    alSourcePlay(source);
    EXPECT_EQ(Render(101)[100], 200);
}

// Each of the speakers that enclose a direction gets its share, and no other one.
TEST_F(Mixer, EveryLayoutCoversTheCircle)
{
    for (const ALenum format : {0x1205, 0x120B, 0x1211}) {
        Use(format);
        for (const auto& row : output_->pan) {
            float power = 0;
            int used = 0;
            for (const float gain : row) {
                power += gain * gain;
                used += gain > 1e-6F;
                EXPECT_GE(gain, -1e-6F);
            }
            ASSERT_NEAR(power, 1, 1e-5);
            ASSERT_LE(used, 2);
        }
        EXPECT_FLOAT_EQ(output_->pan[128][format == 0x1211 ? SIDE_RIGHT : BACK_RIGHT] > 0, 1);
    }
    Use(0x1211);
    EXPECT_FLOAT_EQ(output_->pan[0][FRONT_CENTER], 1);
    EXPECT_FLOAT_EQ(output_->pan[384][SIDE_LEFT], 1);
    EXPECT_NEAR(output_->pan[256][BACK_LEFT], output_->pan[256][BACK_RIGHT], 1e-5);
    const ALuint source = Source(Buffer<int16_t>(AL_FORMAT_STEREO16, {10000, 5000}));
    alSourcePlay(source);
    const std::vector<int16_t> block = Render(1);
    EXPECT_NEAR(block[0], 2 * block[1], 2);
    EXPECT_EQ(block[2], 0) << "a stereo sound has its two channels in front";
}

// ---- outputs

class Outputs : public testing::Test {
protected:
    void SetUp() override
    {
        Host_UseStage();
        Stage_Reset();
        Console_Init();
        Console_SetSink([](void* to, const char* text) { *static_cast<std::string*>(to) += text; },
                        &console_);
        Console_SetFiles(nullptr, "/dev/null");
    }
    void TearDown() override
    {
        Console_SetSink(nullptr, nullptr);
        Console_Quit();
        Stage_Quit();
    }
    // Plays 4800 frames and lets 70 ms pass: two blocks.
    ALint StateAfterTwoBlocks(bool looping)
    {
        ALCdevice* device = alcOpenDevice(nullptr);
        ALCcontext* context = alcCreateContext(device, nullptr);
        alcMakeContextCurrent(context);
        const std::vector<int16_t> samples(looping ? 100 : 3200, 1000);
        ALuint source = 0, buffer = 0;
        alGenSources(1, &source);
        alGenBuffers(1, &buffer);
        alBufferData(buffer, AL_FORMAT_MONO16, samples.data(),
                     static_cast<ALsizei>(samples.size() * 2), 48000);
        alSourcei(source, AL_BUFFER, static_cast<ALint>(buffer));
        alSourcei(source, AL_LOOPING, looping);
        alSourcePlay(source);
        Stage_MoveClock(70000);
        int blocks = 0;
        while (ALC_Pump()) ++blocks;
        EXPECT_EQ(blocks, 2);
        ALint state = 0;
        alGetSourcei(source, AL_SOURCE_STATE, &state);
        alcMakeContextCurrent(nullptr);
        alcCloseDevice(device);
        alcDestroyContext(context);
        return state;
    }
    std::string console_;
};

TEST_F(Outputs, TheSystemsOutputGetsWholeBlocks)
{
    Stage_KeepSound(true);
    EXPECT_EQ(StateAfterTwoBlocks(true), AL_PLAYING);
    ASSERT_EQ(Stage_Sound().size(), 2U * 1600 * 2);
    for (const int16_t sample : Stage_Sound()) ASSERT_NEAR(sample, 707, 1);
    EXPECT_FALSE(Stage_AudioOpen());
    EXPECT_NE(console_.find("Unable to find output device \"null\" defaulting to"),
              std::string::npos);
}

TEST_F(Outputs, WithoutAnOutputSoundsRunAndEndInSilence)
{
    Stage_PlugAudio(false);
    EXPECT_EQ(StateAfterTwoBlocks(false), AL_STOPPED);
    EXPECT_NE(console_.find("No audio output devices found.  Will fallback to use dummy output.\n"),
              std::string::npos);
}

}  // namespace
