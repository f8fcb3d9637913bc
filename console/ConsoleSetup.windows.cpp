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

/// Whether the stream is a console that takes colours and cursor movements.
bool PrepareTerminal(DWORD stream)
{
    const HANDLE handle = GetStdHandle(stream);
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) && SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

} // namespace

ConsoleSetup::ConsoleSetup()
    : formerCodePage(GetConsoleOutputCP()), outputIsTerminal(PrepareTerminal(STD_OUTPUT_HANDLE)),
      errorsAreTerminal(PrepareTerminal(STD_ERROR_HANDLE))
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
