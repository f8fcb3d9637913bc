#pragma once

#include "FileStream.h"

#include <mfobjects.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

// A user's recordings, as a host gets them to the library: mono 32-bit float samples at 16 kHz in a Media Foundation buffer.

using BufferPointer = std::unique_ptr<IMFMediaBuffer, ComRelease>;

/// A stretch of a sound file, in seconds from its beginning.
struct Stretch
{
    double begin;
    double end;
};

/// The samples of a stretch: channels mixed, brought to 16 kHz. Throws when the file cannot be read or ends before the stretch.
std::vector<float> ReadRecording(const std::filesystem::path& soundFile, Stretch stretch);

/// A buffer that holds the samples. Throws when there is none to be had.
BufferPointer MakeBuffer(const std::vector<float>& samples);

/// A time in a recording as the library counts it: in bytes of 16 kHz float samples.
int32_t BytePosition(double seconds);
