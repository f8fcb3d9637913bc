#include "library/configuration/EnrollmentParameters.h"

#include "tests/support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <memory>

namespace EnrollmentParametersFaultsTests
{

TEST(EnrollmentParametersFaults, ReleasesEveryBlockThatIsThere)
{
    constexpr unsigned int Combinations = 16;
    for (unsigned int loaded = 0; loaded < Combinations; ++loaded)
    {
        SCOPED_TRACE(loaded);
        const auto block = [loaded](unsigned int bit) {
            return (loaded & (1U << bit)) != 0 ? new uint8_t[100] : nullptr;
        };
        const std::size_t before = AllocatedBytes();
        auto parameters = std::make_unique<EnrollmentParameters>();
        parameters->acousticModel = block(0);
        parameters->znormPopulation = block(1);
        parameters->keyphraseModel = block(2);
        parameters->reservedBlob = block(3);
        parameters.reset();
        EXPECT_EQ(AllocatedBytes(), before);
    }
}

} // namespace EnrollmentParametersFaultsTests
