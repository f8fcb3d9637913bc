#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velox::console
{

/// Keeps other runs from writing what this one writes, with a file that one process at a time has open and that says who it is.
/// Makes its folder when that is not there, and waits for whoever has the file. Of a killed run the file may stay, but keeps
/// nobody out.
/// @return the lock; with its last copy file and folder vanish, a folder that holds something excepted
/// @throws CommandFailure WriteFailed, or Interrupted
std::shared_ptr<void> LockFile(const std::filesystem::path& file, std::chrono::milliseconds patience = std::chrono::minutes(1));

/// Makes or empties a file, writes into it which process this is, and lets nobody else write meanwhile. @return null on failure
std::shared_ptr<std::FILE> OpenAlone(const std::filesystem::path& file);

/// Puts several files in place, all or none. Each is at every moment the old one or the new one, whole; until Keep is called all
/// is undone when the object goes. A journal in the folder tells the next exchange what to do about one that was killed: it is
/// undone unless it was kept. One run at a time has the folder.
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

    /// @throws CommandFailure WriteFailed, or Interrupted: it is not kept then
    void Keep();

private:
    std::filesystem::path folder;
    std::filesystem::path journal;
    std::shared_ptr<void> lock;
    std::vector<std::pair<std::filesystem::path, std::vector<uint8_t>>> files;
    std::string listed; ///< the files, as in the journal
};

} // namespace velox::console
