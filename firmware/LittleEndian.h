#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace velox::firmware
{

/// The four bytes from an offset on as a number.
inline uint32_t ReadU32(std::span<const uint8_t> bytes, std::size_t offset)
{
    uint32_t number = 0;
    for (std::size_t i = 0; i < sizeof(number); ++i)
    {
        number |= uint32_t{bytes[offset + i]} << 8U * i;
    }
    return number;
}

/// Writes a number's bytes, the lowest first, from an offset on.
template <typename Unsigned>
void WriteUnsigned(Unsigned number, std::size_t offset, std::span<uint8_t> bytes)
{
    for (std::size_t i = 0; i < sizeof(number); ++i)
    {
        bytes[offset + i] = static_cast<uint8_t>(number >> 8U * i);
    }
}

} // namespace velox::firmware
