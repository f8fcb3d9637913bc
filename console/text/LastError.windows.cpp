#include "console/text/LastError.h"

#include <windows.h>

#include <system_error>

namespace velox::console
{

std::string LastError()
{
    return std::system_category().message(static_cast<int>(GetLastError()));
}

} // namespace velox::console
