#pragma once

#include <atomic>
#include <cstddef>

/// Objects of the doubles here that still have an owner.
inline std::atomic<std::size_t> liveObjects = 0;
