#include "library/modelstream/UserModelStream.h"
#include "tests/support/ArmingTest.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/RealStream.h"

namespace BuildArmingPatternDataOnRealTests
{

class BuildArmingPatternDataOnRealStreams : public ArmingTest, public testing::WithParamInterface<RealStreamKind>
{
protected:
    /// The model that the stream's content arms 1033 with.
    std::string ArmedModel(std::string_view content)
    {
        const RealStream stream = GetParam().Create(content);
        const ArmingOutcome outcome = Arm(stream.get(), 1033);
        EXPECT_EQ(outcome.result, S_OK);
        return outcome.Model();
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, BuildArmingPatternDataOnRealStreams, testing::ValuesIn(RealStreamKinds));

TEST_P(BuildArmingPatternDataOnRealStreams, EmptyStreamArmsThePredefinedModel)
{
    EXPECT_EQ(ArmedModel(""), "firmware 1033");
    EXPECT_FALSE(PrivateAccess::UserModelArmed(adapter));
}

TEST_P(BuildArmingPatternDataOnRealStreams, UserModelIsArmed)
{
    EXPECT_EQ(ArmedModel("VWOV user"), "VWOV user");
    EXPECT_TRUE(PrivateAccess::UserModelArmed(adapter));
}

TEST_P(BuildArmingPatternDataOnRealStreams, WrittenModelIsArmed)
{
    const RealStream stream = GetParam().Create("a former content that is longer than the model");
    const std::string model = "VWOV written";
    // Its result is the commit's, which Wine's shell stream does not know.
    ::WriteModelToIStream(stream.get(), reinterpret_cast<const uint8_t*>(model.data()), static_cast<uint32_t>(model.size()),
                          &logger);
    const ArmingOutcome outcome = Arm(stream.get(), 1033);
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_EQ(outcome.Model(), model);
    EXPECT_TRUE(PrivateAccess::UserModelArmed(adapter));
}

} // namespace BuildArmingPatternDataOnRealTests
