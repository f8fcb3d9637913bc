#include "console/languages/FileExchange.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <fstream>
#include <optional>

namespace velox::console
{

namespace
{

// The journal's first line; then a line for each file, after a sign whether it was there before.
constexpr std::string_view Placing = "placing";
constexpr std::string_view Placed = "placed";
constexpr char WasThere = '+';
constexpr char WasNotThere = '-';

std::filesystem::path WithEnding(std::filesystem::path file, const char* ending)
{
    return file += ending;
}

std::filesystem::path FormerFile(const std::filesystem::path& file)
{
    return WithEnding(file, ".velox-kws-old");
}

/// What WriteWhole had not finished.
void RemoveUnfinished(const std::filesystem::path& file)
{
    std::error_code ignored;
    std::filesystem::remove(WithEnding(file, ".velox-kws-new"), ignored);
}

/// Undoes the exchange of a journal, or finishes one whose files were all placed. May be killed and done again.
/// @return the file that is in the way; the journal then stays
std::optional<std::filesystem::path> Settle(const std::filesystem::path& journal, bool undo)
{
    std::ifstream stream(journal, std::ios::binary);
    std::string line;
    std::getline(stream, line);
    const bool finish = line == Placed && !undo;
    std::error_code error;
    while (std::getline(stream, line))
    {
        const std::filesystem::path file = PathFromUtf8(std::string_view(line).substr(1));
        const std::filesystem::path former = FormerFile(file);
        RemoveUnfinished(file);
        RemoveUnfinished(former);
        if (finish || line.front() == WasNotThere)
        {
            std::filesystem::remove(finish ? former : file, error);
        }
        else if (std::error_code ignored; std::filesystem::exists(former, ignored))
        {
            std::filesystem::rename(former, file, error);
        }
        if (error)
        {
            return file;
        }
    }
    stream.close();
    RemoveUnfinished(journal);
    std::filesystem::remove(journal, error);
    return std::nullopt;
}

} // namespace

FileExchange::FileExchange(const std::filesystem::path& targetFolder)
    : folder(targetFolder), journal(targetFolder / ".velox-kws-journal"), lock(LockFile(targetFolder / ".velox-kws-lock"))
{
    if (const auto file = Settle(journal, false))
    {
        throw CommandFailure(
            ExitCode::WriteFailed, "A run was ended while it replaced " + Utf8(*file) + ", which cannot be put right now.",
            "Close the program that has the file open. What was there before is in " + Utf8(FormerFile(*file)) + ".");
    }
}

FileExchange::~FileExchange()
{
    if (std::error_code ignored; !files.empty() && std::filesystem::exists(journal, ignored))
    {
        try
        {
            WriteJournal(false);
        }
        catch (const CommandFailure&)
        {
            // It is undone all the same; a kill meanwhile cannot be survived on a full disk.
        }
        Settle(journal, true);
    }
}

void FileExchange::Add(const std::filesystem::path& file, std::vector<uint8_t> bytes)
{
    files.push_back({folder / file, std::move(bytes)});
}

/// Also after Ctrl-C.
void FileExchange::WriteJournal(bool placed) const
{
    const std::filesystem::path fresh = WithEnding(journal, ".velox-kws-new");
    std::ofstream stream(fresh, std::ios::binary | std::ios::trunc);
    stream << (placed ? Placed : Placing) << '\n';
    for (const File& file : files)
    {
        stream << (file.wasThere ? WasThere : WasNotThere) << Utf8(file.path) << '\n';
    }
    stream.close();
    std::error_code error;
    if (stream)
    {
        std::filesystem::rename(fresh, journal, error);
    }
    if (!stream || error)
    {
        throw CommandFailure(ExitCode::WriteFailed, "Cannot write " + Utf8(journal) + ": the disk may be full.",
                             "Make room, or choose another place. What was there is unchanged.");
    }
}

void FileExchange::PutInPlace()
{
    for (File& file : files)
    {
        file.wasThere = std::filesystem::exists(file.path);
    }
    WriteJournal(false);
    for (const File& file : files)
    {
        if (file.wasThere)
        {
            WriteWhole(FormerFile(file.path), ReadWhole(file.path));
        }
    }
    for (const File& file : files)
    {
        WriteWhole(file.path, file.bytes);
    }
    WriteJournal(true);
}

void FileExchange::Keep()
{
    files.clear();
    Settle(journal, false);
}

} // namespace velox::console
