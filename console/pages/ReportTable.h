#pragma once

#include "console/report/Report.h"

namespace velox::console
{

/// Entries as rows: title, status, and a column for each name that their facts have, in the order in which they come.
struct ReportTable
{
    std::vector<std::string> columns; ///< headings; empty for title and status
    struct Row
    {
        const Entry* entry;
        std::vector<std::string> cells; ///< as many as columns
    };
    std::vector<Row> rows;
};

ReportTable TableOf(const std::vector<Entry>& entries);

/// What people see of facts, in one line: "length 1.50 s, score 150".
std::string FactLine(const std::vector<Fact>& facts);

/// With a capital letter.
std::string Capitalised(std::string text);

} // namespace velox::console
