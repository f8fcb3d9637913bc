#include "evaluation/AudioFile.h"

#include "tests/engine/support/Signals.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <stdexcept>

namespace AudioFileTests
{

using namespace velox::evaluation;

void Write(const std::string& path, const std::vector<float>& interleaved, int rate, int channels)
{
    SF_INFO format{};
    format.samplerate = rate;
    format.channels = channels;
    format.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    SNDFILE* const file = sf_open(path.c_str(), SFM_WRITE, &format);
    ASSERT_NE(file, nullptr);
    sf_write_float(file, interleaved.data(), static_cast<sf_count_t>(interleaved.size()));
    sf_close(file);
}

TEST(AudioFile, WhatIsWrittenIsReadBackToWithinTwoSteps)
{
    const TemporaryFolder folder;
    const std::vector<float> samples = Signals::Noise(0.9, 1000, 1);
    WriteAudioFile(folder.Path() + "/a.wav", samples);
    const std::vector<float> read = ReadAudioFile(folder.Path() + "/a.wav");
    ASSERT_EQ(read.size(), samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        ASSERT_NEAR(read[i], samples[i], 2.0F / 32768.0F);
    }
}

TEST(AudioFile, ChannelsAreAveraged)
{
    const TemporaryFolder folder;
    Write(folder.Path() + "/a.wav", {0.5F, -0.5F, 0.25F, 0.75F}, 16'000, 2);
    EXPECT_EQ(ReadAudioFile(folder.Path() + "/a.wav"), (std::vector<float>{0.0F, 0.5F}));
}

TEST(AudioFile, OtherRatesKeepTheirLength)
{
    const TemporaryFolder folder;
    for (const int rate : {8'000, 22'050, 44'100, 64'000})
    {
        Write(folder.Path() + "/a.wav", Signals::Sine(440.0, 0.5, static_cast<std::size_t>(rate)), rate, 1);
        EXPECT_NEAR(static_cast<double>(ReadAudioFile(folder.Path() + "/a.wav").size()), 16'000.0, 20.0) << rate;
    }
}

TEST(AudioFile, WhatCannotBeReadOrWrittenIsNamed)
{
    const TemporaryFolder folder;
    WriteWholeFile(folder.Path() + "/text.wav", "no audio");
    for (const std::string name : {"/text.wav", "/none.wav"})
    {
        EXPECT_THROW(ReadAudioFile(folder.Path() + name), std::runtime_error) << name;
    }
    EXPECT_THROW(WriteAudioFile(folder.Path() + "/none/a.wav", {0.0F}), std::runtime_error);
}

} // namespace AudioFileTests
