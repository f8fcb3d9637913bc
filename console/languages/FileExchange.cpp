#include "console/languages/FileExchange.h"

#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <fmt/format.h>

#include <fstream>
#include <optional>
#include <thread>

namespace velox::console
{

namespace
{

// The journal's first line; then a line for each file, after a sign whether it was there before.
constexpr std::string_view Placing = "placing";
constexpr std::string_view Placed = "placed";
constexpr char WasThere = '+';
constexpr char WasNotThere = '-';

std::filesystem::path FormerFile(std::filesystem::path file)
{
    return file += ".velox-kws-old";
}

/// What WriteWhole had not finished.
void RemoveUnfinished(std::filesystem::path file)
{
    std::error_code ignored;
    std::filesystem::remove(file += ".velox-kws-new", ignored);
}

/// Undoes the exchange of a journal, or finishes one that was kept. May be killed and done again.
/// @return the file that is in the way; the journal then stays
std::optional<std::filesystem::path> Settle(const std::filesystem::path& journal)
{
    std::ifstream stream(journal, std::ios::binary);
    std::string line;
    std::getline(stream, line);
    const bool finish = line == Placed;
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

/// A file that this process alone has open, and what was made for it.
struct LockedFile
{
    LockedFile() = default;
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;
    ~LockedFile()
    {
        std::error_code ignored;
        opened.reset();
        for (const std::filesystem::path& path : made)
        {
            std::filesystem::remove(path, ignored);
        }
    }

    /// The folder may go with another run's lock.
    bool Open(const std::filesystem::path& file)
    {
        std::error_code error;
        made.clear();
        for (auto above = file.parent_path(); !std::filesystem::exists(above, error) && above != above.parent_path();
             above = above.parent_path())
        {
            made.push_back(above);
        }
        std::filesystem::create_directories(file.parent_path(), error);
        opened = OpenAlone(file);
        made.insert(made.begin(), opened ? 1 : 0, file);
        return opened != nullptr;
    }

    std::vector<std::filesystem::path> made; ///< the innermost first
    std::shared_ptr<std::FILE> opened;
};

} // namespace

std::shared_ptr<void> LockFile(const std::filesystem::path& file, std::chrono::milliseconds patience)
{
    const auto lock = std::make_shared<LockedFile>();
    const std::string folder = Utf8(file.parent_path());
    const auto limit = std::chrono::steady_clock::now() + patience;
    for (int missing = 0; !lock->Open(file); std::this_thread::sleep_for(std::chrono::milliseconds(20)))
    {
        std::error_code error;
        missing += std::filesystem::exists(file, error) ? 0 : 1;
        if (missing > 2) // it may go just when it is looked for
        {
            throw CommandFailure(ExitCode::WriteFailed, "Cannot write to " + folder + ": no file can be made in this folder.",
                                 "Choose another place, or make this one writable. What was there is unchanged.");
        }
        if (std::chrono::steady_clock::now() > limit)
        {
            std::string holder;
            std::getline(std::ifstream(file), holder);
            throw CommandFailure(ExitCode::WriteFailed, fmt::format("Another run is writing to {}: {}.", folder, holder),
                                 "Wait for its end, or end it. Nothing was changed.");
        }
        StopIfInterrupted();
    }
    using namespace std::chrono;
    const auto now = system_clock::now();
    const year_month_day date(floor<days>(now));
    const hh_mm_ss time(now - floor<days>(now));
    fmt::print(lock->opened.get(), " since {}-{:02}-{:02} {:02}:{:02} UTC\n", static_cast<int>(date.year()),
               static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), time.hours().count(),
               time.minutes().count());
    static_cast<void>(std::fflush(lock->opened.get())); // who waits reads it; the lock holds without it
    return lock;
}

FileExchange::FileExchange(const std::filesystem::path& targetFolder)
    : folder(targetFolder), journal(targetFolder / ".velox-kws-journal"), lock(LockFile(targetFolder / ".velox-kws-lock"))
{
    if (const auto file = Settle(journal))
    {
        throw CommandFailure(
            ExitCode::WriteFailed, "A run was ended while it replaced " + Utf8(*file) + ", which cannot be put right now.",
            "Close the program that has the file open. What was there before is in " + Utf8(FormerFile(*file)) + ".");
    }
}

FileExchange::~FileExchange()
{
    Settle(journal);
}

void FileExchange::Add(const std::filesystem::path& file, std::vector<uint8_t> bytes)
{
    files.emplace_back(folder / file, std::move(bytes));
}

void FileExchange::PutInPlace()
{
    for (const auto& [path, bytes] : files)
    {
        listed += (std::filesystem::exists(path) ? WasThere : WasNotThere) + Utf8(path) + '\n';
    }
    WriteWhole(journal, fmt::format("{}\n{}", Placing, listed));
    for (const auto& [path, bytes] : files)
    {
        if (std::filesystem::exists(path))
        {
            WriteWhole(FormerFile(path), ReadWhole(path));
        }
    }
    for (const auto& [path, bytes] : files)
    {
        WriteWhole(path, bytes);
    }
}

void FileExchange::Keep()
{
    WriteWhole(journal, fmt::format("{}\n{}", Placed, listed));
}

} // namespace velox::console
