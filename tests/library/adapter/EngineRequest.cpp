#include "tests/library/adapter/EngineRequest.h"

#include "tests/support/EngineOperationTest.h"

#include <gmock/gmock.h>

#include <new>

namespace EngineRequestTests
{

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using namespace ConfigurationLines;
using namespace Requesting;
using RequestLines::NotGathered;

const LogLine Taken = LevelTaken("S", 2);

class EngineRequest : public EngineOperationTest
{
protected:
    HRESULT Open(uint16_t languageId = 1033)
    {
        return OpenEngineRequest(&reader, &logger, languageId, Texts, &request);
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
    EXPECT_EQ(events, RequestLines::Gathered);
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
        Lines lines;
    };
    // From the last thing that is read to the first.
    for (const Case& row : {Case{"no constraints", [](auto& damaged) { damaged.ReplaceInXml("constraints.txt", "missing.txt"); },
                                 ConstraintsNotOpened + NotGathered(Operation, "platform constraints")},
                            Case{"no threshold", [](auto& damaged) { damaged.RemoveFile("kpd_user_1033.txt"); },
                                 ThresholdNotOpened + ThresholdNotRead + NotGathered(Operation, "detection parameters")},
                            Case{"no ZNorm population", [](auto& damaged) { damaged.RemoveFile("zn_1033.bin"); },
                                 FileNotOpened("zn_1033.bin") + NotGathered(Operation, "enrollment parameters")},
                            Case{"no configuration file", [](auto& damaged) { damaged.WriteXml("<keywords"); },
                                 NotLoaded("GetEnrollmentParameters", configuration.Path(), "XML_ERROR_PARSING_ELEMENT") +
                                     NotGathered(Operation, "enrollment parameters")}})
    {
        SCOPED_TRACE(row.description);
        row.damage(configuration);
        EXPECT_EQ(Open(), E_FAIL);
        EXPECT_EQ(request.wrapper, nullptr);
        EXPECT_EQ(TakeEvents(), row.lines);
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

TEST_F(EngineRequest, EnginesLogLevelIsTheRegistrysBetweenZeroAndSixAndElseThree)
{
    for (const uint32_t level : {0U, 1U, 5U, 6U, 7U, 0xFFFFFFFFU})
    {
        SCOPED_TRACE(level);
        Restart();
        WriteSettingsDword(L"SDKLoggerLevel", level);
        Verify();
        EXPECT_THAT(events, Contains("VWoVSetAttribute(13, \"" + std::to_string(level <= 6 ? level : 3) + "\")"));
        EXPECT_THAT(events, Contains(Fallback).Times(level <= 6 ? 0 : 1));
    }
    Restart();
    RemoveSettingsKey();
    Verify();
    EXPECT_THAT(events, Contains(R"(VWoVSetAttribute(13, "3"))"));
    EXPECT_EQ(events.at(0), RegistryNotOpened("GetLoggerSeverityLevelFromRegistry", "2"));
    EXPECT_EQ(events.at(1), Fallback);
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
        EXPECT_THAT(logger.lines, ElementsAre(Taken, WrapperNotCreated));
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
    EXPECT_THAT(logger.lines, ElementsAre(Taken, WrapperNotCreated));
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST_F(EngineRequest, OtherExceptionOfTheCreationReachesTheCaller)
{
    engine.onCall = [](const EngineCall&) {
        throw 4711;
    };
    EXPECT_THROW(Open(), int);
    EXPECT_EQ(request.wrapper, nullptr);
    EXPECT_THAT(logger.lines, ElementsAre(Taken));
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

} // namespace EngineRequestTests
