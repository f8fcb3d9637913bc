#pragma once

#include "oemadapter/windows/ComPointer.h"

#include <windows.h>

#include <objidl.h>

#include <cstdint>
#include <filesystem>
#include <vector>

namespace velox::console
{

// A user's stream, which the system hands to the library with every call; here it lies in a file.

/// A stream on the file, for reading.
/// @throws CommandFailure BadInput
oemadapter::ComPointer<IStream> OpenUserModel(const std::filesystem::path& file);

/// An empty stream in memory: of a user who never enrolled, or for a training, whose outcome is then written whole.
oemadapter::ComPointer<IStream> EmptyStream();

/// All that the stream holds.
std::vector<uint8_t> Content(IStream* stream);

} // namespace velox::console
