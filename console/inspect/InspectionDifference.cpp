#include "console/inspect/InspectionDifference.h"

#include <algorithm>
#include <unordered_map>

namespace velox::console
{

namespace
{

using Bytes = std::span<const uint8_t>;
using FieldsByPath = std::unordered_map<std::string_view, const InspectedField*>;

FieldsByPath ByPath(const Inspection& inspection)
{
    FieldsByPath fields;
    for (const InspectedField& field : inspection.fields)
    {
        fields.emplace(field.path, &field);
    }
    return fields;
}

/// The field's difference; none when its bytes are the same.
std::optional<FieldDifference> CompareField(const InspectedField& first, Bytes firstBytes, const InspectedField& second,
                                            Bytes secondBytes)
{
    const Bytes one = firstBytes.subspan(first.offset, first.size);
    const Bytes other = secondBytes.subspan(second.offset, second.size);
    if (std::equal(one.begin(), one.end(), other.begin(), other.end()))
    {
        return std::nullopt;
    }
    const std::size_t common = std::min(one.size(), other.size());
    FieldDifference difference{first.path, first, second, 0, first.offset + common};
    for (std::size_t i = common; i-- > 0;)
    {
        if (one[i] != other[i])
        {
            ++difference.changedBytes;
            difference.firstChange = first.offset + i;
        }
    }
    return difference;
}

/// Ranges of different bytes from an offset on; what only one file has is different.
std::vector<ByteRange> DifferentRanges(Bytes first, Bytes second, std::size_t from)
{
    std::vector<ByteRange> ranges;
    const std::size_t end = std::max(first.size(), second.size());
    for (std::size_t i = from; i < end; ++i)
    {
        const bool inBoth = i < first.size() && i < second.size();
        if (inBoth && first[i] == second[i])
        {
            continue;
        }
        if (!ranges.empty() && ranges.back().offset + ranges.back().size == i)
        {
            ++ranges.back().size;
        }
        else
        {
            ranges.push_back({i, 1});
        }
    }
    return ranges;
}

std::size_t EndOfFields(const Inspection& inspection)
{
    return inspection.rest ? inspection.rest->offset : inspection.size;
}

} // namespace

InspectionDifference Compare(const Inspection& first, std::span<const uint8_t> firstBytes, const Inspection& second,
                             std::span<const uint8_t> secondBytes)
{
    InspectionDifference difference;
    difference.same = std::equal(firstBytes.begin(), firstBytes.end(), secondBytes.begin(), secondBytes.end());
    if (difference.same)
    {
        return difference;
    }
    if (first.kind != second.kind)
    {
        difference.ranges = DifferentRanges(firstBytes, secondBytes, 0);
        return difference;
    }

    const FieldsByPath inSecond = ByPath(second);
    for (const InspectedField& field : first.fields)
    {
        const auto counterpart = inSecond.find(field.path);
        if (counterpart == inSecond.end())
        {
            difference.onlyInFirst.push_back(field.path);
        }
        else if (auto found = CompareField(field, firstBytes, *counterpart->second, secondBytes))
        {
            difference.fields.push_back(std::move(*found));
        }
    }
    const FieldsByPath inFirst = ByPath(first);
    for (const InspectedField& field : second.fields)
    {
        if (!inFirst.contains(field.path))
        {
            difference.onlyInSecond.push_back(field.path);
        }
    }
    if (first.rest || second.rest)
    {
        difference.ranges = DifferentRanges(firstBytes, secondBytes, std::max(EndOfFields(first), EndOfFields(second)));
    }
    return difference;
}

} // namespace velox::console
