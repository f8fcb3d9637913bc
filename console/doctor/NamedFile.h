#pragma once

#include "console/inspect/Inspection.h"

#include <cstdint>
#include <map>
#include <string>
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
    std::vector<uint8_t> bytes; ///< empty when it is not readable, or too large
};

/// Reads each file once.
class NamedFiles
{
public:
    const NamedFile& Read(const std::string& path);

    /// What inspect makes of it.
    const Inspection& Inspected(const std::string& path);

private:
    std::map<std::string, NamedFile> files;
    std::map<std::string, Inspection> inspections;
};

/// Why a file could not be opened, and what to do.
struct Absence
{
    std::string why;
    std::string fix;
};
Absence WhyNotReadable(const std::string& path);

/// As the library joins a folder and a file name.
std::string JoinNames(const std::string& directory, const std::string& name);

bool IsAscii(std::string_view text);
bool IsAbsolute(std::string_view path);

} // namespace velox::console
