#pragma once

#include "firmware/BlockLayout.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velox::firmware
{

/// Why an arming pattern is refused. The checks are made in this order, and the first that fails counts.
enum class PatternRefusal : uint32_t
{
    TooShort = 1,
    Cut,
    TrailingBytes,
    ForeignDetector,
    Signature,
    ThresholdBelowScale,
    ThresholdAboveScale,
    Limit,
    Reserved1,
    Reserved2,
    ModelSize,
    ModelTooShort,
    ModelKind,
    ModelLength,
    ModelVersion,
    ModelChecksum,
    ModelMalformed,
};

/// A refusal for people.
struct PatternRefusalText
{
    PatternRefusal refusal;
    std::string_view name;
    std::string_view field; ///< that is wrong
    std::size_t offset;     ///< of the field in the block
    std::string_view sentence;
};

inline constexpr std::array PatternRefusalTexts{
    PatternRefusalText{PatternRefusal::TooShort, "TooShort", "Size", PatternLayout::SizeOffset,
                       "The block is shorter than the 44 bytes of its head."},
    PatternRefusalText{PatternRefusal::Cut, "Cut", "Size", PatternLayout::SizeOffset,
                       "The block is shorter than its size says: its end is missing."},
    PatternRefusalText{PatternRefusal::TrailingBytes, "TrailingBytes", "Size", PatternLayout::SizeOffset,
                       "The block is longer than its size says: bytes follow that belong to nothing."},
    PatternRefusalText{
        PatternRefusal::ForeignDetector, "ForeignDetector", "PatternType", PatternLayout::PatternTypeOffset,
        "The GUID is another detector's: the pattern was built for another device, or the bytes are in another order."},
    PatternRefusalText{
        PatternRefusal::Signature, "Signature", "Signature", PatternLayout::SignatureOffset,
        "The signature is not 0xAA550001 (bytes 01 00 55 AA): this is no arming pattern, or one of another version."},
    PatternRefusalText{PatternRefusal::ThresholdBelowScale, "ThresholdBelowScale", "KpdThreshold", PatternLayout::ThresholdOffset,
                       "The threshold is negative, but scores are 0 to 255: everything would fire."},
    PatternRefusalText{PatternRefusal::ThresholdAboveScale, "ThresholdAboveScale", "KpdThreshold", PatternLayout::ThresholdOffset,
                       "The threshold is above 255 (65280 in Q8), the highest score that there is: nothing could fire."},
    PatternRefusalText{PatternRefusal::Limit, "Limit", "Limit", PatternLayout::LimitOffset, "The limit is not 0x7FFFFFFF."},
    PatternRefusalText{PatternRefusal::Reserved1, "Reserved1", "Reserved1", PatternLayout::Reserved1Offset,
                       "The first reserved field is not 0."},
    PatternRefusalText{PatternRefusal::Reserved2, "Reserved2", "Reserved2", PatternLayout::Reserved2Offset,
                       "The second reserved field is not 0."},
    PatternRefusalText{PatternRefusal::ModelSize, "ModelSize", "ModelSize", PatternLayout::ModelSizeOffset,
                       "The model's size is not the block's size less the 44 bytes of the head."},
    PatternRefusalText{PatternRefusal::ModelTooShort, "ModelTooShort", "ModelSize", PatternLayout::ModelSizeOffset,
                       "The model is missing, or shorter than the 16 bytes of its own head."},
    PatternRefusalText{PatternRefusal::ModelKind, "ModelKind", "ModelData.kind", PatternLayout::ModelOffset,
                       "The model does not begin with \"VWOV\": it is no firmware model and no user model of this engine."},
    PatternRefusalText{PatternRefusal::ModelLength, "ModelLength", "ModelData.length", PatternLayout::ModelOffset + 8,
                       "The model's own length is not the model's size in the head: it was cut or lengthened."},
    PatternRefusalText{PatternRefusal::ModelVersion, "ModelVersion", "ModelData.version", PatternLayout::ModelOffset + 4,
                       "The model was made for another version of the engine."},
    PatternRefusalText{PatternRefusal::ModelChecksum, "ModelChecksum", "ModelData.checksum", PatternLayout::ModelOffset + 12,
                       "The model's checksum is wrong: its bytes were changed."},
    PatternRefusalText{PatternRefusal::ModelMalformed, "ModelMalformed", "ModelData.content", PatternLayout::ModelOffset + 16,
                       "The model's content is not that of a firmware model, although its checksum is right."},
};

/// The text of a refusal: the table holds every one, in the order of their numbers.
constexpr const PatternRefusalText& TextOf(PatternRefusal refusal)
{
    return PatternRefusalTexts[static_cast<std::size_t>(refusal) - 1];
}

} // namespace velox::firmware
