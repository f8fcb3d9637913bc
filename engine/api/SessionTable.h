#pragma once

#include "engine/api/EngineSession.h"

#include <array>
#include <atomic>
#include <mutex>

namespace velox::engine
{

/// The open sessions by their handles. Handles are never 0 and never reused. Looking a session up takes no lock; sessions of
/// different handles may be used, created and destroyed from different threads at the same time.
class SessionTable
{
public:
    static constexpr uint32_t Slots = 64;

    /// @return 0 when all slots are taken, or all handles used up
    uint32_t Add(std::unique_ptr<EngineSession> session);

    /// @return null for a handle that is not open
    EngineSession* Find(uint32_t handle) const;

    /// @return false for a handle beyond any that was given out; a second removal is accepted
    bool Remove(uint32_t handle);

private:
    struct Entry
    {
        uint32_t handle = 0;
        std::unique_ptr<EngineSession> session;
    };

    std::array<std::atomic<Entry*>, Slots> entries{};
    std::mutex changes;
    uint32_t lastHandle = 0;
};

} // namespace velox::engine
