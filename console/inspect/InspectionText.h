#pragma once

#include "console/inspect/InspectionDifference.h"
#include "console/text/Style.h"

#include <nlohmann/json_fwd.hpp>

namespace velox::console
{

/// "0x002C"
std::string OffsetText(std::size_t offset);

/// How much of the fields a text shows.
enum class FieldsShown
{
    None,
    Grouped, ///< fields that are one of many, and right, are one line together
    Every
};

/// A table of the fields, then errors and notes; lines, each with its end.
std::string InspectionText(const std::string& file, const Inspection& inspection, FieldsShown shown, const Style& style);
std::string DifferenceText(const InspectionDifference& difference, const Style& style);

// The same as objects of the --json document.
nlohmann::ordered_json InspectionJson(const std::string& file, const Inspection& inspection);
nlohmann::ordered_json DifferenceJson(const InspectionDifference& difference);

} // namespace velox::console
