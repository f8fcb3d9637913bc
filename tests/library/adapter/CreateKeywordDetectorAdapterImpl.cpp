#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"

#include "tests/library/configuration/Lines.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/CapabilitiesOutputs.h"
#include "tests/support/PrivateAccess.h"

#include <gmock/gmock.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace CreateKeywordDetectorAdapterImplTests
{

using KeywordDetectorAdapterImplementation::AdapterCustomDeleter;
using KeywordDetectorAdapterImplementation::CreateKeywordDetectorAdapterImpl;
using KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl;
using testing::Contains;

static_assert(std::is_same_v<decltype(CreateKeywordDetectorAdapterImpl(nullptr, "", "", DetectorId)),
                             std::unique_ptr<IVeloxKeywordDetectorAdapterImpl, AdapterCustomDeleter>>);

/// An adapter whose destructor will run, unlike one that stays with the factory's deleter.
std::unique_ptr<IVeloxKeywordDetectorAdapterImpl> MakeAdapter(RecordingLogger& logger, const std::string& path)
{
    return std::unique_ptr<IVeloxKeywordDetectorAdapterImpl>(
        CreateKeywordDetectorAdapterImpl(&logger, path, "7.0 beta", DetectorId).release());
}

TEST(CreateKeywordDetectorAdapterImpl, HandsItsArgumentsToTheAdapter)
{
    RecordingLogger logger;
    const auto adapter = MakeAdapter(logger, "missing.xml");
    EXPECT_THAT(logger.lines, Contains(LogFormat(4, 0, "[VeloxKeywordDetectorAdapter] Constructor - Version: 7.0 beta.")));

    auto* made = dynamic_cast<VeloxKeywordDetectorAdapterImpl*>(adapter.get());
    ASSERT_NE(made, nullptr);
    const std::size_t detectorId = PrivateAccess::AdapterFieldOffsets(*made)[4];
    EXPECT_EQ(std::memcmp(reinterpret_cast<const char*>(made) + detectorId, &DetectorId, sizeof(DetectorId)), 0);
}

TEST(CreateKeywordDetectorAdapterImpl, CopiesThePathOfTheConfigurationFile)
{
    RecordingLogger logger;
    std::string path = "a-missing-configuration-file-with-a-long-name.xml";
    const auto adapter = MakeAdapter(logger, path);
    path.assign(path.size(), 'x');

    CapabilitiesOutputs outputs;
    EXPECT_EQ(outputs.Get(*adapter), E_FAIL);
    EXPECT_THAT(logger.lines,
                Contains(ConfigurationLines::NotLoaded("GetLanguagesCount", "a-missing-configuration-file-with-a-long-name.xml",
                                                       "XML_ERROR_FILE_NOT_FOUND")));
}

TEST(CreateKeywordDetectorAdapterImpl, TwoAdaptersAreTwoObjects)
{
    RecordingLogger logger;
    const auto one = MakeAdapter(logger, "missing.xml");
    const auto other = MakeAdapter(logger, "missing.xml");
    EXPECT_NE(one, other);
}

TEST(CreateKeywordDetectorAdapterImpl, PassesOnWhatTheLoggerThrows)
{
    RecordingLogger logger;
    logger.onLine = [](const LogLine& line) {
        if (line.operation == "SetLevel")
        {
            throw std::runtime_error("refused");
        }
    };
    EXPECT_THROW(MakeAdapter(logger, "missing.xml"), std::runtime_error);
}

} // namespace CreateKeywordDetectorAdapterImplTests
