#pragma once

#include "console/inspect/InspectionRecord.h"

#include <functional>

namespace velox::console
{

/// Thrown by FieldReader when reading cannot go on; the error is in the inspection already.
struct ReadingStopped
{
};

/// Reads a file field by field into an inspection. All integers are little-endian unless said otherwise.
class FieldReader
{
public:
    /// @param file        must outlive the reader
    /// @param inspection  receives fields and errors
    FieldReader(std::span<const uint8_t> file, Inspection* inspection);

    /// While it lives, the fields' paths begin with a name and a point.
    class Section
    {
    public:
        Section(FieldReader* reader, std::string_view name);
        Section(const Section&) = delete;
        Section& operator=(const Section&) = delete;
        ~Section();

    private:
        FieldReader* reader;
        std::string outerPrefix;
    };

    /// While it lives, the fields read are one of many; the outermost counts.
    class Group
    {
    public:
        Group(FieldReader* reader, std::string_view name);
        Group(const Group&) = delete;
        Group& operator=(const Group&) = delete;
        ~Group();

    private:
        FieldReader* reader;
        std::string outerGroup;
    };

    /// While it lives, reading ends earlier.
    class Bounds
    {
    public:
        Bounds(FieldReader* reader, std::size_t size);
        Bounds(const Bounds&) = delete;
        Bounds& operator=(const Bounds&) = delete;
        ~Bounds();

    private:
        FieldReader* reader;
        std::size_t outerEnd;
    };

    std::size_t Position() const
    {
        return position;
    }
    std::size_t Left() const
    {
        return end - position;
    }
    /// Bytes that come next, for a look ahead; at most as many as are left.
    std::span<const uint8_t> Ahead(std::size_t size) const;

    // One field each. A field that is cut off is an error and ends the reading.
    std::span<const uint8_t> Bytes(std::string_view name, std::size_t size, std::string_view meaning);
    std::string Guid(std::string_view name, std::string_view meaning);
    uint32_t U32(std::string_view name, std::string_view meaning);
    uint32_t Hex32(std::string_view name, std::string_view meaning);
    uint64_t U64(std::string_view name, std::string_view meaning);
    uint16_t U16(std::string_view name, std::string_view meaning);
    uint16_t BigEndianU16(std::string_view name, std::string_view meaning);
    /// A number that decides how much follows: outside of its range it ends the reading.
    uint32_t Count(std::string_view name, uint32_t least, uint32_t most, std::string_view meaning);

    /// What numbers are allowed, besides being finite.
    enum class Numbers
    {
        Any,
        Positive
    };
    float F32(std::string_view name, std::string_view meaning, Numbers allowed = Numbers::Any);
    std::vector<float> F32s(std::string_view name, std::size_t count, std::string_view meaning, Numbers allowed = Numbers::Any);
    /// 16-bit numbers behind their step, `rows` times: a step and `count` numbers.
    void Quantised(std::string_view name, std::size_t rows, std::size_t count, std::string_view meaning);
    std::vector<uint32_t> U32s(std::string_view name, std::size_t count, uint32_t least, uint32_t most, std::string_view meaning);

    // About the field that was read last.
    void Describe(std::string_view value);
    void Explain(std::string_view meaning);
    /// The field is right or wrong. @param otherwise  the error, as a sentence
    void Expect(bool right, std::string_view otherwise);
    /// The same, at a place in the field.
    void ExpectAt(bool right, std::size_t offset, std::string_view otherwise);
    /// The field is wrong, and nothing behind it can be understood.
    [[noreturn]] void Stop(std::string_view message);

    /// An error about bytes that belong to no field, from here to the end; they are skipped.
    void ExpectEnd(std::string_view otherwise);

    void Note(std::string_view note);

private:
    std::span<const uint8_t> Take(std::string_view name, std::size_t size, std::string_view meaning);
    void ShowNumbers(std::span<const float> values);

    std::span<const uint8_t> file;
    Inspection* inspection;
    std::size_t position = 0;
    std::size_t end;
    std::string prefix;
    std::string group;
};

} // namespace velox::console
