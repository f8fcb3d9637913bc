#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

namespace velox::firmware
{

/// The number whose bytes stand from an offset on, the lowest first.
/// @param bytes  hold all of them
template <std::unsigned_integral Unsigned>
Unsigned ReadUnsigned(std::span<const uint8_t> bytes, std::size_t offset)
{
    uint64_t number = 0;
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i)
    {
        number |= uint64_t{bytes[offset + i]} << 8U * i;
    }
    return static_cast<Unsigned>(number);
}

/// Writes a number's bytes, the lowest first, from an offset on.
template <std::unsigned_integral Unsigned>
void WriteUnsigned(Unsigned number, std::size_t offset, std::span<uint8_t> bytes)
{
    for (std::size_t i = 0; i < sizeof(number); ++i)
    {
        bytes[offset + i] = static_cast<uint8_t>(number >> 8U * i);
    }
}

} // namespace velox::firmware
