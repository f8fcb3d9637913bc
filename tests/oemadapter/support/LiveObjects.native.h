#pragma once

#include <cstddef>

/// Objects of the doubles here that still have an owner.
inline std::size_t liveObjects = 0;
