#pragma once

#include <windows.h>

#include <mfobjects.h>

#include <cstddef>
#include <cstdint>

/// Media types that still have a reference.
std::size_t LiveMediaTypes();

/// The size that MFInitMediaTypeFromWaveFormatEx was called with; 0 when it was not.
uint32_t WaveFormatSize(IMFMediaType* mediaType);
