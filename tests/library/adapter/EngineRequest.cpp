#include "library/adapter/EngineRequest.h"

#include "tests/support/EngineOperationTest.h"

#include <gmock/gmock.h>

#include <new>

// The suite is named like the class, which stands outside of this namespace.
namespace Opening
{
namespace
{

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr EngineRequestLines Lines{
    .parametersNotCreated = "[Operation] Failed to create enrollment parameters.",
    .enrollmentParametersFailed = "[Operation] Failed to get enrollment parameters.",
    .detectionParametersFailed = "[Operation] Failed to get detection parameters.",
    .constraintsFailed = "[Operation] Failed to get platform constraints.",
    .logLevelFallbackFormat = "[Operation] Failed to get SDK logger severity level. Continuing with log level: %d",
    .wrapperNotCreated = "[Operation] Failed to create key-phrase recognition instance.",
};

const LogLine LevelTaken = LogFormat(4, 1, "[GetLoggerSeverityLevelFromRegistry] Logger S severity level: 2.");
const LogLine WrapperNotCreated = Log(1, 0, Lines.wrapperNotCreated);

class EngineRequest : public EngineOperationTest
{
protected:
    HRESULT Open(uint16_t languageId = 1033)
    {
        return OpenEngineRequest(&reader, &logger, languageId, Lines, &request);
    }

    /// Opens a request for 1033 and verifies a recording with it.
    bool Verify()
    {
        bool detected = false;
        EXPECT_EQ(Open(), S_OK);
        EXPECT_EQ(request.wrapper->VerifyKeyword(&recording, 0, &detected), S_OK);
        return detected;
    }

    ConfigurationReader reader{configuration.Path(), &logger};
    ScriptedRecording recording{std::vector<float>(100)};
    ::EngineRequest request;
};

TEST_F(EngineRequest, LoadsTheModelsAndCreatesTheWrapper)
{
    EXPECT_EQ(Open(), S_OK);
    EXPECT_NE(request.wrapper, nullptr);
    ASSERT_NE(request.parameters, nullptr);
    EXPECT_EQ(std::string(request.parameters->keyphraseModel, request.parameters->keyphraseModel + 13), "kp_1033 model");
    EXPECT_EQ(std::string(request.parameters->acousticModel, request.parameters->acousticModel + 13), "am_1033 model");
    EXPECT_EQ(std::string(request.parameters->znormPopulation, request.parameters->znormPopulation + 13), "zn_1033 model");
    EXPECT_THAT(events, ElementsAre(LevelTaken.text, "VWoVInitSession()", "VWoVGetIntOutput(1, 5, null, 0)",
                                    "VWoVGetIntOutput(1, 5, buffer, 1)", "VWoVDestroySession(1)"));
    EXPECT_THAT(logger.lines, ElementsAre(LevelTaken));
}

TEST_F(EngineRequest, WrapperWorksWithWhatWasGathered)
{
    engine.laterStep.scores = {0.75F};
    EXPECT_FALSE(Verify());
    EXPECT_THAT(events, Contains(R"(VWoVSetAttribute(19, "memory=160k"))"));
    EXPECT_THAT(events, Contains(R"(VWoVSetAttribute(13, "2"))"));
    EXPECT_THAT(events, Contains(R"(VWoVSetBinAttribute(1, "am_1033"))"));
    EXPECT_THAT(events, Contains(R"(VWoVSetBinAttribute(2, "zn_1033"))"));
    EXPECT_THAT(events, Contains(R"(VWoVSetModel(2, "kp_1033"))"));

    engine.laterStep.scores = {0.76F};
    EXPECT_TRUE(Verify()) << "the language's predefined threshold is 0.75";
    engine.laterStep.vadQuality = 9;
    EXPECT_FALSE(Verify()) << "its quality threshold is 10";
}

TEST_F(EngineRequest, FailuresGiveEFailAndTheCallersLineWithTheStatus)
{
    struct Case
    {
        const char* description;
        void (*damage)(const TestConfiguration& configuration);
        std::vector<LogLine> lines;
    };
    const Case cases[]{
        {"no configuration file",
         [](const TestConfiguration& damaged) { damaged.WriteXml("<keywords"); },
         {LogFormat(2, 1,
                    "[GetEnrollmentParameters] Failed to load configuration file: " + configuration.Path() +
                        ". Status: XML_ERROR_PARSING_ELEMENT."),
          LogWithStatus(1, 0, Lines.enrollmentParametersFailed, E_FAIL)}},
        {"no ZNorm population",
         [](const TestConfiguration& damaged) { damaged.RemoveFile("zn_1033.bin"); },
         {LogFormat(2, 1, "[LoadFile] Failed to load file: zn_1033.bin."),
          LogWithStatus(1, 0, Lines.enrollmentParametersFailed, E_FAIL)}},
        {"no threshold",
         [](const TestConfiguration& damaged) { damaged.RemoveFile("kpd_user_1033.txt"); },
         {Log(2, 1, "[ReadThresholdFile] Failed to open threshold file."),
          Log(2, 1, "[GetDetectionParameters] Failed to read threshold file."),
          LogWithStatus(1, 0, Lines.detectionParametersFailed, E_FAIL)}},
        {"no constraints",
         [](const TestConfiguration& damaged) { damaged.ReplaceInXml("constraints.txt", "missing.txt"); },
         {Log(2, 1, "[GetPlatformConstraints] Failed to open platform constraints file."),
          LogWithStatus(1, 0, Lines.constraintsFailed, E_FAIL)}},
    };
    for (const Case& one : cases)
    {
        SCOPED_TRACE(one.description);
        const TestConfiguration damaged;
        one.damage(damaged);
        std::vector<LogLine> expected = one.lines;
        for (LogLine& line : expected)
        {
            if (const std::size_t path = line.text.find(configuration.Path()); path != std::string::npos)
            {
                line.text.replace(path, configuration.Path().size(), damaged.Path());
            }
        }
        ConfigurationReader damagedReader(damaged.Path(), &logger);
        ::EngineRequest failed;
        EXPECT_EQ(OpenEngineRequest(&damagedReader, &logger, 1033, Lines, &failed), E_FAIL);
        EXPECT_EQ(failed.wrapper, nullptr);
        EXPECT_EQ(logger.Take(), expected);
        EXPECT_THAT(engine.calls, IsEmpty());
    }
}

// Kept: deployments with partial model sets rely on it.
TEST_F(EngineRequest, MissingKeyphraseOrAcousticModelReachesTheEngineAsNull)
{
    configuration.RemoveFile("kp_1033.bin");
    configuration.RemoveFile("am_1033.bin");
    Verify();
    EXPECT_THAT(events, Contains("VWoVSetModel(2, null)"));
    EXPECT_THAT(events, Contains("VWoVSetBinAttribute(1, null)"));
}

TEST_F(EngineRequest, LanguageThatIsNotListedGivesNoModelsAndThresholdsOfZero)
{
    engine.laterStep.scores = {0.001F};
    EXPECT_EQ(Open(1034), S_OK);
    EXPECT_EQ(request.parameters->keyphraseModel, nullptr);
    bool detected = false;
    EXPECT_EQ(request.wrapper->VerifyKeyword(&recording, 0, &detected), S_OK);
    EXPECT_TRUE(detected);
}

TEST_F(EngineRequest, EnginesLogLevelIsTheRegistrysBetweenZeroAndSix)
{
    for (const uint32_t level : {0U, 1U, 5U, 6U})
    {
        SCOPED_TRACE(level);
        Restart();
        WriteSettingsDword(L"SDKLoggerLevel", level);
        Verify();
        EXPECT_THAT(events, Contains("VWoVSetAttribute(13, \"" + std::to_string(level) + "\")"));
        EXPECT_THAT(logger.lines, testing::Not(Contains(LogFormat(3, 0,
                                                                  "[Operation] Failed to get SDK logger severity level. "
                                                                  "Continuing with log level: 3"))));
    }
}

TEST_F(EngineRequest, WithoutAValidLogLevelTheEngineGetsThree)
{
    const LogLine fallback = LogFormat(3, 0, "[Operation] Failed to get SDK logger severity level. Continuing with log level: 3");
    for (const uint32_t level : {7U, 0xFFFFFFFFU})
    {
        SCOPED_TRACE(level);
        Restart();
        WriteSettingsDword(L"SDKLoggerLevel", level);
        Verify();
        EXPECT_THAT(events, Contains(R"(VWoVSetAttribute(13, "3"))"));
        EXPECT_EQ(logger.lines.at(0).level, 3U);
        EXPECT_EQ(logger.lines.at(1), fallback);
    }
    Restart();
    RemoveSettingsKey();
    Verify();
    EXPECT_THAT(events, Contains(R"(VWoVSetAttribute(13, "3"))"));
    EXPECT_EQ(logger.lines.at(0), LogFormat(4, 1, "[GetLoggerSeverityLevelFromRegistry] Failed to open registry. Status: 0x2"));
    EXPECT_EQ(logger.lines.at(1), fallback);
}

TEST_F(EngineRequest, FrameSizeThatCannotBeHadStillGivesAWrapper)
{
    engine.breach = EngineBreach::NoFrameSize;
    EXPECT_EQ(Open(), S_OK);
    EXPECT_NE(request.wrapper, nullptr);
    EXPECT_THAT(logger.lines, Contains(LogWithCode(1, 0, "[Initialization] Getting frame audio size failed", 11)));
}

TEST_F(EngineRequest, StandardExceptionOfTheCreationIsAFailure)
{
    // Of the engine, at each call of the probe.
    for (const char* function : {"VWoVInitSession", "VWoVGetIntOutput", "VWoVDestroySession"})
    {
        SCOPED_TRACE(function);
        Restart();
        engine.onCall = [function](const EngineCall& call) {
            if (call.function == function)
            {
                throw std::bad_alloc();
            }
        };
        EXPECT_EQ(Open(), E_FAIL);
        EXPECT_EQ(request.wrapper, nullptr);
        EXPECT_THAT(logger.lines, ElementsAre(LevelTaken, WrapperNotCreated));
        EXPECT_THAT(engine.openSessions, IsEmpty());
    }
}

TEST_F(EngineRequest, StandardExceptionOfTheLoggerDuringTheCreationIsAFailure)
{
    engine.breach = EngineBreach::NegativeFrameSize;
    logger.onLine = [](const LogLine& line) {
        if (line.text == "[GetAudioFrameSize] Audio frame size is negative value.")
        {
            throw std::runtime_error("refused");
        }
    };
    EXPECT_EQ(Open(), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LevelTaken, WrapperNotCreated));
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST_F(EngineRequest, OtherExceptionOfTheCreationReachesTheCaller)
{
    engine.onCall = [](const EngineCall&) {
        throw 4711;
    };
    EXPECT_THROW(Open(), int);
    EXPECT_EQ(request.wrapper, nullptr);
    EXPECT_THAT(logger.lines, ElementsAre(LevelTaken));
}

TEST_F(EngineRequest, ExceptionBeforeTheCreationReachesTheCaller)
{
    logger.onLine = [](const LogLine&) {
        throw std::runtime_error("refused");
    };
    EXPECT_THROW(Open(), std::runtime_error);
    EXPECT_EQ(request.wrapper, nullptr);
    EXPECT_THAT(engine.calls, IsEmpty());
}

} // namespace
} // namespace Opening
