#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velox::console
{

/// What a file can be.
enum class FileKind
{
    Unknown,
    Empty,
    ArmingPattern,
    DetectionResult,
    BlockHead, ///< the beginning of one of the two blocks, too short to tell which
    AcousticModel,
    Population,
    PhraseModel,
    FirmwareModel,
    Threshold,
};

/// "arming pattern"
std::string_view FileKindName(FileKind kind);

enum class FieldCheck
{
    None, ///< every value is as good as any other
    Right,
    Wrong, ///< there is an error with the field's path
};

struct InspectedField
{
    std::string path; ///< "ModelData.network.layer[0].kernel"
    std::size_t offset = 0;
    std::size_t size = 0;
    std::string value;
    std::string meaning;
    FieldCheck check = FieldCheck::None;
    std::string group; ///< what the field is one of many of, "generic.state[*]"; else empty
};

struct InspectionError
{
    std::size_t offset = 0;
    std::string path;
    std::string message;
};

struct ByteRange
{
    std::size_t offset = 0;
    std::size_t size = 0;
};

/// A file, field by field. What was read before an error is kept.
struct Inspection
{
    FileKind kind = FileKind::Unknown;
    std::size_t size = 0;
    std::vector<InspectedField> fields; ///< in the file's order, without gaps from its beginning on
    std::optional<ByteRange> rest;      ///< bytes that belong to no field: behind the last one, or behind an error
    std::vector<InspectionError> errors;
    std::vector<std::string> notes; ///< what is not wrong, but good to know

    const InspectedField* Find(std::string_view path) const;
};

} // namespace velox::console
