#pragma once

#include <string>

/// The path of a file that the configuration names: directory, one backslash, file name. Nothing is checked or normalised, so a
/// trailing separator is doubled and an absolute file name is appended all the same. Kept: deployed configuration files rely on
/// it.
inline std::string JoinPath(const std::string& directory, const std::string& fileName)
{
    return directory + "\\" + fileName;
}
