#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"

#include "tests/support/PrivateAccess.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/Registry.h"

#include <gmock/gmock.h>

#include <cstring>
#include <memory>
#include <stdexcept>

namespace
{

using testing::ElementsAre;

constexpr GUID Detector{0xA3A2A1A0, 0xA5A4, 0xA7A6, {0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF}};

class NoSettings
{
public:
    NoSettings()
    {
        RemoveSettingsKey();
    }
    NoSettings(const NoSettings&) = delete;
    NoSettings& operator=(const NoSettings&) = delete;
    ~NoSettings()
    {
        RemoveSettingsKey();
    }
};

// The configuration file is not touched before an operation needs it: none of these adapters has one.
std::unique_ptr<VeloxKeywordDetectorAdapterImpl> MakeAdapter(RecordingLogger& logger)
{
    return std::make_unique<VeloxKeywordDetectorAdapterImpl>(&logger, "missing.xml", "1.2.3", Detector);
}

TEST(VeloxKeywordDetectorAdapterImpl, HandsTheSettingsToTheLoggerBeforeItsOwnLine)
{
    const NoSettings before;
    WriteSettingsDword(L"LoggerLevel", 4);
    WriteSettingsDword(L"LogToFile", 2);
    RecordingLogger logger;
    const auto adapter = MakeAdapter(logger);
    EXPECT_THAT(logger.Take(),
                ElementsAre(LogFormat(4, 1, "[GetLoggerSeverityLevelFromRegistry] Logger L severity level: 4."),
                            LogFormat(4, 1, "[GetLogToFileFromReg] Log to file value: 2."), SetLevel(4), SetLogToFile(true),
                            LogFormat(4, 0, "[VeloxKeywordDetectorAdapter] Constructor - Version: 1.2.3.")));
}

TEST(VeloxKeywordDetectorAdapterImpl, WithoutSettingsLogsNothingAndToNoFile)
{
    const NoSettings before;
    RecordingLogger logger;
    const auto adapter = MakeAdapter(logger);
    EXPECT_THAT(logger.Take(),
                ElementsAre(LogFormat(4, 1, "[GetLoggerSeverityLevelFromRegistry] Failed to open registry. Status: 0x2"),
                            LogFormat(4, 1, "[GetLogToFileFromReg] Failed to open registry. Status: 0x2"), SetLevel(0),
                            SetLogToFile(false), LogFormat(4, 0, "[VeloxKeywordDetectorAdapter] Constructor - Version: 1.2.3.")));
}

TEST(VeloxKeywordDetectorAdapterImpl, WithoutTheValuesLogsNothingAndToNoFile)
{
    const NoSettings before;
    WriteSettingsDword(L"Other", 1);
    RecordingLogger logger;
    const auto adapter = MakeAdapter(logger);
    EXPECT_THAT(logger.Take(),
                ElementsAre(LogFormat(4, 1,
                                      "[GetLoggerSeverityLevelFromRegistry] Failed to query registry key L value with status: "
                                      "0x2.Setting logger level to: 0"),
                            LogFormat(4, 1, "[GetLogToFileFromReg] Failed to query registry key value with status: 0x2."),
                            SetLevel(0), SetLogToFile(false),
                            LogFormat(4, 0, "[VeloxKeywordDetectorAdapter] Constructor - Version: 1.2.3.")));
}

TEST(VeloxKeywordDetectorAdapterImpl, TakesLoggerLevelsFromNoneToFive)
{
    const NoSettings before;
    for (const uint32_t level : {0U, 1U, 2U, 3U, 4U, 5U})
    {
        SCOPED_TRACE(level);
        WriteSettingsDword(L"LoggerLevel", level);
        RecordingLogger logger;
        const auto adapter = MakeAdapter(logger);
        EXPECT_THAT(logger.lines, testing::Contains(SetLevel(level)));
    }
}

TEST(VeloxKeywordDetectorAdapterImpl, ALoggerLevelOutOfRangeLogsNothing)
{
    const NoSettings before;
    for (const uint32_t level : {6U, 7U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
    {
        SCOPED_TRACE(level);
        WriteSettingsDword(L"LoggerLevel", level);
        RecordingLogger logger;
        const auto adapter = MakeAdapter(logger);
        EXPECT_THAT(logger.Take(),
                    ElementsAre(LogFormat(3, 1,
                                          "[GetLoggerSeverityLevelFromRegistry] Logger L level for key out of range [0, "
                                          "5].Actual value: 0. Using default level: NO_LOGS."),
                                LogFormat(4, 1, "[GetLogToFileFromReg] Failed to query registry key value with status: 0x2."),
                                SetLevel(0), SetLogToFile(false),
                                LogFormat(4, 0, "[VeloxKeywordDetectorAdapter] Constructor - Version: 1.2.3.")));
    }
}

TEST(VeloxKeywordDetectorAdapterImpl, BeginsWithNothingArmed)
{
    RecordingLogger logger;
    const auto adapter = MakeAdapter(logger);
    EXPECT_FALSE(PrivateAccess::UserModelArmed(*adapter));
    EXPECT_EQ(PrivateAccess::ArmedLanguageId(*adapter), 0);
}

TEST(VeloxKeywordDetectorAdapterImpl, KeepsTheOrderOfItsFields)
{
    RecordingLogger logger;
    const auto adapter = MakeAdapter(logger);
    EXPECT_THAT(PrivateAccess::AdapterFieldOffsets(*adapter), ElementsAre(8, 16, 24, 26, 28));

    const auto* bytes = reinterpret_cast<const char*>(adapter.get());
    IVeloxKeywordDetectorLogger* const borrowed = &logger;
    EXPECT_EQ(std::memcmp(bytes + 8, &borrowed, sizeof(borrowed)), 0);
    EXPECT_EQ(std::memcmp(bytes + 28, &Detector, sizeof(Detector)), 0);
}

TEST(VeloxKeywordDetectorAdapterImpl, DestructionThroughTheInterfaceWritesOneLineAndNothingAfterIt)
{
    RecordingLogger logger;
    KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl* adapter = MakeAdapter(logger).release();
    logger.Take();
    delete adapter;
    EXPECT_THAT(logger.lines, ElementsAre(Log(4, 0, "[VeloxKeywordDetectorAdapter] Destructor.")));
}

TEST(VeloxKeywordDetectorAdapterImpl, DestructionOutlivesALoggerThatThrows)
{
    RecordingLogger logger;
    KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl* adapter = MakeAdapter(logger).release();
    logger.Take();
    logger.onLine = [](const LogLine&) {
        throw std::runtime_error("refused");
    };
    delete adapter;
    EXPECT_THAT(logger.lines, testing::IsEmpty());
}

#ifndef _MSC_VER
/// Position in the virtual table, as g++ and clang keep it in a pointer to a virtual operation.
template <typename Operation>
std::size_t Slot(Operation operation)
{
    std::size_t offset = 0;
    std::memcpy(&offset, &operation, sizeof(offset));
    return (offset - 1) / sizeof(void*);
}

// These compilers give the destructor the first two entries of the table, Visual Studio one.
TEST(VeloxKeywordDetectorAdapterImpl, KeepsTheOrderOfTheOperations)
{
    using Interface = KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl;
    EXPECT_EQ(Slot(&Interface::GetCapabilities), 2U);
    EXPECT_EQ(Slot(&Interface::VerifyUserKeyword), 3U);
    EXPECT_EQ(Slot(&Interface::ComputeAndAddUserModelData), 4U);
    EXPECT_EQ(Slot(&Interface::BuildArmingPatternData), 5U);
    EXPECT_EQ(Slot(&Interface::ParseDetectionResultData), 6U);
}

TEST(VeloxKeywordDetectorAdapterImpl, KeepsTheOrderOfTheLoggersOperations)
{
    EXPECT_EQ(Slot(&IVeloxKeywordDetectorLogger::Log), 2U);
    EXPECT_EQ(Slot(&IVeloxKeywordDetectorLogger::LogWithStatus), 3U);
    EXPECT_EQ(Slot(&IVeloxKeywordDetectorLogger::LogWithCode), 4U);
    EXPECT_EQ(Slot(&IVeloxKeywordDetectorLogger::LogFormat), 5U);
    EXPECT_EQ(Slot(&IVeloxKeywordDetectorLogger::SetLevel), 6U);
    EXPECT_EQ(Slot(&IVeloxKeywordDetectorLogger::SetLogToFile), 7U);
}
#endif

} // namespace
