#pragma once

#include "RecordingLogger.h"
#include "ScriptedEngine.h"
#include "ScriptedRecording.h"
#include "VeloxWovWrapper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A wrapper and the engine's script, both fresh. The wrapper has not asked for the frame size: it is 150, and the first session
/// has the handle 1. A score above 10 is a detection, a mean quality below 50 too low.
class WrapperTest : public testing::Test
{
protected:
    WrapperTest()
    {
        Fill(parameters.acousticModel, "acoustic model");
        Fill(parameters.znormPopulation, "znorm population");
        Fill(parameters.keyphraseModel, "keyphrase model");
        logger.onLine = [this](const LogLine& line) {
            Happen(line.text);
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

    /// Makes the calls of a recording events, too ("Lock", "Unlock").
    void Watch(ScriptedRecording& recording)
    {
        recording.onCall = [this](const std::string& call) {
            Happen(call);
        };
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
    }

    /// The events since the last time, which are forgotten then.
    std::vector<std::string> TakeEvents()
    {
        return std::exchange(events, {});
    }

    /// The texts of log lines and engine calls, in one order.
    std::vector<std::string> events;

    /// The event, counted from 1, that throws a std::runtime_error.
    std::optional<std::size_t> throwingEvent;

    RecordingLogger logger;
    ScriptedEngine& engine = GetScriptedEngine();
    EnrollmentParameters parameters;
    VELOX_WOV_DETECTION_PARAMETERS detection{2560, 1, 50};
    VeloxWovWrapper wrapper{&parameters, detection, &logger, 3, "memory=160k"};

private:
    static void Fill(uint8_t*& block, std::string_view text)
    {
        block = new uint8_t[text.size()];
        std::copy(text.begin(), text.end(), block);
    }

    void Happen(const std::string& event)
    {
        events.push_back(event);
        if (events.size() == throwingEvent)
        {
            throw std::runtime_error(event);
        }
    }
};
