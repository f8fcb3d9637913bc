#include "oemadapter/server/Module.h"

#include <mutex>
#include <utility>

namespace velox::oemadapter
{

namespace
{

std::mutex mutex;
Module* module = nullptr;

} // namespace

Module& TheModule()
{
    const std::scoped_lock lock(mutex);
    if (module == nullptr)
    {
        module = new Module;
    }
    return *module;
}

void EndModule()
{
    delete std::exchange(module, nullptr);
}

} // namespace velox::oemadapter
