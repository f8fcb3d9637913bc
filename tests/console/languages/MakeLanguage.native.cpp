#include "console/languages/MakeLanguage.h"

#include "console/text/Utf8Path.h"
#include "tests/console/support/LanguageMaterialFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <thread>
#include <unistd.h>

namespace MakeLanguageFaultsTests
{

using namespace velox::console;

Report Make(const LanguageRequest& request)
{
    Progress progress(nullptr);
    const LogOptions log;
    Context context{progress, log};
    return MakeLanguage(request, context, [](const LanguageRequest&, std::span<const float>) {});
}

/// A process that makes a language and is held up where it writes the configuration, the last file: what it writes to, beside the
/// place, is a pipe that nobody reads.
class HeldUp
{
public:
    HeldUp(const LanguageRequest& request, const std::string& pipe)
    {
        EXPECT_EQ(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
        process = fork();
        if (process == 0)
        {
            Make(request);
            _exit(0);
        }
    }

    /// @return whether the file appears before the process ends
    bool Writes(const std::filesystem::path& file) const
    {
        while (!std::filesystem::exists(file))
        {
            if (waitpid(process, nullptr, WNOHANG) != 0)
            {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }

    /// @return whether it was the kill that ended it
    bool Kill() const
    {
        int status = 0;
        kill(process, SIGKILL);
        return waitpid(process, &status, 0) == process && WIFSIGNALED(status);
    }

private:
    pid_t process = -1;
};

TEST(MakeLanguageFaults, KilledBeforeTheConfigurationItIsUndoneByTheNextEvenIfThatFailsAtOnce)
{
    const LanguageMaterialFolder folder;
    const LanguageRequest request = folder.Request();
    {
        const HeldUp run(request, folder.Path("config.xml.velox-kws-new"));
        ASSERT_TRUE(run.Writes(request.folder / "constraints.txt"));
        EXPECT_TRUE(run.Kill());
    }
    EXPECT_FALSE(std::filesystem::exists(request.configuration));
    for (const char* name : {"kp_1033.bin", "am_1033.bin", "zn_1033.bin", "fw_1033.bin", "kpd_pre_1033.txt", "kpd_user_1033.txt"})
    {
        EXPECT_GT(std::filesystem::file_size(request.folder / name), 0U) << name;
    }
    LanguageRequest malformed = request;
    malformed.configuration = PathFromUtf8(folder.Path("malformed.xml"));
    WriteWholeFile(folder.Path("malformed.xml"), "<a>");
    EXPECT_THROW(Make(malformed), CommandFailure);
    EXPECT_TRUE(std::filesystem::is_empty(request.folder));
    // The one after that makes everything whole.
    EXPECT_EQ(Make(request).exitCode, ExitCode::Success);
    EXPECT_TRUE(std::filesystem::exists(request.configuration));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(request.folder), {}), 7);
}

} // namespace MakeLanguageFaultsTests
