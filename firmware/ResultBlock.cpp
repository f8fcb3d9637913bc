#include "firmware/ResultBlock.h"

#include "firmware/LittleEndian.h"

#include <algorithm>

namespace velox::firmware
{

namespace
{

constexpr std::size_t PatternTypeOffset = 4;
constexpr std::size_t KeywordStartOffset = 28;
constexpr std::size_t KeywordEndOffset = 36;
constexpr std::size_t KeywordIdOffset = 48;
constexpr std::size_t ScoreOffset = 52;

} // namespace

ResultBlock::ResultBlock(const DetectorId& detector, const Report& report, Fault fault)
    : size(fault == Fault::TruncatedBlock ? TruncatedSize : Size)
{
    WriteUnsigned(static_cast<uint32_t>(size), 0, bytes);
    std::copy(detector.begin(), detector.end(), bytes.begin() + PatternTypeOffset);
    if (fault == Fault::ForeignGuid)
    {
        bytes[PatternTypeOffset] ^= 0xFFU;
    }
    WriteUnsigned(report.keywordStart, KeywordStartOffset, bytes);
    WriteUnsigned(report.keywordEnd, KeywordEndOffset, bytes);
    WriteUnsigned(fault == Fault::UnknownKeyword ? UnknownKeyword : Keyword, KeywordIdOffset, bytes);
    // The score alone is big-endian.
    bytes[ScoreOffset] = static_cast<uint8_t>(report.score >> 8U);
    bytes[ScoreOffset + 1] = static_cast<uint8_t>(report.score & 0xFFU);
}

} // namespace velox::firmware
