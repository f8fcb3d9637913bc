#pragma once

#include "IVeloxKeywordDetectorLogger.h"

#include <windows.h>

#include <objidl.h>

#include <cstdint>

// The user's model in the caller's stream: its bytes and nothing else, beginning with "VWOV". These functions log with source 1;
// the adapter's operations call them, in the order in which they stand here.

/// @return zero or positive when the stream begins with "VWOV"; E_FAIL when it does not; E_OUTOFMEMORY; the stream's failure code
HRESULT CheckIStreamForUserModel(IStream* stream, IVeloxKeywordDetectorLogger* logger);

/// Reads the whole stream.
/// @param data  receives a new block, which the caller releases with delete[], also on failure
/// @param size  receives the block's length in bytes
/// @return the read's own result, of which the caller takes any but S_OK as a failure; E_FAIL without memory; the failing seek's
///     code
HRESULT GetUserModelFromIStream(IStream* stream, uint8_t*& data, uint32_t& size, IVeloxKeywordDetectorLogger* logger);

/// Makes `data` the stream's whole content and commits it.
/// @return the code of the failing call. A commit that fails but is reverted is a success, and so is a write that claims success
///     for fewer bytes. Kept: callers rely on both.
HRESULT WriteModelToIStream(IStream* stream, const uint8_t* data, uint32_t size, IVeloxKeywordDetectorLogger* logger);
