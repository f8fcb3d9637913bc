#include "firmware/DspPattern.h"

#include "engine/models/ScoreScale.h"
#include "firmware/BlockLayout.h"
#include "firmware/LittleEndian.h"

#include <algorithm>

namespace velox::firmware
{

namespace
{

using Refused = std::optional<PatternRefusal>;

Refused CheckLength(std::span<const uint8_t> block)
{
    if (block.size() < PatternLayout::ModelOffset)
    {
        return PatternRefusal::TooShort;
    }
    const uint32_t size = ReadUnsigned<uint32_t>(block, PatternLayout::SizeOffset);
    if (size < PatternLayout::ModelOffset)
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
    if (!std::equal(detector.begin(), detector.end(), block.begin() + PatternLayout::PatternTypeOffset))
    {
        return PatternRefusal::ForeignDetector;
    }
    if (ReadUnsigned<uint32_t>(block, PatternLayout::SignatureOffset) != PatternLayout::Signature)
    {
        return PatternRefusal::Signature;
    }
    if (const Refused refused = CheckThreshold(ReadUnsigned<uint32_t>(block, PatternLayout::ThresholdOffset)))
    {
        return refused;
    }
    if (ReadUnsigned<uint32_t>(block, PatternLayout::LimitOffset) != PatternLayout::Limit)
    {
        return PatternRefusal::Limit;
    }
    if (ReadUnsigned<uint32_t>(block, PatternLayout::Reserved1Offset) != 0)
    {
        return PatternRefusal::Reserved1;
    }
    if (ReadUnsigned<uint32_t>(block, PatternLayout::Reserved2Offset) != 0)
    {
        return PatternRefusal::Reserved2;
    }
    const bool fits = ReadUnsigned<uint32_t>(block, PatternLayout::ModelSizeOffset) == block.size() - PatternLayout::ModelOffset;
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
        refused = ReadModel(block.subspan(PatternLayout::ModelOffset), &pattern->model);
    }
    if (!refused)
    {
        pattern->threshold = ReadUnsigned<uint32_t>(block, PatternLayout::ThresholdOffset);
    }
    return refused;
}

} // namespace velox::firmware
