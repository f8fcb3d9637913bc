#include "console/ConsoleSetup.h"

#include <fcntl.h>
#include <io.h>

namespace velox::console
{

namespace
{

// File descriptors.
constexpr int StandardOutput = 1;
constexpr int StandardError = 2;

bool IsTerminal(DWORD stream)
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != FALSE;
}

/// Wine's console takes the mode, and then shows the sequences as rubbish.
bool ConsoleIsWines()
{
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

/// @return whether the stream is a terminal that heeds escape sequences from now on
bool SwitchOnColours(DWORD stream)
{
    const HANDLE handle = GetStdHandle(stream);
    DWORD mode = 0;
    return !ConsoleIsWines() && GetConsoleMode(handle, &mode) &&
           SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

} // namespace

ConsoleSetup::ConsoleSetup()
    : formerCodePage(GetConsoleOutputCP()), outputTakesColours(SwitchOnColours(STD_OUTPUT_HANDLE)),
      errorsAreTerminal(IsTerminal(STD_ERROR_HANDLE))
{
    SetConsoleOutputCP(CP_UTF8);
    // The same command gives the same bytes wherever they go.
    _setmode(StandardOutput, _O_BINARY);
    _setmode(StandardError, _O_BINARY);
}

ConsoleSetup::~ConsoleSetup()
{
    SetConsoleOutputCP(formerCodePage);
}

} // namespace velox::console
