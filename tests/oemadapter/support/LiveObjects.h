#pragma once

#include <cstddef>

/// What a platform's double has handed out and not got back: blocks of task memory, COM objects, registry keys. Always 0 on
/// Windows, where nobody counts.
std::size_t LivePlatformObjects();
