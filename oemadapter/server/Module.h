#pragma once

#include "oemadapter/detector/Detector.h"

#include <atomic>
#include <cstdint>

namespace velox::oemadapter
{

/// What is in use of the module. It is on the heap and ends when the module is unloaded, and not with the process: by then
/// Windows has ended the other threads wherever they were, so that what they were changing must not be touched.
struct Module
{
    Detector detector;
    std::atomic<uint32_t> factories = 0;
    std::atomic<uint32_t> locks = 0; ///< of IClassFactory::LockServer

    bool IsInUse() const
    {
        return detector.Users() > 0 || factories > 0 || locks > 0;
    }
};

/// The module's state; made by the first call.
Module& TheModule();

/// Ends it, while the module is being unloaded: nothing of the module is used any more. The library is closed and its last line
/// logged, within the system loader's lock: that waits for no other thread and loads no module.
void EndModule();

} // namespace velox::oemadapter
