#include "console/languages/FileExchange.h"

#include <fmt/format.h>

#include <windows.h>

#include <cstdlib>
#include <share.h>

namespace velox::console
{

std::shared_ptr<std::FILE> OpenAlone(const std::filesystem::path& file)
{
    std::FILE* opened = _wfsopen(file.c_str(), L"w", _SH_DENYWR);
    if (opened == nullptr)
    {
        return nullptr;
    }
    const char* computer = std::getenv("COMPUTERNAME");
    fmt::print(opened, "process {} on {}", GetCurrentProcessId(), computer == nullptr ? "this computer" : computer);
    return {opened, std::fclose};
}

} // namespace velox::console
