#include "ConsoleSetup.h"

namespace velox::console
{

namespace
{

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
}

ConsoleSetup::~ConsoleSetup()
{
    SetConsoleOutputCP(formerCodePage);
}

} // namespace velox::console
