#pragma once

#include <cstdint>
#include <string>

namespace velox::console
{

/// An HRESULT as people read it: "0x80070057 E_INVALIDARG".
std::string ResultText(int32_t result);

/// A status of the keyword engine: "121 TooQuiet: The utterance is too quiet.", or "999" with a note for one that the stand-in
/// does not know.
std::string EngineStatusText(uint32_t status);

} // namespace velox::console
