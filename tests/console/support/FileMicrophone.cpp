#include "tests/console/support/FileMicrophone.h"

#include "console/text/CommandFailure.h"

#include <algorithm>
#include <utility>

using namespace velox::console;

std::vector<float> FileMicrophone::Read()
{
    if (!std::exchange(started, true))
    {
        return {}; // no device gives sound at once
    }
    if (before)
    {
        before(played);
    }
    if (played == sound.size())
    {
        throw CommandFailure(ExitCode::BadInput, "The microphone Desk gives no sound any more.", "Is it plugged in?");
    }
    const auto begin = sound.begin() + static_cast<std::ptrdiff_t>(played);
    const std::size_t length = std::min(piece, sound.size() - played);
    played += length;
    return {begin, begin + static_cast<std::ptrdiff_t>(length)};
}
