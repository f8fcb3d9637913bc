#include "console/inspect/BlockInspection.h"

#include "console/inspect/ModelInspection.h"
#include "console/inspect/ThresholdText.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

constexpr std::size_t SizeOffset = 0;
constexpr std::size_t SignatureOffset = 20;
constexpr std::size_t LimitOffset = 28;
constexpr std::size_t ModelSizeOffset = 40;
constexpr uint32_t ArmingHeadSize = 44;
constexpr uint32_t DetectionResultSize = 60;
/// A detection result longer than this is none: firmware writes 60 bytes and perhaps some of its own.
constexpr uint32_t LongestDetectionResult = 4096;
constexpr uint32_t Signature = 0xAA550001;
constexpr uint32_t Limit = 0x7FFFFFFF;
/// Units of a performance counter at 10 MHz, the usual one.
constexpr double CountsPerSecond = 10e6;

/// The number at an offset; nothing when the bytes end before.
std::optional<uint32_t> NumberAt(std::span<const uint8_t> bytes, std::size_t offset)
{
    if (bytes.size() < offset + sizeof(uint32_t))
    {
        return std::nullopt;
    }
    return bytes[offset] | uint32_t{bytes[offset + 1]} << 8U | uint32_t{bytes[offset + 2]} << 16U |
           uint32_t{bytes[offset + 3]} << 24U;
}

bool LooksLikeArmingPattern(std::span<const uint8_t> bytes)
{
    if (NumberAt(bytes, SignatureOffset) == Signature)
    {
        return true;
    }
    const auto modelSize = NumberAt(bytes, ModelSizeOffset);
    const bool sizesFit = modelSize && NumberAt(bytes, SizeOffset) == *modelSize + ArmingHeadSize;
    return NumberAt(bytes, LimitOffset) == Limit && (sizesFit || bytes.size() == ArmingHeadSize);
}

void CheckSize(uint32_t size, uint32_t least, std::size_t available, FieldReader* reader)
{
    reader->Expect(size >= least, fmt::format("{}, but such a block has {} bytes at least.", size, least));
    reader->Expect(size == available, fmt::format("{}, but there are {} bytes.", size, available));
}

void ExplainTimes(uint64_t start, uint64_t end, FieldReader* reader)
{
    if (start == 0 || end == 0)
    {
        reader->Note("A time of 0 means that it is not known.");
    }
    else if (end < start)
    {
        reader->Note("The key phrase ends before it starts. The library hands both on without a check.");
    }
    else
    {
        reader->Note(fmt::format("The key phrase lasts {} counts: {:.3f} s when the performance counter runs at 10 MHz.",
                                 end - start, static_cast<double>(end - start) / CountsPerSecond));
    }
}

} // namespace

FileKind RecogniseBlock(std::span<const uint8_t> bytes)
{
    if (LooksLikeArmingPattern(bytes))
    {
        return FileKind::ArmingPattern;
    }
    const auto size = NumberAt(bytes, SizeOffset);
    const bool sizeOfAResult = size && *size >= DetectionResultSize && *size <= LongestDetectionResult;
    const bool lengthOfAResult = bytes.size() == DetectionResultSize;
    if (bytes.size() > SignatureOffset && (sizeOfAResult || lengthOfAResult))
    {
        return FileKind::DetectionResult;
    }
    const bool sizeOfABlock = size && *size >= ArmingHeadSize && *size > bytes.size();
    return sizeOfABlock && bytes.size() < SignatureOffset + sizeof(uint32_t) ? FileKind::BlockHead : FileKind::Unknown;
}

void InspectArmingPattern(FieldReader* reader)
{
    const std::size_t whole = reader->Left();
    const uint32_t size = reader->U32("Size", "length of the whole block in bytes");
    CheckSize(size, ArmingHeadSize, whole, reader);
    reader->Guid("PatternType", "the detector's GUID");
    reader->Expect(reader->Hex32("Signature", "always 0xAA550001") == Signature, "Must be 0xAA550001.");
    const auto threshold = static_cast<int32_t>(reader->U32("KpdThreshold", "detection threshold, in 1/256"));
    reader->Describe(Q8Text(threshold));
    if (threshold < 0)
    {
        reader->Note("The threshold is negative: every score is above it.");
    }
    reader->Expect(reader->Hex32("Limit", "always 0x7FFFFFFF") == Limit, "Must be 0x7FFFFFFF.");
    reader->Expect(reader->U32("Reserved1", "always 0") == 0, "Must be 0.");
    reader->Expect(reader->U32("Reserved2", "always 0") == 0, "Must be 0.");
    const uint32_t modelSize = reader->U32("ModelSize", "length of the model in bytes");
    reader->Expect(modelSize == reader->Left(), fmt::format("{}, but {} bytes follow.", modelSize, reader->Left()));
    InspectOpaqueModel("ModelData", reader);
}

void InspectDetectionResult(FieldReader* reader)
{
    const std::size_t whole = reader->Left();
    const uint32_t size = reader->U32("Size", "length of the whole block in bytes");
    CheckSize(size, DetectionResultSize, whole, reader);
    reader->Guid("PatternType", "the detector's GUID");
    reader->Bytes("NotRead20", 8, "not read by the library");
    const uint64_t start = reader->U64("KeywordStart", "performance-counter units");
    const uint64_t end = reader->U64("KeywordEnd", "performance-counter units");
    reader->Bytes("NotRead44", 4, "not read by the library");
    const uint16_t keyword = reader->U16("KeywordIdFw", "1: the key phrase");
    if (keyword != 1)
    {
        reader->Note(
            fmt::format("KeywordIdFw {} is no keyword: the library reports S_OK with the keyword id 0, no match.", keyword));
    }
    reader->Bytes("NotRead50", 2, "not read by the library");
    reader->Describe(Q8Text(reader->BigEndianU16("KpdScore", "score in 1/256, big-endian; logged only")));
    reader->Bytes("NotRead54", 6, "not read by the library");
    if (reader->Left() > 0)
    {
        reader->Bytes("NotRead60", reader->Left(), "the firmware's own; not read by the library");
    }
    ExplainTimes(start, end, reader);
}

void InspectBlockHead(FieldReader* reader)
{
    const std::size_t whole = reader->Left();
    const uint32_t size = reader->U32("Size", "length of the whole block in bytes");
    CheckSize(size, ArmingHeadSize, whole, reader);
    reader->Guid("PatternType", "the detector's GUID");
    reader->Stop("The file ends where arming pattern and detection result begin to differ.");
}

} // namespace velox::console
