#include "tests/support/EventSequence.h"

#include "tests/scripted-engine/ScriptedEngine.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace
{

/// The place of an event, counted from 1, from a place on.
std::size_t Find(const Lines& events, const LogLine& event, std::size_t from = 0)
{
    const auto begin = events.begin() + static_cast<std::ptrdiff_t>(from);
    return static_cast<std::size_t>(std::find(begin, events.end(), event) - events.begin()) + 1;
}

} // namespace

void EventSequence::ExpectExceptionsToPass(const Thrower& thrower)
{
    const bool probes = thrower.session == 2;
    const std::size_t probe = Find(thrower.all, "VWoVInitSession()");
    const std::size_t created = probes ? Find(thrower.all, "VWoVInitSession()", probe) : probe;
    // The session is nobody's until the line about it was written.
    const std::size_t opened = Find(thrower.all, Log(4, 1, "[InitializeSession] Exit. Status: 0"));
    const LogLine destroy = "VWoVDestroySession(" + std::to_string(thrower.session) + ")";
    const auto lastDestroy = std::find(thrower.all.rbegin(), thrower.all.rend(), destroy);
    const auto guarded = static_cast<std::size_t>(thrower.all.rend() - lastDestroy) - (thrower.lastDestroyGuarded ? 0 : 1);
    ScriptedEngine& engine = GetScriptedEngine();
    for (std::size_t n = 1; n <= thrower.all.size(); ++n)
    {
        const std::string& event = thrower.all[n - 1].text;
        SCOPED_TRACE(event);
        thrower.prepare();
        ScriptedRecording recording(std::vector<float>(thrower.samples));
        Watch(recording);
        throwingEvent = n;
        if (probes && probe <= n && n < probe + 4)
        {
            EXPECT_EQ(thrower.operation(&recording), E_FAIL);
            EXPECT_EQ(events.back().level, 1U);
            EXPECT_THAT(events.back().text, testing::EndsWith("] Failed to create key-phrase recognition instance."));
        }
        else
        {
            EXPECT_THAT([&] { thrower.operation(&recording); }, testing::ThrowsMessage<std::runtime_error>(event));
        }
        // Nobody unlocks again when Unlock throws.
        EXPECT_EQ(recording.OpenLocks(), event == "Unlock" ? 1 : 0);
        EXPECT_FALSE(recording.unlockedWithoutLock);
        EXPECT_EQ(engine.openSessions.size(), created < n && n <= opened ? 1U : 0U);
        const auto own = std::count(thrower.all.begin(), thrower.all.begin() + static_cast<std::ptrdiff_t>(n), destroy);
        EXPECT_EQ(engine.Destroys(thrower.session), own + (opened < n && n <= guarded ? 1 : 0));

        thrower.prepare();
        ScriptedRecording again(std::vector<float>(thrower.samples));
        Watch(again);
        EXPECT_EQ(thrower.operation(&again), S_OK) << "the same object goes on";
        EXPECT_EQ(events, thrower.all);
    }
}
