#pragma once

#include <string>
#include <string_view>

/// A folder of its own for one test, removed with everything in it.
class TemporaryFolder
{
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::string& Path() const
    {
        return path;
    }

private:
    std::string path;
};

/// Writes a whole file, byte for byte.
void WriteWholeFile(const std::string& path, std::string_view bytes);

/// Reads a whole file; an empty string for one that is not there.
std::string ReadWholeFile(const std::string& path);
