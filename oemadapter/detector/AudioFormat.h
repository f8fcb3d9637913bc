#pragma once

#include "oemadapter/windows/ComPointer.h"

#include <windows.h>

#include <mfobjects.h>
#include <mmreg.h>

namespace velox::oemadapter
{

/// The one rate and number of channels: what the library takes.
inline constexpr DWORD SamplesPerSecond = 16000;
inline constexpr WORD Channels = 1;

/// The format of recordings that the first generation hands over: 32-bit float, 16 kHz, mono.
/// @return S_OK; what Media Foundation says. `mediaType` is written only on success
HRESULT MakeFloatFormat(ComPointer<IMFMediaType>* mediaType);

} // namespace velox::oemadapter
