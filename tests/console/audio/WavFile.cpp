#include "console/audio/WavFile.h"

#include "console/audio/AudioFile.h"
#include "tests/console/support/SoundFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace WavFileTests
{

using testing::ElementsAre;
using velox::console::WavBytes;

TEST(WavFile, IsReadAsItWasWritten)
{
    const TemporaryFolder folder;
    const std::vector<uint8_t> bytes = WavBytes(std::vector{0.0F, 0.5F, -0.25F, 2.0F, -2.0F});
    SoundFile::Write(folder.Path() + "/a.wav", {bytes.begin(), bytes.end()});
    const velox::console::Audio audio = velox::console::ReadAudio(folder.Path() + "/a.wav");
    EXPECT_THAT(audio.samples, ElementsAre(0.0F, 0.5F, -0.25F, 32767.0F / 32768.0F, -1.0F)) << "beyond full scale it is clipped";
    EXPECT_EQ(audio.conversion, "") << "16 kHz mono";
}

TEST(WavFile, HasTheBytesOfTheFormat)
{
    const std::vector<float> samples{0.5F, -0.5F};
    const std::vector<uint8_t> bytes = WavBytes(samples);
    const std::string wav = SoundFile::Wav(std::vector<float>(2, 0.0F));
    ASSERT_EQ(bytes.size(), wav.size());
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 44), wav.substr(0, 44)) << "the same head";
    EXPECT_EQ(std::vector(bytes.begin() + 44, bytes.end()), (std::vector<uint8_t>{0x00, 0x40, 0x00, 0xC0}));
}

} // namespace WavFileTests
