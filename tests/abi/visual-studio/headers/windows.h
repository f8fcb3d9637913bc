#pragma once

// The few Windows types that the library's headers use, as they are for 64-bit Windows.
using BOOL = int;
using BYTE = unsigned char;
using DWORD = unsigned long;
using HRESULT = long;
using LSTATUS = long;

struct _GUID
{
    unsigned long Data1;
    unsigned short Data2;
    unsigned short Data3;
    unsigned char Data4[8];
};
using GUID = _GUID;
