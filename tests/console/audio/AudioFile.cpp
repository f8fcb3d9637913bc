#include "console/audio/AudioFile.h"

#include "console/text/CommandFailure.h"
#include "tests/console/support/SoundFile.h"
#include "tests/engine/support/Signals.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace AudioFileTests
{

using namespace velox::console;
using testing::HasSubstr;

class AudioFile : public testing::Test
{
protected:
    std::filesystem::path File(const char8_t* name) const
    {
        return std::filesystem::path(folder.Path()) / std::u8string(name);
    }

    Audio Read(const std::string& bytes) const
    {
        SoundFile::Write(File(u8"take.wav"), bytes);
        return ReadAudio(File(u8"take.wav"));
    }

    std::string Refusal(const std::string& bytes) const
    {
        try
        {
            Read(bytes);
        }
        catch (const CommandFailure& failure)
        {
            EXPECT_EQ(failure.exitCode, ExitCode::BadInput);
            EXPECT_FALSE(failure.fix.empty());
            return failure.what();
        }
        return "accepted";
    }

    TemporaryFolder folder;
};

double Power(std::span<const float> samples)
{
    double sum = 0.0;
    for (const float sample : samples)
    {
        sum += static_cast<double>(sample * sample);
    }
    return sum / static_cast<double>(samples.size());
}

std::vector<float> Stereo(std::span<const float> left, std::span<const float> right)
{
    std::vector<float> both;
    for (std::size_t i = 0; i < left.size(); ++i)
    {
        both.push_back(left[i]);
        both.push_back(right[i]);
    }
    return both;
}

TEST_F(AudioFile, SixteenKilohertzMonoIsTakenSampleForSample)
{
    const std::vector<float> samples{0.5F, -0.25F, 0.0F, 0.125F};
    const Audio audio = Read(SoundFile::FloatWav(samples));
    EXPECT_EQ(audio.samples, samples);
    EXPECT_EQ(audio.conversion, "");
    EXPECT_DOUBLE_EQ(audio.seconds, 4.0 / 16000);
}

TEST_F(AudioFile, ChannelsAreAveraged)
{
    const Audio audio = Read(SoundFile::Wav(std::vector<float>{0.5F, 0.0F, -0.5F, -0.25F}, 16000, 2));
    ASSERT_EQ(audio.samples.size(), 2U);
    EXPECT_NEAR(audio.samples[0], 0.25F, 1e-4F);
    EXPECT_NEAR(audio.samples[1], -0.375F, 1e-4F);
    EXPECT_EQ(audio.conversion, "converted from 16 kHz stereo");
}

TEST_F(AudioFile, OtherRatesAreConvertedAndTheToneStaysWhatItIs)
{
    struct Case
    {
        int rate;
        const char* conversion;
    };
    for (const Case& c : {Case{44100, "converted from 44.1 kHz stereo"}, Case{48000, "converted from 48 kHz stereo"},
                          Case{8000, "converted from 8 kHz stereo, which lacks the upper part of speech"}})
    {
        SCOPED_TRACE(c.rate);
        std::vector<float> tone(static_cast<std::size_t>(c.rate));
        for (std::size_t i = 0; i < tone.size(); ++i)
        {
            tone[i] = 0.5F * static_cast<float>(std::sin(2.0 * 3.14159265358979 * 1000.0 * static_cast<double>(i) / c.rate));
        }
        const Audio audio = Read(SoundFile::Wav(Stereo(tone, tone), c.rate, 2));
        EXPECT_EQ(audio.conversion, c.conversion);
        EXPECT_NEAR(static_cast<double>(audio.samples.size()), 16000.0, 2.0);
        EXPECT_NEAR(audio.seconds, 1.0, 1e-3);
        // In the middle, away from the converter's ends: the same power, and 1000 Hz is 16 samples.
        const std::span<const float> middle(audio.samples.data() + 4000, 8000);
        EXPECT_NEAR(Power(middle), 0.125, 0.002);
        for (std::size_t i = 0; i + 16 < middle.size(); ++i)
        {
            ASSERT_NEAR(middle[i], middle[i + 16], 2e-3) << i;
        }
    }
}

TEST_F(AudioFile, NamesMayHoldBlanksAndAnyLetters)
{
    const auto file = File(u8"Jana Nováková 発話.wav");
    SoundFile::Write(file, SoundFile::FloatWav(std::vector<float>{0.5F}));
    EXPECT_EQ(ReadAudio(file).samples.size(), 1U);
}

TEST_F(AudioFile, RefusesWhatIsNoAudioAndSaysWhatItIs)
{
    EXPECT_THAT(Refusal("just some text, which is no sound at all"), HasSubstr("is not a sound file"));
    EXPECT_THAT(Refusal("ID3 and what follows"), HasSubstr("is an MP3 file, which this program does not decode"));
    EXPECT_THAT(Refusal("OggS and what follows"), HasSubstr("is an Ogg file, which this program does not decode"));
    EXPECT_THAT(Refusal(""), HasSubstr("is empty"));
    EXPECT_THAT(Refusal(SoundFile::FloatWav({})), HasSubstr("holds no sound"));
    EXPECT_THAT(Refusal(SoundFile::Wav(std::vector<float>{0.5F}, 44'100, 1)),
                HasSubstr("holds no sound: at 16 kHz nothing is left of 1 sample at 44100 Hz."));
}

TEST_F(AudioFile, RefusesFilesThatAreNotThereOrFolders)
{
    for (const char* name : {"nothing.wav", "."})
    {
        SCOPED_TRACE(name);
        try
        {
            ReadAudio(std::filesystem::path(folder.Path()) / name);
            ADD_FAILURE() << "it was read";
        }
        catch (const CommandFailure& failure)
        {
            EXPECT_EQ(failure.exitCode, ExitCode::BadInput);
        }
    }
}

TEST_F(AudioFile, RefusesAFileThatIsCutAndSaysWhere)
{
    std::string whole = SoundFile::Wav(std::vector<float>(16000, 0.25F));
    whole.resize(whole.size() - 16000); // half of the samples
    EXPECT_THAT(Refusal(whole), HasSubstr("is cut: it ends after 0.50 s, 16000 bytes before its head says"));
}

TEST_F(AudioFile, AStreamedFileWithoutALengthIsWhole)
{
    std::string streamed = SoundFile::Wav(std::vector<float>(1600, 0.25F));
    constexpr std::size_t DataLengthAt = 40;
    std::fill_n(streamed.begin() + DataLengthAt, 4, '\xFF');
    EXPECT_EQ(Read(streamed).samples.size(), 1600U);
}

TEST_F(AudioFile, RefusesSamplesThatAreNoNumbers)
{
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()})
    {
        EXPECT_THAT(Refusal(SoundFile::FloatWav(std::vector<float>{0.1F, bad})), HasSubstr("not numbers"));
    }
}

TEST_F(AudioFile, RefusesSamplesThatTheConversionOfTheRateMakesInfinite)
{
    const std::vector<float> loud(200, std::numeric_limits<float>::max());
    EXPECT_THAT(Refusal(SoundFile::FloatWav(loud, 8'000)), HasSubstr("not numbers (NaN or infinite), or too large"));
}

TEST_F(AudioFile, FlacIsRead)
{
    // 160 samples of 0.25 at 16 kHz, mono.
    constexpr unsigned char Flac[]{
        0x66, 0x4C, 0x61, 0x43, 0x00, 0x00, 0x00, 0x22, 0x10, 0x00, 0x10, 0x00, 0x00, 0x00, 0x0C, 0x00, 0x00, 0x0C, 0x03,
        0xE8, 0x00, 0xF0, 0x00, 0x00, 0x00, 0xA0, 0x9C, 0xFD, 0xBB, 0x35, 0x38, 0x0F, 0x48, 0xC7, 0xFB, 0x64, 0x71, 0x5C,
        0x97, 0xF5, 0x02, 0xB8, 0x03, 0x00, 0x00, 0x12, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xA0, 0x84, 0x00, 0x00, 0x44, 0x20, 0x00, 0x00, 0x00, 0x72, 0x65, 0x66, 0x65,
        0x72, 0x65, 0x6E, 0x63, 0x65, 0x20, 0x6C, 0x69, 0x62, 0x46, 0x4C, 0x41, 0x43, 0x20, 0x31, 0x2E, 0x34, 0x2E, 0x32,
        0x20, 0x32, 0x30, 0x32, 0x32, 0x31, 0x30, 0x32, 0x32, 0x01, 0x00, 0x00, 0x00, 0x18, 0x00, 0x00, 0x00, 0x43, 0x6F,
        0x6D, 0x6D, 0x65, 0x6E, 0x74, 0x3D, 0x50, 0x72, 0x6F, 0x63, 0x65, 0x73, 0x73, 0x65, 0x64, 0x20, 0x62, 0x79, 0x20,
        0x53, 0x6F, 0x58, 0xFF, 0xF8, 0x65, 0x08, 0x00, 0x9F, 0x21, 0x01, 0x00, 0x09, 0xE9, 0x0C};
    const Audio audio = Read({reinterpret_cast<const char*>(Flac), sizeof(Flac)});
    EXPECT_EQ(audio.samples, std::vector<float>(160, 0.25F));
    EXPECT_EQ(audio.conversion, "");
}

TEST_F(AudioFile, SamplesBeyondFullScaleAreCounted)
{
    const Audio audio = Read(SoundFile::FloatWav(std::vector<float>{0.5F, 1.5F, -3.0F, 1.0F}));
    ASSERT_EQ(audio.warnings.size(), 1U);
    EXPECT_THAT(audio.warnings[0], HasSubstr("2 samples lie beyond full scale, up to 3 times"));
    EXPECT_EQ(audio.samples[2], -3.0F) << "as the file has them";
}

TEST_F(AudioFile, ChannelsThatCancelAreSaid)
{
    const std::vector<float> tone = Signals::Sine(300.0, 0.5, 1600);
    std::vector<float> opposite(tone);
    std::ranges::transform(tone, opposite.begin(), std::negate<>());
    const Audio audio = Read(SoundFile::Wav(Stereo(tone, opposite), 16000, 2));
    ASSERT_EQ(audio.warnings.size(), 1U);
    EXPECT_THAT(audio.warnings[0], HasSubstr("the channels cancel each other"));
    EXPECT_TRUE(Read(SoundFile::Wav(Stereo(tone, tone), 16000, 2)).warnings.empty());
    const std::vector<float> silence(tone.size(), 0.0F);
    EXPECT_TRUE(Read(SoundFile::Wav(Stereo(tone, silence), 16000, 2)).warnings.empty()) << "one microphone of two is no fault";
}

TEST_F(AudioFile, AStreamGivesTheSameSamplesPieceByPiece)
{
    const std::vector<float> noise = Signals::Sine(440.0, 0.5, 300'000);
    for (const int rate : {16000, 22050})
    {
        SCOPED_TRACE(rate);
        const Audio whole = Read(SoundFile::Wav(noise, rate));
        AudioStream stream(File(u8"take.wav"));
        std::vector<float> together;
        std::size_t pieces = 0;
        double share = 0.0;
        for (std::vector<float> block; stream.Read(&block); ++pieces)
        {
            EXPECT_LT(block.size(), 70'000U);
            EXPECT_GE(stream.Share(), share);
            share = stream.Share();
            together.insert(together.end(), block.begin(), block.end());
        }
        EXPECT_EQ(together, whole.samples);
        EXPECT_GT(pieces, 3U);
        EXPECT_EQ(share, 1.0);
        EXPECT_EQ(stream.Summary().seconds, whole.seconds);
        EXPECT_NEAR(static_cast<double>(whole.samples.size()), 300'000.0 * 16000 / rate, 2.0);
    }
}

TEST_F(AudioFile, WhatLiesAboveTheBandDoesNotFoldBack)
{
    std::vector<float> tone(48000);
    for (std::size_t i = 0; i < tone.size(); ++i)
    {
        tone[i] = 0.5F * static_cast<float>(std::sin(2.0 * 3.14159265358979 * 11000.0 * static_cast<double>(i) / 48000.0));
    }
    const Audio audio = Read(SoundFile::Wav(tone, 48000));
    EXPECT_LT(Power(std::span(audio.samples).subspan(4000, 8000)), 0.125 * 1e-9);
}

} // namespace AudioFileTests
