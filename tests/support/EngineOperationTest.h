#pragma once

#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/EventSequence.h"
#include "tests/support/Registry.h"

#include <string>

/// An adapter on a configuration of its own, and the engine's script. The engine's log level is 2. A model block begins with the
/// name of its file, and so the engine's calls show "kp_1033", "am_1033" and "zn_1033".
class EngineOperationTest : public AdapterTest, protected EventSequence
{
protected:
    EngineOperationTest()
    {
        for (const std::string id : {"1033", "1040"})
        {
            for (const std::string& name : {"kp_" + id, "am_" + id, "zn_" + id})
            {
                configuration.WriteFile(name + ".bin", name + " model");
            }
        }
        RemoveSettingsKey();
        WriteSettingsDword(L"SDKLoggerLevel", 2);
        logger.onLine = [this](const LogLine& line) {
            Happen(line.text);
        };
        Restart();
    }

    ~EngineOperationTest() override
    {
        logger.onLine = nullptr; // The adapter's last line comes when the events are gone.
        engine.Reset();
        RemoveSettingsKey();
    }

    /// Forgets lines, calls, sessions, script and events.
    void Restart()
    {
        logger.Take();
        engine.Reset();
        engine.blobTextLength = ModelNameLength;
        engine.onCall = [this](const EngineCall& call) {
            Happen(call.text);
        };
        events.clear();
        throwingEvent.reset();
    }

    ScriptedEngine& engine = GetScriptedEngine();

private:
    static constexpr std::size_t ModelNameLength = sizeof("kp_1033") - 1;
};
