#include "console/text/Interruption.h"

#include "console/text/CommandFailure.h"

#include <atomic>

namespace velox::console
{

namespace
{

std::atomic<bool> requested{false};

} // namespace

void RequestInterruption()
{
    requested = true;
}

bool InterruptionRequested()
{
    return requested;
}

void ForgetInterruption()
{
    requested = false;
}

void StopIfInterrupted()
{
    if (requested)
    {
        throw CommandFailure(ExitCode::Interrupted, "Interrupted. Nothing was written.");
    }
}

} // namespace velox::console
