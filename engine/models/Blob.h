#pragma once

#include "engine/base/EngineErrors.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velox::engine
{

/// Kinds of model, by the four characters that each begins with.
enum class BlobKind : uint32_t
{
    AcousticModel = 0x4D415756, ///< "VWAM"
    Population = 0x4E5A5756,    ///< "VWZN"
    PhraseModel = 0x4D505756,   ///< "VWPM", what an enrollment ends with
    Firmware = 0x564F5756,      ///< "VWOV", key-phrase models, firmware models and user models
};

/// Every model begins with these 16 bytes; all integers are little-endian.
///
/// | offset | size | field |
/// |--------|------|-------|
/// | 0  | 4 | kind |
/// | 4  | 4 | format version, BlobVersion |
/// | 8  | 4 | length of the whole model in bytes |
/// | 12 | 4 | CRC-32 (ISO 3309, polynomial 0xEDB88320) of all bytes behind the header |
struct BlobHeader
{
    static constexpr std::size_t Size = 16;
    static constexpr uint32_t Version = 2;
    static constexpr uint32_t LargestBlob = 64U << 20U;
};

uint32_t Crc32(std::span<const uint8_t> bytes);

/// Writes a model field by field.
class BlobWriter
{
public:
    explicit BlobWriter(BlobKind kind);

    void U32(uint32_t value);
    void F32(float value);
    void F32s(std::span<const float> values);

    /// Values as 16-bit integers behind their common step: loses at most half a step.
    void Quantised(std::span<const float> values);

    /// Bytes of another model, behind their length.
    void Nested(std::span<const uint8_t> bytes);

    /// Fills the header in and hands the bytes over.
    std::vector<uint8_t> Finish();

private:
    std::vector<uint8_t> bytes;
};

/// Reads a model field by field. A read past the end, a number that is not finite or a count that cannot be marks the model as
/// malformed; the reads after it give zeros.
class BlobReader
{
public:
    /// @param header  receives Success when header, length and checksum are right
    /// @param blob    at least as many bytes as its header says
    BlobReader(BlobKind kind, const uint8_t* blob, Status* header);

    uint32_t U32();
    /// A count of at most `most`.
    uint32_t Count(uint32_t most);
    float F32();
    void F32s(std::span<float> values);
    void Quantised(std::span<float> values);
    std::span<const uint8_t> Nested();

    /// Success when every byte was read and none was missing.
    Status Finish() const;

private:
    const uint8_t* Take(std::size_t size);

    std::span<const uint8_t> rest;
    bool malformed = false;
};

/// Whether a model says of itself that it is of this kind.
bool IsBlob(const uint8_t* blob, BlobKind kind);

/// The length that a model's header gives.
uint32_t BlobLength(const uint8_t* blob);

} // namespace velox::engine
