#pragma once

#include "engine/models/Blob.h"
#include "firmware/LittleEndian.h"

#include <cstdint>
#include <span>
#include <vector>

// Models as an input describes them: by changes to a good one. So a small input reaches deep into a large model, and every
// mutation of it means something. What no mutation would hit, lengths and checksums, is made right again behind it.

using Bytes = std::vector<uint8_t>;

/// Changes bytes from an offset on: each change is a place (two bytes, the lower one first) and the byte that goes there.
inline void Edit(std::span<const uint8_t> changes, std::span<uint8_t> bytes)
{
    for (; changes.size() >= 3; changes = changes.subspan(3))
    {
        bytes[velox::firmware::ReadUnsigned<uint16_t>(changes, 0) % bytes.size()] = changes[2];
    }
}

/// Makes a model's length and checksum right.
/// @param blob  the model and nothing else, its header at least
inline void Seal(std::span<uint8_t> blob)
{
    constexpr std::size_t LengthOffset = 8;
    constexpr std::size_t ChecksumOffset = 12;
    velox::firmware::WriteUnsigned(static_cast<uint32_t>(blob.size()), LengthOffset, blob);
    velox::firmware::WriteUnsigned(velox::engine::Crc32(blob.subspan(velox::engine::BlobHeader::Size)), ChecksumOffset, blob);
}
