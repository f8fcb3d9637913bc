#pragma once

namespace velox::console
{

/// Asks the running command to stop: Ctrl-C. May be called from any thread.
void RequestInterruption();
/// Whether somebody asked.
bool InterruptionRequested();
/// Forgets the request: it has done what it was for.
void ForgetInterruption();
/// @throws CommandFailure with ExitCode::Interrupted when somebody asked
void StopIfInterrupted();

} // namespace velox::console
