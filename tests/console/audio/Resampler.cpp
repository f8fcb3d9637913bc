#include "console/audio/Resampler.h"

#include "console/text/CommandFailure.h"
#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace ResamplerTests
{

using velox::console::CommandFailure;
using velox::console::ConversionText;
using velox::console::Resampler;

std::vector<float> Converted(const std::vector<float>& sound, int rate, std::size_t piece)
{
    Resampler resampler("The desk", rate);
    std::vector<float> block;
    for (std::span<const float> left = sound; !left.empty(); left = left.subspan(std::min(piece, left.size())))
    {
        resampler.Convert(left.first(std::min(piece, left.size())), false, &block);
    }
    resampler.Convert({}, true, &block);
    return block;
}

TEST(Resampler, PiecesOfAnyLengthGiveTheSame)
{
    const std::vector<float> tone = Signals::Sine(440.0, 0.5, 44100);
    const std::vector<float> whole = Converted(tone, 44100, tone.size());
    EXPECT_NEAR(static_cast<double>(whole.size()), 16000.0, 50.0) << "the last milliseconds may stay behind";
    for (const std::size_t piece : {7U, 441U, 5000U})
    {
        const std::vector<float> pieced = Converted(tone, 44100, piece);
        ASSERT_EQ(pieced.size(), whole.size()) << piece;
        EXPECT_TRUE(std::ranges::equal(pieced, whole, [](float a, float b) { return std::abs(a - b) < 1e-5F; })) << piece;
    }
}

TEST(Resampler, LeavesSixteenKilohertzAsItIs)
{
    const std::vector<float> sound{0.1F, 0.2F, 0.3F};
    EXPECT_EQ(Converted(sound, 16000, 2), sound);
}

TEST(Resampler, ARateThatCannotBeConvertedIsRefused)
{
    Resampler resampler("The desk", 1); // by more than 256 times
    std::vector<float> block;
    EXPECT_THROW(resampler.Convert(std::vector<float>(10), false, &block), CommandFailure);
}

TEST(Resampler, TellsWhatIsConverted)
{
    EXPECT_EQ(ConversionText(16000, 1), "");
    EXPECT_EQ(ConversionText(44100, 1), "converted from 44.1 kHz mono");
    EXPECT_EQ(ConversionText(48000, 2), "converted from 48 kHz stereo");
    EXPECT_EQ(ConversionText(8000, 4), "converted from 8 kHz 4 channels, which lacks the upper part of speech");
}

} // namespace ResamplerTests
