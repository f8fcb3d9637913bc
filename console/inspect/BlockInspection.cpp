#include "console/inspect/Inspection.h"
#include "firmware/BlockLayout.h"
#include "firmware/DspPattern.h"
#include "firmware/LittleEndian.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

using firmware::BlockHead;
using firmware::PatternLayout;
using firmware::ReadUnsigned;
using firmware::ResultLayout;
using Form = FieldForm;

constexpr std::string_view NotRead = "not read by the library";
constexpr FieldLayout HeadFields[]{
    {"Size", BlockHead::SizeOffset, 4, Form::Number, "length of the whole block in bytes"},
    {"PatternType", BlockHead::PatternTypeOffset, 16, Form::Guid, "the detector's GUID"},
};
constexpr FieldLayout PatternFields[]{
    {"Signature", PatternLayout::SignatureOffset, 4, Form::Hexadecimal, "always 0xAA550001", PatternLayout::Signature},
    {"KpdThreshold", PatternLayout::ThresholdOffset, 4, Form::Q8, "detection threshold, in 1/256"},
    {"Limit", PatternLayout::LimitOffset, 4, Form::Hexadecimal, "always 0x7FFFFFFF", PatternLayout::Limit},
    {"Reserved1", PatternLayout::Reserved1Offset, 4, Form::Number, "always 0", 0},
    {"Reserved2", PatternLayout::Reserved2Offset, 4, Form::Number, "always 0", 0},
    {"ModelSize", PatternLayout::ModelSizeOffset, 4, Form::Number, "length of the model in bytes"},
};
constexpr FieldLayout ResultFields[]{
    {"NotRead20", 20, 8, Form::Bytes, NotRead},
    {"KeywordStart", ResultLayout::KeywordStartOffset, 8, Form::Number, "performance-counter units"},
    {"KeywordEnd", ResultLayout::KeywordEndOffset, 8, Form::Number, "performance-counter units"},
    {"NotRead44", 44, 4, Form::Bytes, NotRead},
    {"KeywordIdFw", ResultLayout::KeywordIdOffset, 2, Form::Number, "1: the key phrase"},
    {"NotRead50", 50, 2, Form::Bytes, NotRead},
    {"KpdScore", ResultLayout::ScoreOffset, 2, Form::BigEndianQ8, "score in 1/256, big-endian; logged only"},
    {"NotRead54", 54, 6, Form::Bytes, NotRead},
};

/// The number at an offset; nothing when the bytes end before.
std::optional<uint32_t> NumberAt(std::span<const uint8_t> bytes, std::size_t offset)
{
    return bytes.size() < offset + sizeof(uint32_t) ? std::nullopt : std::optional(ReadUnsigned<uint32_t>(bytes, offset));
}

bool LooksLikePattern(std::span<const uint8_t> bytes)
{
    const auto modelSize = NumberAt(bytes, PatternLayout::ModelSizeOffset);
    const bool sizesFit = modelSize && NumberAt(bytes, BlockHead::SizeOffset) == *modelSize + PatternLayout::ModelOffset;
    const bool limit = NumberAt(bytes, PatternLayout::LimitOffset) == PatternLayout::Limit;
    return NumberAt(bytes, PatternLayout::SignatureOffset) == PatternLayout::Signature ||
           (limit && (sizesFit || bytes.size() == PatternLayout::ModelOffset));
}

void InspectPattern(std::span<const uint8_t> bytes, Inspection* inspection)
{
    if (inspection->Add(PatternFields, bytes))
    {
        const std::size_t available = bytes.size() - PatternLayout::ModelOffset;
        const uint32_t modelSize = *NumberAt(bytes, PatternLayout::ModelSizeOffset);
        inspection->Expect(modelSize == available, "ModelSize", fmt::format("{}, but {} bytes follow", modelSize, available));
        InspectModel(bytes, inspection, PatternLayout::ModelOffset, "ModelData");
    }
    if (inspection->FirstError() != nullptr)
    {
        return;
    }
    firmware::DetectorId detector{};
    std::copy_n(bytes.begin() + BlockHead::PatternTypeOffset, detector.size(), detector.begin());
    firmware::DspPattern read;
    if (const auto refusal = firmware::ReadPattern(bytes, detector, &read))
    {
        const firmware::PatternRefusalText& text = TextOf(*refusal);
        inspection->notes.push_back(fmt::format("the simulated DSP refuses it at {}. {}", text.field, text.sentence));
    }
}

std::string TimesNote(uint64_t start, uint64_t end)
{
    constexpr double CountsPerSecond = 10e6; // the usual performance counter's
    return start == 0 || end == 0 ? "a time of 0 means that it is not known"
           : end < start          ? "the key phrase ends before it starts; the library hands both on without a check"
                         : fmt::format("the key phrase lasts {} counts: {:.3f} s when the performance counter runs at 10 MHz",
                                       end - start, static_cast<double>(end - start) / CountsPerSecond);
}

void InspectResult(std::span<const uint8_t> bytes, Inspection* inspection)
{
    if (!inspection->Add(ResultFields, bytes))
    {
        return;
    }
    inspection->AddBytes("NotRead60", bytes, ResultLayout::Length, bytes.size(), "the firmware's own; not read by the library");
    if (const auto keyword = ReadUnsigned<uint16_t>(bytes, ResultLayout::KeywordIdOffset); keyword != ResultLayout::Keyword)
    {
        inspection->notes.push_back(
            fmt::format("KeywordIdFw {} is no keyword: the library reports S_OK with the keyword id 0, no match", keyword));
    }
    inspection->notes.push_back(TimesNote(ReadUnsigned<uint64_t>(bytes, ResultLayout::KeywordStartOffset),
                                          ReadUnsigned<uint64_t>(bytes, ResultLayout::KeywordEndOffset)));
}

} // namespace

FileKind RecogniseBlock(std::span<const uint8_t> bytes)
{
    // A firmware writes 60 bytes and perhaps some of its own.
    constexpr uint32_t LongestResult = 4096;
    const uint32_t size = NumberAt(bytes, BlockHead::SizeOffset).value_or(0);
    const bool sizeOfAResult = size >= ResultLayout::Length && size <= LongestResult;
    const bool sizeOfABlock = size >= PatternLayout::ModelOffset && size > bytes.size();
    return LooksLikePattern(bytes) ? FileKind::ArmingPattern
           : bytes.size() > BlockHead::Length && (sizeOfAResult || bytes.size() == ResultLayout::Length)
               ? FileKind::DetectionResult
           : sizeOfABlock && bytes.size() < PatternLayout::ThresholdOffset ? FileKind::BlockHead
                                                                           : FileKind::Unknown;
}

void InspectBlock(std::span<const uint8_t> bytes, Inspection* inspection)
{
    const bool headIsWhole = inspection->Add(HeadFields, bytes);
    if (const auto size = NumberAt(bytes, BlockHead::SizeOffset))
    {
        const std::size_t least =
            inspection->kind == FileKind::DetectionResult ? ResultLayout::Length : PatternLayout::ModelOffset;
        inspection->Expect(*size >= least, "Size", fmt::format("{}, but such a block has {} bytes at least", *size, least));
        inspection->Expect(*size == bytes.size(), "Size", fmt::format("{}, but there are {} bytes", *size, bytes.size()));
    }
    if (inspection->kind == FileKind::BlockHead)
    {
        inspection->AddBytes("(rest)", bytes, BlockHead::Length, bytes.size(), "of either block");
        inspection->Expect(!headIsWhole, "PatternType",
                           "the file ends where arming pattern and detection result begin to differ");
    }
    else if (headIsWhole)
    {
        inspection->kind == FileKind::ArmingPattern ? InspectPattern(bytes, inspection) : InspectResult(bytes, inspection);
    }
}

} // namespace velox::console
