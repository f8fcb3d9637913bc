#include "engine/models/Blob.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace velox::engine
{

namespace
{

constexpr std::array<uint32_t, 256> CrcTable = [] {
    std::array<uint32_t, 256> table{};
    for (uint32_t i = 0; i < 256; ++i)
    {
        uint32_t remainder = i;
        for (int bit = 0; bit < 8; ++bit)
        {
            remainder = (remainder & 1U) != 0 ? (remainder >> 1U) ^ 0xEDB88320U : remainder >> 1U;
        }
        table[i] = remainder;
    }
    return table;
}();

constexpr std::size_t LengthOffset = 8;
constexpr std::size_t ChecksumOffset = 12;
constexpr float MostSteps = 32767.0F;

uint32_t ReadU32(const uint8_t* bytes)
{
    return bytes[0] | uint32_t{bytes[1]} << 8U | uint32_t{bytes[2]} << 16U | uint32_t{bytes[3]} << 24U;
}

void WriteU32(uint32_t value, uint8_t* bytes)
{
    for (unsigned int i = 0; i < 4; ++i)
    {
        bytes[i] = static_cast<uint8_t>(value >> (8U * i));
    }
}

} // namespace

uint32_t Crc32(std::span<const uint8_t> bytes)
{
    uint32_t remainder = 0xFFFFFFFFU;
    for (const uint8_t byte : bytes)
    {
        remainder = CrcTable[(remainder ^ byte) & 0xFFU] ^ (remainder >> 8U);
    }
    return ~remainder;
}

BlobWriter::BlobWriter(BlobKind kind)
{
    U32(static_cast<uint32_t>(kind));
    U32(BlobHeader::Version);
    U32(0); // length and checksum, filled in by Finish
    U32(0);
}

void BlobWriter::U32(uint32_t value)
{
    bytes.resize(bytes.size() + 4);
    WriteU32(value, bytes.data() + bytes.size() - 4);
}

void BlobWriter::F32(float value)
{
    U32(std::bit_cast<uint32_t>(value));
}

void BlobWriter::F32s(std::span<const float> values)
{
    for (const float value : values)
    {
        F32(value);
    }
}

void BlobWriter::Quantised(std::span<const float> values)
{
    float largest = 0.0F;
    for (const float value : values)
    {
        largest = std::max(largest, std::abs(value));
    }
    const float step = largest > 0.0F ? largest / MostSteps : 1.0F;
    F32(step);
    for (const float value : values)
    {
        const auto steps = static_cast<int16_t>(std::lround(std::clamp(value / step, -MostSteps, MostSteps)));
        const auto raw = static_cast<uint16_t>(steps);
        bytes.push_back(static_cast<uint8_t>(raw & 0xFFU));
        bytes.push_back(static_cast<uint8_t>(raw >> 8U));
    }
}

void BlobWriter::Nested(std::span<const uint8_t> nested)
{
    U32(static_cast<uint32_t>(nested.size()));
    bytes.insert(bytes.end(), nested.begin(), nested.end());
}

std::vector<uint8_t> BlobWriter::Finish()
{
    WriteU32(static_cast<uint32_t>(bytes.size()), bytes.data() + LengthOffset);
    WriteU32(Crc32(std::span(bytes).subspan(BlobHeader::Size)), bytes.data() + ChecksumOffset);
    return std::move(bytes);
}

BlobReader::BlobReader(BlobKind kind, const uint8_t* blob, Status* header)
{
    if (!IsBlob(blob, kind))
    {
        *header = Status::BlobKind;
    }
    else if (ReadU32(blob + 4) != BlobHeader::Version)
    {
        *header = Status::BlobVersion;
    }
    else if (const uint32_t length = ReadU32(blob + LengthOffset); length < BlobHeader::Size || length > BlobHeader::LargestBlob)
    {
        *header = Status::MalformedBlob;
    }
    else
    {
        rest = std::span(blob, length).subspan(BlobHeader::Size);
        *header = Crc32(rest) == ReadU32(blob + ChecksumOffset) ? Status::Success : Status::BlobChecksum;
    }
    malformed = *header != Status::Success;
}

const uint8_t* BlobReader::Take(std::size_t size)
{
    if (malformed || size > rest.size())
    {
        malformed = true;
        return nullptr;
    }
    const uint8_t* taken = rest.data();
    rest = rest.subspan(size);
    return taken;
}

uint32_t BlobReader::U32()
{
    const uint8_t* taken = Take(4);
    return taken == nullptr ? 0 : ReadU32(taken);
}

uint32_t BlobReader::Count(uint32_t most)
{
    const uint32_t count = U32();
    malformed = malformed || count > most;
    return malformed ? 0 : count;
}

float BlobReader::F32()
{
    const auto value = std::bit_cast<float>(U32());
    malformed = malformed || !std::isfinite(value);
    return malformed ? 0.0F : value;
}

void BlobReader::F32s(std::span<float> values)
{
    for (float& value : values)
    {
        value = F32();
    }
}

void BlobReader::Quantised(std::span<float> values)
{
    const float step = F32();
    malformed = malformed || !std::isfinite(step * (MostSteps + 1.0F));
    const uint8_t* taken = Take(values.size() * 2);
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        const auto raw = taken == nullptr ? uint16_t{0} : static_cast<uint16_t>(taken[2 * i] | taken[2 * i + 1] << 8U);
        values[i] = step * static_cast<float>(static_cast<int16_t>(raw));
    }
}

std::span<const uint8_t> BlobReader::Nested()
{
    const uint32_t size = U32();
    const uint8_t* taken = Take(size);
    return taken == nullptr ? std::span<const uint8_t>() : std::span(taken, size);
}

Status BlobReader::Finish() const
{
    return malformed || !rest.empty() ? Status::MalformedBlob : Status::Success;
}

bool IsBlob(const uint8_t* blob, BlobKind kind)
{
    return ReadU32(blob) == static_cast<uint32_t>(kind);
}

uint32_t BlobLength(const uint8_t* blob)
{
    return ReadU32(blob + LengthOffset);
}

} // namespace velox::engine
