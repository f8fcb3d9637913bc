#pragma once

#include "VeloxExport.h"

namespace KeywordDetectorAdapterImplementation
{

/// Deleter of the objects that the two factories return.
///
/// It releases the object's storage and runs no destructor. For an adapter this means: no "Destructor." log line, and the
/// configuration reader that the adapter owns is not released. Who wants the destructor to run takes the object out with
/// `release()` and deletes it through its virtual destructor. Kept: callers link against exactly this behaviour.
struct VELOX_EXPORT AdapterCustomDeleter
{
    /// Does nothing for a null pointer; otherwise hands `object` to the global operator delete.
    void operator()(void* object);
};

} // namespace KeywordDetectorAdapterImplementation
