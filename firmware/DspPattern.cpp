#include "firmware/DspPattern.h"

#include "engine/models/ScoreScale.h"
#include "firmware/LittleEndian.h"

#include <algorithm>

namespace velox::firmware
{

namespace
{

using Refused = std::optional<PatternRefusal>;

constexpr std::size_t PatternTypeOffset = 4;
constexpr std::size_t SignatureOffset = 20;
constexpr std::size_t ThresholdOffset = 24;
constexpr std::size_t LimitOffset = 28;
constexpr std::size_t Reserved1Offset = 32;
constexpr std::size_t Reserved2Offset = 36;
constexpr std::size_t ModelSizeOffset = 40;

Refused CheckLength(std::span<const uint8_t> block)
{
    if (block.size() < DspPattern::HeadSize)
    {
        return PatternRefusal::TooShort;
    }
    const uint32_t size = ReadU32(block, 0);
    if (size < DspPattern::HeadSize)
    {
        return PatternRefusal::TooShort;
    }
    if (block.size() < size)
    {
        return PatternRefusal::Cut;
    }
    return block.size() > size ? Refused(PatternRefusal::TrailingBytes) : std::nullopt;
}

/// @param threshold  the bits of a signed number
Refused CheckThreshold(uint32_t threshold)
{
    constexpr auto Highest = static_cast<int32_t>(engine::ScoreScale::Most) * 256;
    const auto number = static_cast<int32_t>(threshold);
    if (number < 0)
    {
        return PatternRefusal::ThresholdBelowScale;
    }
    return number > Highest ? Refused(PatternRefusal::ThresholdAboveScale) : std::nullopt;
}

Refused CheckHead(std::span<const uint8_t> block, const DetectorId& detector)
{
    if (!std::equal(detector.begin(), detector.end(), block.begin() + PatternTypeOffset))
    {
        return PatternRefusal::ForeignDetector;
    }
    if (ReadU32(block, SignatureOffset) != DspPattern::Signature)
    {
        return PatternRefusal::Signature;
    }
    if (const Refused refused = CheckThreshold(ReadU32(block, ThresholdOffset)))
    {
        return refused;
    }
    if (ReadU32(block, LimitOffset) != DspPattern::Limit)
    {
        return PatternRefusal::Limit;
    }
    if (ReadU32(block, Reserved1Offset) != 0)
    {
        return PatternRefusal::Reserved1;
    }
    if (ReadU32(block, Reserved2Offset) != 0)
    {
        return PatternRefusal::Reserved2;
    }
    const bool fits = ReadU32(block, ModelSizeOffset) == block.size() - DspPattern::HeadSize;
    return fits ? std::nullopt : Refused(PatternRefusal::ModelSize);
}

Refused ReadModel(std::span<const uint8_t> bytes, engine::PhraseModel* model)
{
    if (bytes.size() < engine::BlobHeader::Size)
    {
        return PatternRefusal::ModelTooShort;
    }
    if (!engine::IsBlob(bytes.data(), engine::BlobKind::Firmware))
    {
        return PatternRefusal::ModelKind;
    }
    // The reader knows a model's length only from its header.
    if (engine::BlobLength(bytes.data()) != bytes.size())
    {
        return PatternRefusal::ModelLength;
    }
    switch (engine::ReadPhraseModel(bytes.data(), model))
    {
    case engine::Status::Success:
        return std::nullopt;
    case engine::Status::BlobVersion:
        return PatternRefusal::ModelVersion;
    case engine::Status::BlobChecksum:
        return PatternRefusal::ModelChecksum;
    default:
        return PatternRefusal::ModelMalformed;
    }
}

} // namespace

std::optional<PatternRefusal> ReadPattern(std::span<const uint8_t> block, const DetectorId& detector, DspPattern* pattern)
{
    Refused refused = CheckLength(block);
    if (!refused)
    {
        refused = CheckHead(block, detector);
    }
    if (!refused)
    {
        refused = ReadModel(block.subspan(DspPattern::HeadSize), &pattern->model);
    }
    if (!refused)
    {
        pattern->threshold = ReadU32(block, ThresholdOffset);
    }
    return refused;
}

} // namespace velox::firmware
