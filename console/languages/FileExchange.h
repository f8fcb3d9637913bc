#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace velox::console
{

/// Puts several files of one folder in place, all or none. They are written into a folder of their own in it first; until Keep is
/// called everything is undone when the object goes: files that were there come back, folders that were made vanish.
class FileExchange
{
public:
    /// Makes the folder when it is not there.
    /// @throws CommandFailure WriteFailed
    explicit FileExchange(const std::filesystem::path& folder);
    FileExchange(const FileExchange&) = delete;
    FileExchange& operator=(const FileExchange&) = delete;
    ~FileExchange();

    /// @throws CommandFailure WriteFailed, or Interrupted
    void Add(const std::filesystem::path& name, std::span<const uint8_t> bytes);

    /// @throws CommandFailure WriteFailed
    void PutInPlace();

    void Keep();

private:
    struct Moved
    {
        std::filesystem::path name;
        bool hadOld = false;
        bool isNew = false; ///< the new file is in place
    };
    void Move(const std::filesystem::path& from, const std::filesystem::path& to) const;
    void Undo();
    void RemoveStage();

    std::filesystem::path folder;
    std::filesystem::path stage;
    std::vector<std::filesystem::path> madeFolders; ///< the innermost first
    std::vector<std::filesystem::path> names;
    std::vector<Moved> moved;
    bool kept = false;
};

} // namespace velox::console
