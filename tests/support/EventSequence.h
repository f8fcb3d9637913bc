#pragma once

#include "tests/support/LogLine.h"
#include "tests/support/ScriptedRecording.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

/// Log lines, engine calls and what else a test reports, in one order.
class EventSequence
{
public:
    /// Keeps an event; throws when it is the throwing one.
    void Happen(const LogLine& event)
    {
        events.push_back(event);
        if (events.size() == throwingEvent)
        {
            throw std::runtime_error(event.text);
        }
    }

    /// Makes the calls of a recording events, too ("Lock", "Unlock").
    void Watch(ScriptedRecording& recording)
    {
        recording.onCall = [this](const std::string& call) {
            Happen(call);
        };
    }

    /// The events since the last time, which are forgotten then.
    Lines TakeEvents()
    {
        return std::exchange(events, {});
    }

    /// An operation in which every event throws in its turn: it happens alone, again and again.
    struct Thrower
    {
        Lines all;                                         ///< the events when none throws
        uint32_t session;                                  ///< 2: after the probe of an adapter's operation, 1: a wrapper's
        bool lastDestroyGuarded;                           ///< the session's guard destroys again when the last destroy throws
        std::size_t samples;                               ///< of the recording
        std::function<void()> prepare;                     ///< begins anew
        std::function<HRESULT(IMFMediaBuffer*)> operation; ///< is S_OK when nothing throws
    };

    /// The exception reaches the caller, but a probe's, which is a failure with its line; the recording is unlocked, the session
    /// destroyed, and the same object goes on.
    void ExpectExceptionsToPass(const Thrower& thrower);

    Lines events;

    /// The event, counted from 1, that throws a std::runtime_error.
    std::optional<std::size_t> throwingEvent;
};
