#pragma once

#include <windows.h>

#include <mfapi.h>

/// The wave format that a media type was made from. The type must have been made by MFInitMediaTypeFromWaveFormatEx.
WAVEFORMATEX ReadAudioFormat(IMFMediaType* mediaType);
