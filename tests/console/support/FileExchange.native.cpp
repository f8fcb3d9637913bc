// Stands for Windows' exclusive opening where the console's portable half is tested.
#include "console/languages/FileExchange.h"

#include <sys/file.h>
#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

namespace velox::console
{

std::shared_ptr<std::FILE> OpenAlone(const std::filesystem::path& file)
{
    const int descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    struct stat mine
    {
    };
    struct stat there
    {
    };
    // Whoever had it may have removed it meanwhile.
    if (descriptor < 0 || flock(descriptor, LOCK_EX | LOCK_NB) != 0 || fstat(descriptor, &mine) != 0 ||
        stat(file.c_str(), &there) != 0 || mine.st_ino != there.st_ino || ftruncate(descriptor, 0) != 0)
    {
        close(descriptor);
        return nullptr;
    }
    std::FILE* opened = fdopen(descriptor, "w");
    std::fprintf(opened, "process %d on this computer", getpid());
    return {opened, std::fclose};
}

} // namespace velox::console
