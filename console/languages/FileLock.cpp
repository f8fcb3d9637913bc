#include "console/languages/FileLock.h"

#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"

#include <fmt/format.h>

#include <fstream>
#include <thread>
#include <vector>

namespace velox::console
{

namespace
{

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
        std::filesystem::path missing = file.parent_path();
        for (made.clear(); !std::filesystem::exists(missing, error) && missing != missing.parent_path();
             missing = missing.parent_path())
        {
            made.push_back(missing);
        }
        std::filesystem::create_directories(file.parent_path(), error);
        opened = OpenAlone(file);
        if (opened)
        {
            made.insert(made.begin(), file);
        }
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
            throw CommandFailure(ExitCode::WriteFailed, "Another run is writing to " + folder + ": " + holder + ".",
                                 "Wait for its end, or end it. Nothing was changed.");
        }
        StopIfInterrupted();
    }
    using namespace std::chrono;
    const auto now = system_clock::now();
    const year_month_day date(floor<days>(now));
    const hh_mm_ss time(floor<seconds>(now - floor<days>(now)));
    fmt::print(lock->opened.get(), " since {}-{:02}-{:02} {:02}:{:02} UTC\n", static_cast<int>(date.year()),
               static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), time.hours().count(),
               time.minutes().count());
    std::fflush(lock->opened.get());
    return lock;
}

} // namespace velox::console
