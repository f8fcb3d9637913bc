#pragma once

#include <windows.h>

#include <objidl.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

using Bytes = std::vector<uint8_t>;

struct ComRelease
{
    template <class Interface>
    void operator()(Interface* object) const
    {
        object->Release();
    }
};

using StreamPointer = std::unique_ptr<IStream, ComRelease>;

// A user model's place: the system hands the adapter a stream for each user; here it lies in a file.

/// Opens the file as a stream for reading. Throws when that fails.
StreamPointer OpenStream(const std::filesystem::path& path);

/// Makes the file anew, or empties it, and opens it as a stream for writing. Throws when that fails.
StreamPointer CreateStream(const std::filesystem::path& path);

/// The file's content. Throws when it cannot be read.
Bytes ReadFileBytes(const std::filesystem::path& path);
