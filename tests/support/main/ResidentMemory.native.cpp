#include "tests/support/main/ResidentMemory.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

ResidentMemory::ResidentMemory() : file(open("/proc/self/statm", O_RDONLY | O_CLOEXEC))
{
}

ResidentMemory::~ResidentMemory()
{
    close(file);
}

uint64_t ResidentMemory::Bytes() const
{
    // All pages, resident pages, ...
    std::array<char, 128> text{};
    if (pread(file, text.data(), text.size() - 1, 0) <= 0)
    {
        return 0;
    }
    char* second = nullptr;
    std::strtoull(text.data(), &second, 10);
    return std::strtoull(second, nullptr, 10) * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}
