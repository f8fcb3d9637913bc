#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velox::console
{

/// A file that the configuration names, opened by the same narrow name as the library does.
struct NamedFile
{
    /// A file beyond this is not looked into.
    static constexpr uint64_t LargestInspected = 128U << 20U;

    std::string path; ///< as the library puts it together
    bool readable = false;
    uint64_t size = 0;
    std::vector<uint8_t> bytes{}; ///< empty when it is not readable, or too large
};

NamedFile ReadNamedFile(const std::string& path);

/// Why a file could not be opened, and what to do.
struct Absence
{
    std::string why;
    std::string fix;
};
Absence WhyNotReadable(const std::string& path);

bool IsAscii(std::string_view text);
bool IsAbsolute(std::string_view path);

} // namespace velox::console
