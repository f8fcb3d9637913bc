#pragma once

#include "tests/support/ScriptedRecording.h"

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// Log lines, engine calls and what else a test reports, in one order.
class EventSequence
{
public:
    /// Keeps an event; throws when it is the throwing one.
    void Happen(const std::string& event)
    {
        events.push_back(event);
        if (events.size() == throwingEvent)
        {
            throw std::runtime_error(event);
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
    std::vector<std::string> TakeEvents()
    {
        return std::exchange(events, {});
    }

    std::vector<std::string> events;

    /// The event, counted from 1, that throws a std::runtime_error.
    std::optional<std::size_t> throwingEvent;
};
