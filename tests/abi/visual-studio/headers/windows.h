#pragma once

#define STDMETHODCALLTYPE __stdcall

// The few Windows types that the headers of library and OEM adapter use, as they are for 64-bit Windows.
using BOOL = int;
using BYTE = unsigned char;
using DWORD = unsigned long;
using HRESULT = long;
using LANGID = unsigned short;
using LONG = long;
using LSTATUS = long;
using ULONG = unsigned long;
using ULONG64 = unsigned long long;
using WCHAR = wchar_t;

struct _GUID
{
    unsigned long Data1;
    unsigned short Data2;
    unsigned short Data3;
    unsigned char Data4[8];
};
using GUID = _GUID;
using IID = _GUID;
