#include "firmware/ResultBlock.h"

#include "firmware/LittleEndian.h"

#include <algorithm>

namespace velox::firmware
{

namespace
{

// What faults write.
constexpr std::size_t TruncatedLength = 52;
constexpr uint16_t UnknownKeyword = 2;

} // namespace

ResultBlock::ResultBlock(const DetectorId& detector, const Report& report, Fault fault)
    : size(fault == Fault::TruncatedBlock ? TruncatedLength : ResultLayout::Length)
{
    WriteUnsigned(static_cast<uint32_t>(size), ResultLayout::SizeOffset, bytes);
    std::copy(detector.begin(), detector.end(), bytes.begin() + ResultLayout::PatternTypeOffset);
    if (fault == Fault::ForeignGuid)
    {
        bytes[ResultLayout::PatternTypeOffset] ^= 0xFFU;
    }
    WriteUnsigned(report.keywordStart, ResultLayout::KeywordStartOffset, bytes);
    WriteUnsigned(report.keywordEnd, ResultLayout::KeywordEndOffset, bytes);
    WriteUnsigned(fault == Fault::UnknownKeyword ? UnknownKeyword : ResultLayout::Keyword, ResultLayout::KeywordIdOffset, bytes);
    // The score alone is big-endian.
    bytes[ResultLayout::ScoreOffset] = static_cast<uint8_t>(report.score >> 8U);
    bytes[ResultLayout::ScoreOffset + 1] = static_cast<uint8_t>(report.score & 0xFFU);
}

} // namespace velox::firmware
