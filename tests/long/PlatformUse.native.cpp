#include "tests/long/PlatformUse.h"

#include "tests/support/MediaFoundation.h"
#include "tests/support/RegistryDouble.h"
#include "tests/support/TaskMemory.h"

void WatchPlatform()
{
}

std::vector<PlatformFigure> PlatformUse(int64_t /*heapGrowth*/)
{
    return {{"blocks of task memory", static_cast<int64_t>(LiveTaskMemoryBlocks()), 0},
            {"media types", static_cast<int64_t>(LiveMediaTypes()), 0},
            {"registry keys", static_cast<int64_t>(OpenRegistryKeys()), 0}};
}
