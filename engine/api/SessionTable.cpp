#include "engine/api/SessionTable.h"

#include <limits>

namespace velox::engine
{

uint32_t SessionTable::Add(std::unique_ptr<EngineSession> session)
{
    auto entry = std::make_unique<Entry>();
    entry->session = std::move(session);
    const std::lock_guard lock(changes);
    for (uint32_t tried = 0; tried < Slots && lastHandle < std::numeric_limits<uint32_t>::max(); ++tried)
    {
        ++lastHandle;
        std::atomic<Entry*>& slot = entries[lastHandle % Slots];
        if (slot.load() == nullptr)
        {
            entry->handle = lastHandle;
            slot.store(entry.release());
            return lastHandle;
        }
    }
    return 0;
}

EngineSession* SessionTable::Find(uint32_t handle) const
{
    const Entry* entry = entries[handle % Slots].load();
    return entry != nullptr && entry->handle == handle ? entry->session.get() : nullptr;
}

bool SessionTable::Remove(uint32_t handle)
{
    const std::lock_guard lock(changes);
    std::atomic<Entry*>& slot = entries[handle % Slots];
    if (const Entry* entry = slot.load(); entry != nullptr && entry->handle == handle)
    {
        delete slot.exchange(nullptr);
        return true;
    }
    return handle != 0 && handle <= lastHandle;
}

} // namespace velox::engine
