#pragma once

#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/EventSequence.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/RecordingLogger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

/// The wrapper's own status, beside the engine's.
inline constexpr uint32_t UnexpectedBehaviour = 11;

/// A wrapper and the engine's script, both fresh. The wrapper has not asked for the frame size: it is 150, and the first session
/// has the handle 1. A score above 10 is a detection, a mean quality below 50 too low.
class WrapperTest : public testing::Test, protected EventSequence
{
protected:
    WrapperTest()
    {
        Fill(parameters.acousticModel, "acoustic model");
        Fill(parameters.znormPopulation, "znorm population");
        Fill(parameters.keyphraseModel, "keyphrase model");
        logger.onLine = [this](const LogLine& line) {
            Happen(line);
        };
        Restart();
    }

    ~WrapperTest() override
    {
        engine.Reset();
    }

    /// Has the wrapper use another frame size, and forgets how it came to that; the script is fresh again.
    void UseFrameSize(int32_t samples)
    {
        engine.frameSize = samples;
        ASSERT_EQ(wrapper.Initialize(), S_OK);
        Restart();
    }

    /// Forgets lines, calls, sessions, script and events.
    void Restart()
    {
        logger.Take();
        engine.Reset();
        engine.onCall = [this](const EngineCall& call) {
            Happen(call.text);
        };
        events.clear();
        throwingEvent.reset();
    }

    RecordingLogger logger;
    ScriptedEngine& engine = GetScriptedEngine();
    EnrollmentParameters parameters;
    VELOX_WOV_DETECTION_PARAMETERS detection{2560, 1, 50};
    OpenWovWrapper wrapper{&parameters, detection, &logger, 3, "memory=160k"};

private:
    static void Fill(uint8_t*& block, std::string_view text)
    {
        block = new uint8_t[text.size()];
        std::copy(text.begin(), text.end(), block);
    }
};

/// A wrapper in whose session 1 nothing has happened yet.
class SessionTest : public WrapperTest
{
protected:
    SessionTest()
    {
        Open();
    }

    /// Begins anew, and opens a session without a trace.
    void Open()
    {
        Restart();
        session = 0;
        EXPECT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
        logger.Take();
        engine.Take();
        TakeEvents();
    }

    void UseFrameSize(int32_t samples)
    {
        WrapperTest::UseFrameSize(samples);
        Open();
    }

    /// What the engine was fed, frame by frame.
    std::vector<std::vector<int16_t>> FramesFed() const
    {
        std::vector<std::vector<int16_t>> frames;
        for (const EngineCall& call : engine.calls)
        {
            if (call.function == "VWoVFeedAudioFrame")
            {
                frames.push_back(call.samples);
            }
        }
        return frames;
    }

    uint32_t session = 0;
};
