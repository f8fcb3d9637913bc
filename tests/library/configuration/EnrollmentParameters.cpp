#include "library/configuration/EnrollmentParameters.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace EnrollmentParametersTests
{

static_assert(std::has_virtual_destructor_v<EnrollmentParameters>);
static_assert(!std::is_copy_constructible_v<EnrollmentParameters> && !std::is_copy_assignable_v<EnrollmentParameters>);

TEST(EnrollmentParameters, BeginsEmpty)
{
    const EnrollmentParameters parameters;
    EXPECT_EQ(parameters.acousticModel, nullptr);
    EXPECT_EQ(parameters.znormPopulation, nullptr);
    EXPECT_EQ(parameters.keyphraseModel, nullptr);
    EXPECT_EQ(parameters.reservedBlob, nullptr);
}

TEST(EnrollmentParameters, KeepsTheOrderOfItsMembers)
{
    const EnrollmentParameters parameters;
    const auto offset = [&](uint8_t* const& member) {
        return reinterpret_cast<const char*>(&member) - reinterpret_cast<const char*>(&parameters);
    };
    EXPECT_EQ(offset(parameters.acousticModel), 8);
    EXPECT_EQ(offset(parameters.znormPopulation), 16);
    EXPECT_EQ(offset(parameters.keyphraseModel), 24);
    EXPECT_EQ(offset(parameters.reservedBlob), 32);
    EXPECT_EQ(sizeof(parameters), 40U);
}

} // namespace EnrollmentParametersTests
