#pragma once

#include "oemadapter/windows/ComPointer.h"

#include <windows.h>

#include <mfobjects.h>
#include <mmreg.h>

#include <cstdint>

namespace velox::oemadapter
{

/// A recording of the second generation as the library takes it, as 32-bit float from -1 to 1.
///
/// @param pcm  16-bit PCM, 16 kHz, mono; its samples, cbSize bytes, follow it at once. May be null
/// @return S_OK; E_INVALIDARG for a null recording, another format, or half a sample; E_OUTOFMEMORY; ProcessingFailed when Media
///     Foundation fails otherwise. `recording` is written only on success
HRESULT MakeRecording(const WAVEFORMATEX* pcm, ComPointer<IMFMediaBuffer>* recording);

/// A byte position among 16-bit samples, among the floats that they become. 1 and less, not known, stay as they are; the largest
/// positions saturate.
int32_t FloatPosition(int32_t pcmPosition);

} // namespace velox::oemadapter
