#pragma once

#include "console/audio/Microphone.h"
#include "console/takes/TakeReport.h"
#include "console/text/Progress.h"

#include <functional>
#include <memory>

namespace velox::console
{

/// How a user is asked for takes.
struct TakeRequest
{
    std::size_t count = 3;
    std::string folder{}; ///< where the accepted ones are stored, "take-1.wav"; empty for nowhere
};

/// Where a take is stored. @param number  counted from 1
std::string TakeFile(const TakeRequest& request, std::size_t number);

using MicrophoneOpener = std::function<std::unique_ptr<Microphone>()>;
using TakeJudge = std::function<Take(const std::string& name, Audio)>;

/// Asks for one take after the other. A take ends 0.8 s after the speech in it, or when nobody spoke for six seconds. One that is
/// refused is explained and asked for again, five times at most.
/// @param open   for each try, so that nothing is heard that was said before it
/// @param takes  receives those that were accepted, and at a failure the one that was refused last
/// @throws CommandFailure Refused when a take was not accepted, BadInput when the microphone is gone, WriteFailed, Interrupted
void RecordTakes(const TakeRequest& request, const MicrophoneOpener& open, const TakeJudge& judge, Progress* progress,
                 std::vector<Take>* takes);

} // namespace velox::console
