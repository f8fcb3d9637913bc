#pragma once

#include <array>
#include <cstdint>

namespace velox::firmware
{

/// A detector's GUID as it lies in memory and in both blocks: three fields little-endian, then eight bytes in order.
using DetectorId = std::array<uint8_t, 16>;

} // namespace velox::firmware
