#pragma once

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
    PatternRefusalText{PatternRefusal::TooShort, "TooShort", "Size", 0, "The block is shorter than the 44 bytes of its head."},
    PatternRefusalText{PatternRefusal::Cut, "Cut", "Size", 0, "The block is shorter than its size says: its end is missing."},
    PatternRefusalText{PatternRefusal::TrailingBytes, "TrailingBytes", "Size", 0,
                       "The block is longer than its size says: bytes follow that belong to nothing."},
    PatternRefusalText{
        PatternRefusal::ForeignDetector, "ForeignDetector", "PatternType", 4,
        "The GUID is another detector's: the pattern was built for another device, or the bytes are in another order."},
    PatternRefusalText{
        PatternRefusal::Signature, "Signature", "Signature", 20,
        "The signature is not 0xAA550001 (bytes 01 00 55 AA): this is no arming pattern, or one of another version."},
    PatternRefusalText{PatternRefusal::ThresholdBelowScale, "ThresholdBelowScale", "KpdThreshold", 24,
                       "The threshold is negative, but scores are 0 to 255: everything would fire."},
    PatternRefusalText{PatternRefusal::ThresholdAboveScale, "ThresholdAboveScale", "KpdThreshold", 24,
                       "The threshold is above 255 (65280 in Q8), the highest score that there is: nothing could fire."},
    PatternRefusalText{PatternRefusal::Limit, "Limit", "Limit", 28, "The limit is not 0x7FFFFFFF."},
    PatternRefusalText{PatternRefusal::Reserved1, "Reserved1", "Reserved1", 32, "The first reserved field is not 0."},
    PatternRefusalText{PatternRefusal::Reserved2, "Reserved2", "Reserved2", 36, "The second reserved field is not 0."},
    PatternRefusalText{PatternRefusal::ModelSize, "ModelSize", "ModelSize", 40,
                       "The model's size is not the block's size less the 44 bytes of the head."},
    PatternRefusalText{PatternRefusal::ModelTooShort, "ModelTooShort", "ModelSize", 40,
                       "The model is missing, or shorter than the 16 bytes of its own head."},
    PatternRefusalText{PatternRefusal::ModelKind, "ModelKind", "ModelData.kind", 44,
                       "The model does not begin with \"VWOV\": it is no firmware model and no user model of this engine."},
    PatternRefusalText{PatternRefusal::ModelLength, "ModelLength", "ModelData.length", 52,
                       "The model's own length is not the model's size in the head: it was cut or lengthened."},
    PatternRefusalText{PatternRefusal::ModelVersion, "ModelVersion", "ModelData.version", 48,
                       "The model was made for another version of the engine."},
    PatternRefusalText{PatternRefusal::ModelChecksum, "ModelChecksum", "ModelData.checksum", 56,
                       "The model's checksum is wrong: its bytes were changed."},
    PatternRefusalText{PatternRefusal::ModelMalformed, "ModelMalformed", "ModelData.content", 60,
                       "The model's content is not that of a firmware model, although its checksum is right."},
};

/// The text of a refusal: the table holds every one, in the order of their numbers.
constexpr const PatternRefusalText& TextOf(PatternRefusal refusal)
{
    return PatternRefusalTexts[static_cast<std::size_t>(refusal) - 1];
}

} // namespace velox::firmware
