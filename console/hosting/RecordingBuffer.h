#pragma once

#include "console/hosting/ComPointer.h"

#include <windows.h>

#include <mfobjects.h>

#include <span>

namespace velox::console
{

/// A recording as the library takes it: a Media Foundation buffer of 32-bit float samples, 16 kHz mono.
/// @throws CommandFailure LibraryFailure
ComPointer<IMFMediaBuffer> MakeRecording(std::span<const float> samples);

} // namespace velox::console
