#include "tests/oemadapter/support/LiveObjects.h"

std::size_t LivePlatformObjects()
{
    return 0;
}
