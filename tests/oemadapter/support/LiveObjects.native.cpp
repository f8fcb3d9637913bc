#include "tests/oemadapter/support/LiveObjects.h"

#include "tests/oemadapter/support/LiveObjects.native.h"
#include "tests/support/MediaFoundation.h"
#include "tests/support/RegistryDouble.h"
#include "tests/support/TaskMemory.h"

std::size_t LivePlatformObjects()
{
    return liveObjects + LiveTaskMemoryBlocks() + LiveMediaTypes() + OpenRegistryKeys();
}
