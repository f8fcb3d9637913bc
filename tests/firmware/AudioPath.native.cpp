// What happens while the simulator listens: nothing may be allocated. The matrix library allocates past the operators new, so the
// address sanitizer counts; other builds of this program do not have this test's figure.
#include "firmware/DspSimulator.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"

#include <gmock/gmock.h>

#include <atomic>

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                                         void (*onFree)(const volatile void*)) __attribute__((weak));

namespace
{

using namespace velox::firmware;

std::atomic<int> allocations = 0;

void CountAllocation(const volatile void* /*block*/, std::size_t /*size*/)
{
    ++allocations;
}

void IgnoreFree(const volatile void* /*block*/)
{
}

class AudioPath : public testing::Test
{
protected:
    void SetUp() override
    {
        if (__sanitizer_install_malloc_and_free_hooks == nullptr)
        {
            GTEST_SKIP() << "nobody counts allocations in this build";
        }
        static const int installed = __sanitizer_install_malloc_and_free_hooks(CountAllocation, IgnoreFree);
        ASSERT_NE(installed, 0);
    }
};

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

} // namespace
