#pragma once

#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/EventSequence.h"
#include "tests/support/Registry.h"

#include <algorithm>
#include <functional>
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
            Happen(line);
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

    /// The operation fails, before any call of the engine, without a threshold, a model or the constraints, and goes on without a
    /// level for the engine's log.
    /// @param name begins the operation's lines: "[VerifyUserKeyword] "
    void ExpectInputsToBeNeeded(const std::string& name, const std::function<HRESULT()>& operation)
    {
        WriteSettingsDword(L"SDKLoggerLevel", 7);
        EXPECT_EQ(operation(), S_OK);
        const LogLine fallback = LogFormat(3, 0, name + "Failed to get SDK logger severity level. Continuing with log level: 3");
        EXPECT_EQ(std::count(events.begin(), events.end(), fallback), 1);
        EXPECT_EQ(std::count(events.begin(), events.end(), R"(VWoVSetAttribute(13, "3"))"), 1);

        const auto expectFailure = [&](const std::string& what) {
            SCOPED_TRACE(what);
            Restart();
            EXPECT_EQ(operation(), E_FAIL);
            EXPECT_EQ(logger.lines.back(), LogWithStatus(1, 0, name + "Failed to get " + what + ".", E_FAIL));
            EXPECT_TRUE(engine.calls.empty());
        };
        configuration.ReplaceInXml("constraints.txt", "missing.txt");
        expectFailure("platform constraints");
        configuration.RemoveFile("kpd_pre_1033.txt");
        expectFailure("detection parameters");
        configuration.RemoveFile("zn_1033.bin");
        expectFailure("enrollment parameters");
    }

    ScriptedEngine& engine = GetScriptedEngine();

private:
    static constexpr std::size_t ModelNameLength = sizeof("kp_1033") - 1;
};
