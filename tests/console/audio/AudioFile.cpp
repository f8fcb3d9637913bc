#include "console/audio/AudioFile.h"

#include "console/text/CommandFailure.h"
#include "tests/console/support/SoundFile.h"
#include "tests/engine/support/Signals.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace velox::console;
using testing::HasSubstr;

namespace
{

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
    EXPECT_THAT(Refusal(""), HasSubstr("is empty"));
    EXPECT_THAT(Refusal(SoundFile::FloatWav({})), HasSubstr("holds no sound"));
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

} // namespace
