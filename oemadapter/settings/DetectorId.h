#pragma once

#include <windows.h>

namespace velox::oemadapter
{

/// Names the detector everywhere: the CLSID that Windows creates the adapter by, the pattern type that the audio driver lists,
/// and the GUID in every arming pattern and result block. An OEM puts its own here, the same as its driver's.
inline constexpr GUID DetectorId{0x3B0E9B6C, 0x5C1D, 0x4A57, {0x8E, 0x07, 0x61, 0xC2, 0xA9, 0x4D, 0x7F, 0x25}};

} // namespace velox::oemadapter
