#include "console/hosting/LibraryLoading.h"

#include "console/text/CommandFailure.h"

#include <windows.h>

namespace velox::console
{

void RequireLibrary()
{
    // It stays loaded as long as the process lives.
    if (LoadLibraryW(L"VeloxHwKwsImpl.dll") == nullptr)
    {
        throw CommandFailure(ExitCode::LibraryFailure,
                             "VeloxHwKwsImpl.dll, or a DLL that it needs, cannot be loaded (Windows error " +
                                 std::to_string(GetLastError()) + ").",
                             "velox-kws doctor tells what is missing.");
    }
}

} // namespace velox::console
