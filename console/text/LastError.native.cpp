#include "console/text/LastError.h"

#include <cerrno>
#include <system_error>

namespace velox::console
{

std::string LastError()
{
    return std::generic_category().message(errno);
}

} // namespace velox::console
