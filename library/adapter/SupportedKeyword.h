#pragma once

#include <cstdint>

/// The one keyword that is announced, trained and armed; 0 stands for none.
inline constexpr uint32_t SupportedKeywordId = 1;
