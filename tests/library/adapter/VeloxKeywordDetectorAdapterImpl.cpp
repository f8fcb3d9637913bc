#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"

#include "tests/library/configuration/Lines.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/Registry.h"

#include <gmock/gmock.h>

#include <cstring>
#include <memory>
#include <stdexcept>

namespace VeloxKeywordDetectorAdapterImplTests
{

using namespace ConfigurationLines;
using testing::ElementsAre;

// The configuration file is not touched before an operation needs it: none of these adapters has one.
std::unique_ptr<VeloxKeywordDetectorAdapterImpl> MakeAdapter(RecordingLogger& logger)
{
    return std::make_unique<VeloxKeywordDetectorAdapterImpl>(&logger, "missing.xml", "1.2.3", DetectorId);
}

TEST(VeloxKeywordDetectorAdapterImpl, HandsTheSettingsToTheLoggerBeforeItsOwnLine)
{
    const std::string ofLevel = "GetLoggerSeverityLevelFromRegistry";
    const std::string ofFile = "GetLogToFileFromReg";
    struct Case
    {
        const char* description;
        void (*prepare)();
        Lines lines;
    };
    for (const Case& row :
         {Case{"both",
               [] {
                   WriteSettingsDword(L"LoggerLevel", 4);
                   WriteSettingsDword(L"LogToFile", 2);
               },
               LevelTaken("L", 4) + LogToFileTaken("2") + SetLevel(4) + SetLogToFile(true)},
          Case{"no key", [] {},
               RegistryNotOpened(ofLevel, "2") + RegistryNotOpened(ofFile, "2") + SetLevel(0) + SetLogToFile(false)},
          Case{"no values", [] { WriteSettingsDword(L"Other", 1); },
               LevelNotRead("L", "2", 0) + LogToFileNotRead("2") + SetLevel(0) + SetLogToFile(false)}})
    {
        SCOPED_TRACE(row.description);
        RemoveSettingsKey();
        row.prepare();
        RecordingLogger logger;
        const auto adapter = MakeAdapter(logger);
        EXPECT_EQ(logger.Take(), row.lines + LogFormat(4, 0, "[VeloxKeywordDetectorAdapter] Constructor - Version: 1.2.3."));
    }
    RemoveSettingsKey();
}

TEST(VeloxKeywordDetectorAdapterImpl, TakesLoggerLevelsFromNoneToFiveAndElseLogsNothing)
{
    RemoveSettingsKey();
    for (const uint32_t level : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
    {
        SCOPED_TRACE(level);
        WriteSettingsDword(L"LoggerLevel", level);
        RecordingLogger logger;
        const auto adapter = MakeAdapter(logger);
        const bool taken = level <= 5;
        EXPECT_EQ(logger.Take(), (taken ? LevelTaken("L", level) : LevelOutOfRange("L", 5, 0)) + LogToFileNotRead("2") +
                                     SetLevel(taken ? level : 0) + SetLogToFile(false) +
                                     LogFormat(4, 0, "[VeloxKeywordDetectorAdapter] Constructor - Version: 1.2.3."));
    }
    RemoveSettingsKey();
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
    EXPECT_EQ(std::memcmp(bytes + 28, &DetectorId, sizeof(DetectorId)), 0);
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

} // namespace VeloxKeywordDetectorAdapterImplTests
