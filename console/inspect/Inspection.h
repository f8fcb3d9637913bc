#pragma once

#include "console/report/Report.h"

#include <cstddef>
#include <span>

namespace velox::console
{

/// What a file can be. BlockHead is the beginning of one of the two blocks, too short to tell which.
enum class FileKind
{
    Unknown,
    Empty,
    ArmingPattern,
    DetectionResult,
    BlockHead,
    AcousticModel,
    Population,
    PhraseModel,
    FirmwareModel,
    Threshold,
};

/// "arming pattern"
std::string_view FileKindName(FileKind kind);

enum class FieldForm
{
    Bytes,
    Text,
    Number, ///< 2, 4 or 8 bytes, little-endian
    Hexadecimal,
    Q8,          ///< 4 bytes
    BigEndianQ8, ///< 2 bytes
    Guid,
};

/// A field as a format has it.
struct FieldLayout
{
    std::string_view name;
    std::size_t offset = 0;
    std::size_t size = 0;
    FieldForm form = FieldForm::Bytes;
    std::string_view meaning{};
    std::optional<uint32_t> must{}; ///< what stands in it; anything else is an error
};

/// A field as it stands in a file.
struct InspectedField
{
    std::string path; ///< "ModelData.Checksum"
    std::size_t offset = 0;
    std::size_t size = 0;
    std::string value{};
    std::string meaning{};
    std::string error{}; ///< what is wrong with it, as a reason; empty when nothing is
};

/// A file, field by field. Every byte belongs to a field.
struct Inspection
{
    FileKind kind = FileKind::Unknown;
    std::vector<InspectedField> fields{};
    std::vector<std::string> notes{};    ///< what is not wrong, but good to know, as reasons
    std::vector<Fact> facts{};           ///< of a model that the stand-in engine can read
    std::optional<std::size_t> states{}; ///< of its phrase
    bool ofUser = false;                 ///< it has a user's part

    const InspectedField* Find(std::string_view path) const;
    const InspectedField* FirstError() const; ///< null when nothing is wrong

    /// Adds fields that lie from a base on in the file, up to one that its end cuts off: that is an error, and the last.
    /// @return whether none is cut off
    bool Add(std::span<const FieldLayout> layouts, std::span<const uint8_t> file, std::size_t base = 0,
             std::string_view prefix = {});
    /// Adds what lies between two places as one field, when there is something.
    void AddBytes(std::string path, std::span<const uint8_t> file, std::size_t begin, std::size_t end, std::string meaning,
                  std::string error = {});
    /// Makes a field wrong, when it was read and is not wrong already.
    void Expect(bool right, std::string_view path, std::string otherwise);
};

/// Reads a file as what it begins as; damage to one field does not make a block another one.
Inspection Inspect(std::span<const uint8_t> bytes);

/// Which of the firmware blocks of docs/firmware-blocks.md the bytes are; one that is damaged in one place is recognised all the
/// same.
FileKind RecogniseBlock(std::span<const uint8_t> bytes);
void InspectBlock(std::span<const uint8_t> bytes, Inspection* inspection);

/// Whether bytes begin as a model of the stand-in engine does, and as which (docs/engine-statuses.md). A closed engine's user
/// models begin with "VWOV", too.
FileKind RecogniseModel(std::span<const uint8_t> bytes);

/// Reads a model's header from an offset up to the end, and lets the engine's reader tell whether the rest is right.
void InspectModel(std::span<const uint8_t> bytes, Inspection* inspection, std::size_t offset = 0, std::string_view prefix = {});

/// "0x002C"
std::string OffsetText(std::size_t offset);

} // namespace velox::console
