#include "console/languages/FileExchange.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <system_error>

namespace velox::console
{

namespace
{

[[noreturn]] void Fail(const std::filesystem::path& file, const std::string& reason)
{
    throw CommandFailure(ExitCode::WriteFailed, "Cannot write " + Utf8(file) + ": " + reason + ".",
                         "Choose another place, or make this one writable. What was there is unchanged.");
}

std::vector<std::filesystem::path> MissingFolders(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> missing;
    std::error_code error;
    for (std::filesystem::path one = folder; !one.empty() && !std::filesystem::exists(one, error); one = one.parent_path())
    {
        missing.push_back(one);
    }
    return missing;
}

} // namespace

FileExchange::FileExchange(const std::filesystem::path& targetFolder)
    : folder(targetFolder), stage(targetFolder / ".velox-kws-new"), madeFolders(MissingFolders(targetFolder))
{
    std::error_code error;
    // What a run left that was killed.
    std::filesystem::remove_all(stage, error);
    std::filesystem::create_directories(stage / "old", error);
    if (!std::filesystem::is_directory(stage / "old"))
    {
        RemoveStage();
        Fail(folder, "no file can be made in this folder");
    }
}

FileExchange::~FileExchange()
{
    if (!kept)
    {
        Undo();
    }
}

void FileExchange::Add(const std::filesystem::path& name, std::span<const uint8_t> bytes)
{
    WriteWhole(stage / name, bytes);
    names.push_back(name);
}

void FileExchange::Move(const std::filesystem::path& from, const std::filesystem::path& to) const
{
    std::error_code error;
    std::filesystem::rename(from, to, error);
    if (error)
    {
        Fail(folder / to.filename(), "the file may be write-protected or open in another program");
    }
}

void FileExchange::PutInPlace()
{
    for (const std::filesystem::path& name : names)
    {
        moved.push_back({name});
        if (std::filesystem::exists(folder / name))
        {
            Move(folder / name, stage / "old" / name);
            moved.back().hadOld = true;
        }
        Move(stage / name, folder / name);
        moved.back().isNew = true;
    }
}

void FileExchange::Keep()
{
    kept = true;
    std::error_code ignored;
    std::filesystem::remove_all(stage, ignored);
}

void FileExchange::Undo()
{
    std::error_code ignored;
    for (const Moved& file : moved)
    {
        if (file.isNew)
        {
            std::filesystem::remove(folder / file.name, ignored);
        }
        if (file.hadOld)
        {
            std::filesystem::rename(stage / "old" / file.name, folder / file.name, ignored);
        }
    }
    RemoveStage();
}

/// A folder that was made vanishes only when nobody put anything into it.
void FileExchange::RemoveStage()
{
    std::error_code ignored;
    std::filesystem::remove_all(stage, ignored);
    for (const std::filesystem::path& made : madeFolders)
    {
        std::filesystem::remove(made, ignored);
    }
}

} // namespace velox::console
