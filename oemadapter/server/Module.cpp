#include "oemadapter/server/Module.h"

#include <atomic>
#include <memory>

namespace velox::oemadapter
{

namespace
{

/// Without a lock, which would have to be made when the module is loaded.
std::atomic<Module*> module = nullptr;

} // namespace

Module& TheModule()
{
    if (Module* const made = module; made != nullptr)
    {
        return *made;
    }
    auto fresh = std::make_unique<Module>();
    Module* other = nullptr;
    return *(module.compare_exchange_strong(other, fresh.get()) ? fresh.release() : other);
}

void EndModule()
{
    delete module.exchange(nullptr);
}

} // namespace velox::oemadapter
