#pragma once

#include "console/languages/FileLock.h"

#include <cstdint>
#include <vector>

namespace velox::console
{

/// Puts several files in place, all or none. Each is at every moment the old one or the new one, whole; until Keep is called all
/// is undone when the object goes. A journal in the folder tells the next exchange what to do about one that was killed: it is
/// undone unless every file was in place. One run at a time has the folder.
class FileExchange
{
public:
    /// Makes the folder when it is not there, and undoes or finishes what a killed run left.
    /// @throws CommandFailure WriteFailed, or Interrupted
    explicit FileExchange(const std::filesystem::path& folder);
    FileExchange(const FileExchange&) = delete;
    FileExchange& operator=(const FileExchange&) = delete;
    ~FileExchange();

    /// @param file  a name in the folder, or an absolute path; put in place in this order
    void Add(const std::filesystem::path& file, std::vector<uint8_t> bytes);

    /// @throws CommandFailure WriteFailed, BadInput when a former file cannot be read, or Interrupted
    void PutInPlace();

    void Keep();

private:
    struct File
    {
        std::filesystem::path path;
        std::vector<uint8_t> bytes;
        bool wasThere = false;
    };
    void WriteJournal(bool placed) const;

    std::filesystem::path folder;
    std::filesystem::path journal;
    std::shared_ptr<void> lock;
    std::vector<File> files;
};

} // namespace velox::console
