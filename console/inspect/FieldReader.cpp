#include "console/inspect/FieldReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>

namespace velox::console
{

namespace
{

constexpr std::size_t ShownBytes = 16;
constexpr float MostSteps = 32768.0F;

template <typename Integer>
Integer ReadLittleEndian(std::span<const uint8_t> bytes)
{
    Integer value = 0;
    for (std::size_t i = 0; i < sizeof(Integer); ++i)
    {
        value = static_cast<Integer>(value | static_cast<Integer>(static_cast<Integer>(bytes[i]) << (8 * i)));
    }
    return value;
}

float ReadFloat(std::span<const uint8_t> bytes)
{
    return std::bit_cast<float>(ReadLittleEndian<uint32_t>(bytes));
}

std::string HexText(std::span<const uint8_t> bytes)
{
    const std::size_t shown = std::min(bytes.size(), ShownBytes);
    const std::string text = fmt::format("{:02X}", fmt::join(bytes.first(shown), " "));
    return shown < bytes.size() ? text + " ..." : text;
}

bool Allowed(float value, FieldReader::Numbers allowed)
{
    return std::isfinite(value) && (allowed == FieldReader::Numbers::Any || value > 0.0F);
}

std::string_view Wanted(FieldReader::Numbers allowed)
{
    return allowed == FieldReader::Numbers::Any ? "must be a finite number" : "must be a finite number above 0";
}

} // namespace

FieldReader::FieldReader(std::span<const uint8_t> wholeFile, Inspection* result)
    : file(wholeFile), inspection(result), end(wholeFile.size())
{
}

FieldReader::Section::Section(FieldReader* owner, std::string_view name) : reader(owner), outerPrefix(owner->prefix)
{
    reader->prefix += fmt::format("{}.", name);
}

FieldReader::Section::~Section()
{
    reader->prefix = std::move(outerPrefix);
}

FieldReader::Group::Group(FieldReader* owner, std::string_view name) : reader(owner), outerGroup(owner->group)
{
    if (reader->group.empty())
    {
        reader->group = reader->prefix + std::string(name);
    }
}

FieldReader::Group::~Group()
{
    reader->group = std::move(outerGroup);
}

FieldReader::Bounds::Bounds(FieldReader* owner, std::size_t size) : reader(owner), outerEnd(owner->end)
{
    reader->end = reader->position + std::min(size, reader->Left());
}

FieldReader::Bounds::~Bounds()
{
    reader->end = outerEnd;
}

std::span<const uint8_t> FieldReader::Ahead(std::size_t size) const
{
    return file.subspan(position, std::min(size, Left()));
}

std::span<const uint8_t> FieldReader::Take(std::string_view name, std::size_t size, std::string_view meaning)
{
    std::string path = prefix + std::string(name);
    if (size > Left())
    {
        inspection->errors.push_back({position, std::move(path),
                                      Left() == 0 ? fmt::format("Nothing is left, but the field needs {} bytes.", size)
                                                  : fmt::format("Only {} of the field's {} bytes are there.", Left(), size)});
        throw ReadingStopped{};
    }
    inspection->fields.push_back({std::move(path), position, size, {}, std::string(meaning), FieldCheck::None, group});
    const std::span<const uint8_t> taken = file.subspan(position, size);
    position += size;
    return taken;
}

std::span<const uint8_t> FieldReader::Bytes(std::string_view name, std::size_t size, std::string_view meaning)
{
    const std::span<const uint8_t> bytes = Take(name, size, meaning);
    Describe(HexText(bytes));
    return bytes;
}

std::string FieldReader::Guid(std::string_view name, std::string_view meaning)
{
    constexpr std::size_t GuidSize = 16;
    const std::span<const uint8_t> bytes = Take(name, GuidSize, meaning);
    Describe(fmt::format("{{{:08X}-{:04X}-{:04X}-{:02X}{:02X}-{:02X}}}", ReadLittleEndian<uint32_t>(bytes),
                         ReadLittleEndian<uint16_t>(bytes.subspan(4)), ReadLittleEndian<uint16_t>(bytes.subspan(6)), bytes[8],
                         bytes[9], fmt::join(bytes.subspan(10), "")));
    return inspection->fields.back().value;
}

uint32_t FieldReader::U32(std::string_view name, std::string_view meaning)
{
    const auto value = ReadLittleEndian<uint32_t>(Take(name, sizeof(uint32_t), meaning));
    Describe(fmt::format("{}", value));
    return value;
}

uint32_t FieldReader::Hex32(std::string_view name, std::string_view meaning)
{
    const auto value = ReadLittleEndian<uint32_t>(Take(name, sizeof(uint32_t), meaning));
    Describe(fmt::format("0x{:08X}", value));
    return value;
}

uint64_t FieldReader::U64(std::string_view name, std::string_view meaning)
{
    const auto value = ReadLittleEndian<uint64_t>(Take(name, sizeof(uint64_t), meaning));
    Describe(fmt::format("{}", value));
    return value;
}

uint16_t FieldReader::U16(std::string_view name, std::string_view meaning)
{
    const auto value = ReadLittleEndian<uint16_t>(Take(name, sizeof(uint16_t), meaning));
    Describe(fmt::format("{}", value));
    return value;
}

uint16_t FieldReader::BigEndianU16(std::string_view name, std::string_view meaning)
{
    const std::span<const uint8_t> bytes = Take(name, sizeof(uint16_t), meaning);
    const auto value = static_cast<uint16_t>(bytes[0] << 8U | bytes[1]);
    Describe(fmt::format("{}", value));
    return value;
}

uint32_t FieldReader::Count(std::string_view name, uint32_t least, uint32_t most, std::string_view meaning)
{
    const uint32_t count = U32(name, meaning);
    if (count < least || count > most)
    {
        Stop(least == most ? fmt::format("{} must be {}.", count, least)
                           : fmt::format("{} must lie between {} and {}.", count, least, most));
    }
    Expect(true, {});
    return count;
}

float FieldReader::F32(std::string_view name, std::string_view meaning, Numbers allowed)
{
    const float value = ReadFloat(Take(name, sizeof(float), meaning));
    Describe(fmt::format("{:.5g}", value));
    Expect(Allowed(value, allowed), fmt::format("{:.5g} {}.", value, Wanted(allowed)));
    return value;
}

std::vector<float> FieldReader::F32s(std::string_view name, std::size_t count, std::string_view meaning, Numbers allowed)
{
    const std::span<const uint8_t> bytes = Take(name, count * sizeof(float), meaning);
    const std::size_t start = position - bytes.size();
    std::vector<float> values(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        values[i] = ReadFloat(bytes.subspan(i * sizeof(float)));
    }
    ShowNumbers(values);
    const auto wrong =
        std::find_if_not(values.begin(), values.end(), [&](float value) { return Allowed(value, allowed); }) - values.begin();
    const auto index = static_cast<std::size_t>(wrong);
    ExpectAt(index == count, start + index * sizeof(float),
             index == count ? std::string() : fmt::format("Number {}, {:.5g}, {}.", index, values[index], Wanted(allowed)));
    return values;
}

void FieldReader::Quantised(std::string_view name, std::size_t rows, std::size_t count, std::string_view meaning)
{
    const std::size_t rowSize = sizeof(float) + count * sizeof(int16_t);
    const std::span<const uint8_t> bytes = Take(name, rows * rowSize, meaning);
    const std::size_t start = position - bytes.size();
    std::vector<float> values;
    values.reserve(rows * count);
    Expect(true, {});
    for (std::size_t row = 0; row < rows; ++row)
    {
        const std::span<const uint8_t> own = bytes.subspan(row * rowSize, rowSize);
        const float step = ReadFloat(own);
        if (!std::isfinite(step * MostSteps))
        {
            ExpectAt(false, start + row * rowSize, fmt::format("The step {:.5g} gives numbers that are not finite.", step));
        }
        for (std::size_t i = 0; i < count; ++i)
        {
            const auto steps = static_cast<int16_t>(ReadLittleEndian<uint16_t>(own.subspan(sizeof(float) + i * sizeof(int16_t))));
            values.push_back(step * static_cast<float>(steps));
        }
    }
    ShowNumbers(values);
}

std::vector<uint32_t> FieldReader::U32s(std::string_view name, std::size_t count, uint32_t least, uint32_t most,
                                        std::string_view meaning)
{
    const std::span<const uint8_t> bytes = Take(name, count * sizeof(uint32_t), meaning);
    const std::size_t start = position - bytes.size();
    std::vector<uint32_t> values(count);
    Expect(true, {});
    for (std::size_t i = 0; i < count; ++i)
    {
        values[i] = ReadLittleEndian<uint32_t>(bytes.subspan(i * sizeof(uint32_t)));
        if (values[i] < least || values[i] > most)
        {
            ExpectAt(false, start + i * sizeof(uint32_t),
                     fmt::format("Number {}, {}, must lie between {} and {}.", i, values[i], least, most));
        }
    }
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    Describe(count == 0 ? "none" : fmt::format("{} numbers, {} to {}", count, *lowest, *highest));
    return values;
}

void FieldReader::ShowNumbers(std::span<const float> values)
{
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    Describe(values.empty() ? "none" : fmt::format("{} numbers, {:.4g} to {:.4g}", values.size(), *lowest, *highest));
}

void FieldReader::Describe(std::string_view value)
{
    inspection->fields.back().value = value;
}

void FieldReader::Explain(std::string_view meaning)
{
    inspection->fields.back().meaning = meaning;
}

void FieldReader::Expect(bool right, std::string_view otherwise)
{
    ExpectAt(right, inspection->fields.back().offset, otherwise);
}

void FieldReader::ExpectAt(bool right, std::size_t offset, std::string_view otherwise)
{
    InspectedField& field = inspection->fields.back();
    if (!right)
    {
        field.check = FieldCheck::Wrong;
        inspection->errors.push_back({offset, field.path, std::string(otherwise)});
    }
    else if (field.check == FieldCheck::None)
    {
        field.check = FieldCheck::Right;
    }
}

void FieldReader::Stop(std::string_view message)
{
    Expect(false, message);
    throw ReadingStopped{};
}

void FieldReader::ExpectEnd(std::string_view otherwise)
{
    if (Left() > 0)
    {
        Bytes("(rest)", Left(), "belongs to no field");
        Expect(false, otherwise);
    }
}

void FieldReader::Note(std::string_view note)
{
    inspection->notes.emplace_back(note);
}

} // namespace velox::console
