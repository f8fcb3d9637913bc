#pragma once

#include <windows.h>

#include <string>

/// An HRESULT as people read it: "0x80070057 E_INVALIDARG".
std::string ResultName(HRESULT result);
