#include "ResultName.h"

#include <cstdio>

namespace
{

const char* Name(HRESULT result)
{
    switch (result)
    {
    case S_OK:
        return "S_OK";
    case S_FALSE:
        return "S_FALSE";
    case E_FAIL:
        return "E_FAIL";
    case E_POINTER:
        return "E_POINTER";
    case E_OUTOFMEMORY:
        return "E_OUTOFMEMORY";
    case E_INVALIDARG:
        return "E_INVALIDARG";
    case E_NOTIMPL:
        return "E_NOTIMPL";
    default:
        return "(no name known here)";
    }
}

} // namespace

std::string ResultName(HRESULT result)
{
    char digits[16];
    std::snprintf(digits, sizeof(digits), "0x%08X ", static_cast<unsigned int>(result));
    return digits + std::string(Name(result));
}
