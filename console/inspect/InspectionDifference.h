#pragma once

#include "console/inspect/InspectionRecord.h"

namespace velox::console
{

/// A field whose bytes are not the same in two files.
struct FieldDifference
{
    std::string path;
    InspectedField first;
    InspectedField second;
    std::size_t changedBytes = 0; ///< up to the shorter one's length
    std::size_t firstChange = 0;  ///< offset in the first file
};

/// What tells two files apart.
struct InspectionDifference
{
    bool same = false; ///< byte for byte
    std::vector<FieldDifference> fields;
    std::vector<std::string> onlyInFirst; ///< paths of fields
    std::vector<std::string> onlyInSecond;
    std::vector<ByteRange> ranges; ///< of different bytes that belong to no field in either file, at the same offsets
};

/// Compares field by field; files of different kinds byte by byte.
InspectionDifference Compare(const Inspection& first, std::span<const uint8_t> firstBytes, const Inspection& second,
                             std::span<const uint8_t> secondBytes);

} // namespace velox::console
