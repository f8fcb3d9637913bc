#pragma once

#include "firmware/BlockLayout.h"
#include "firmware/DetectorId.h"
#include "firmware/Fault.h"

#include <array>
#include <cstdint>
#include <span>

namespace velox::firmware
{

/// A detection as the firmware reports it, in its own units.
struct Report
{
    uint64_t keywordStart = 0; ///< ticks of the performance counter
    uint64_t keywordEnd = 0;
    uint16_t score = 0; ///< Q8
};

/// The block that a detection is reported with (docs/firmware-blocks.md).
class ResultBlock
{
public:
    ResultBlock(const DetectorId& detector, const Report& report, Fault fault = Fault::None);

    std::span<const uint8_t> Bytes() const
    {
        return {bytes.data(), size};
    }

private:
    std::array<uint8_t, ResultLayout::Length> bytes{};
    std::size_t size;
};

} // namespace velox::firmware
