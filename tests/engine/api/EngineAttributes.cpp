#include "engine/api/EngineAttributes.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace EngineAttributesTests
{

using namespace velox::engine;
using testing::HasSubstr;

constexpr uint32_t Default = velox::engine::EngineAttributes::DefaultMaxModelBytes;

TEST(EngineAttributes, ConstraintsAreAListOfNamesAndValues)
{
    const std::vector<std::pair<const char*, uint32_t>> cases{
        {"", Default},
        {"max_model_bytes=1000", 1000},
        {" max_model_bytes = 1000 ; ", 1000},
        {"other=1; max_model_bytes=7", 7},
        {"max_model_bytes=7, other=1", 7},
        {"max_model_bytes=7\r\n", 7},
        {"max_model_bytes", Default},
        {"max_model_bytes=", Default},
        {"max_model_bytes=12k", Default},
        {"max_model_bytes=-1", Default},
        {"max_model_bytes=99999999999", Default},
        {";;,=;", Default},
    };
    for (const auto& [text, expected] : cases)
    {
        SCOPED_TRACE(text);
        velox::engine::EngineAttributes attributes;
        attributes.SetConstraints(text);
        EXPECT_EQ(attributes.maxModelBytes, expected);
    }
}

TEST(EngineAttributes, FormerConstraintsDoNotStay)
{
    velox::engine::EngineAttributes attributes;
    attributes.SetConstraints("max_model_bytes=1000");
    attributes.SetConstraints("");
    EXPECT_EQ(attributes.maxModelBytes, Default);
}

TEST(EngineAttributes, UnknownNamesAreIgnoredAndLogged)
{
    velox::engine::EngineAttributes attributes;
    testing::internal::CaptureStderr();
    attributes.SetConstraints("memory=160k; max_model_bytes=1000");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("constraint ignored: memory=160k"));
    EXPECT_EQ(attributes.maxModelBytes, 1000U);
}

TEST(EngineAttributes, NothingIsLoggedBelowTheLevel)
{
    velox::engine::EngineAttributes attributes;
    ASSERT_EQ(attributes.SetLogLevel("2"), Status::Success);
    testing::internal::CaptureStderr();
    attributes.SetConstraints("memory=160k");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(EngineAttributes, LogLevelsAreDecimalNumbers)
{
    velox::engine::EngineAttributes attributes;
    EXPECT_EQ(attributes.SetLogLevel("-1"), Status::Success);
    EXPECT_EQ(attributes.logLevel, -1);
    for (const char* text : {"", "three", "3x", "0x3", "99999999999"})
    {
        SCOPED_TRACE(text);
        EXPECT_EQ(attributes.SetLogLevel(text), Status::BadValue);
        EXPECT_EQ(attributes.logLevel, -1);
    }
}

TEST(EngineAttributes, AModelThatIsRefusedLeavesNone)
{
    velox::engine::EngineAttributes attributes;
    std::vector<uint8_t> acoustic = WriteAcousticModel(TinyLanguage::Acoustic());
    std::vector<uint8_t> population = WritePopulation(TinyLanguage::Background());
    EXPECT_EQ(attributes.SetAcousticModel(acoustic.data()), Status::Success);
    EXPECT_EQ(attributes.SetPopulation(population.data()), Status::Success);
    EXPECT_NE(attributes.acousticModel, nullptr);
    EXPECT_NE(attributes.population, nullptr);

    EXPECT_EQ(attributes.SetAcousticModel(population.data()), Status::BlobKind);
    EXPECT_EQ(attributes.SetPopulation(acoustic.data()), Status::BlobKind);
    EXPECT_EQ(attributes.acousticModel, nullptr);
    EXPECT_EQ(attributes.population, nullptr);
}

TEST(EngineAttributes, FailuresAreLoggedAtTheirLevelAndSuccessAsInformation)
{
    const auto logged = [](const char* level, Status status) {
        velox::engine::EngineAttributes attributes;
        EXPECT_EQ(attributes.SetLogLevel(level), Status::Success);
        testing::internal::CaptureStderr();
        attributes.LogOutcome(LogLevel::Warning, "take", status);
        return testing::internal::GetCapturedStderr();
    };
    EXPECT_EQ(logged("3", Status::NoSpeech), "VeloxWovSDK: take: 123 NoSpeech. There is no speech in the utterance.\n");
    EXPECT_EQ(logged("2", Status::NoSpeech), "");
    EXPECT_EQ(logged("4", Status::Success), "VeloxWovSDK: take: 0 Success. The call did what it is for.\n");
    EXPECT_EQ(logged("3", Status::Success), "");
}

TEST(EngineAttributes, RefusedModelsAreErrors)
{
    velox::engine::EngineAttributes attributes;
    ASSERT_EQ(attributes.SetLogLevel("1"), Status::Success);
    std::vector<uint8_t> population = WritePopulation(TinyLanguage::Background());
    testing::internal::CaptureStderr();
    EXPECT_EQ(attributes.SetPopulation(population.data()), Status::Success);
    EXPECT_EQ(attributes.SetAcousticModel(population.data()), Status::BlobKind);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "VeloxWovSDK: acoustic model: 109 BlobKind. The model is one of another kind.\n");
}

} // namespace EngineAttributesTests
