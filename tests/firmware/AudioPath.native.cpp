// What happens while the simulator listens: nothing may be allocated.
#include "firmware/DspSimulator.h"
#include "tests/engine/support/CountedAllocations.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"

#include <gmock/gmock.h>

namespace AudioPathFaultsTests
{

using namespace velox::firmware;

using AudioPath = CountedAllocations;

TEST_F(AudioPath, TheCounterCounts)
{
    const int before = allocations;
    const Eigen::MatrixXf matrix = Eigen::MatrixXf::Zero(10, 10);
    EXPECT_EQ(allocations - before, 1);
}

TEST_F(AudioPath, NothingIsAllocatedFromArmingToTheBlock)
{
    for (const velox::engine::PhraseModel& model : {TinyLanguage::Phrase(), TinyLanguage::UserPhrase()})
    {
        SCOPED_TRACE(model.speaker ? "user model" : "predefined model");
        int peaks = 0;
        DspSimulator dsp(HandMadePattern::Detector, {}, [&](const Peak&) { ++peaks; });
        ASSERT_EQ(dsp.SetPattern(HandMadePattern::Make(model, 1)), std::nullopt);
        const std::vector<float> audio = TinyLanguage::SayPhrase();
        ASSERT_TRUE(dsp.Arm());
        const int before = allocations;
        std::span<const float> rest = audio;
        bool fired = false;
        while (!rest.empty())
        {
            std::span<const float> block = rest.first(std::min<std::size_t>(rest.size(), 333));
            rest = rest.subspan(block.size());
            fired = dsp.Hear(&block).has_value() || fired;
        }
        EXPECT_EQ(allocations - before, 0);
        EXPECT_TRUE(fired);
        EXPECT_EQ(peaks, 1);
    }
}

} // namespace AudioPathFaultsTests
