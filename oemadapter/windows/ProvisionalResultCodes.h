#pragma once

#include <windows.h>

// Result codes that Windows names for adapters and whose values no public page gives. PROVISIONAL: the values are the adapter's
// own, from the range that is free for interfaces. Whoever has the SDK that defines them puts its values here; nothing else
// changes.

/// Verification: the keyword is not in the recording.
inline constexpr HRESULT E_NO_MATCH = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x0201);

// Verification, second generation: what is wrong with the voice. The library does not tell them apart.
inline constexpr HRESULT E_VOICE_TOO_SOFT = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x0202);
inline constexpr HRESULT E_VOICE_TOO_LOUD = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x0203);
inline constexpr HRESULT E_VOICE_TOO_SLOW = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x0204);
inline constexpr HRESULT E_VOICE_TOO_FAST = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x0205);
inline constexpr HRESULT E_VOICE_PROCESSING_ERROR = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x0206);

/// Parsing, first generation: nothing was detected, the hardware lost its state and has to be armed again. A result block has no
/// sign of it, so the adapter never says so.
inline constexpr HRESULT E_HW_RESET = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x0207);
