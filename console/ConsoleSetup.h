#pragma once

#include <windows.h>

namespace velox::console
{

/// Makes the console show UTF-8 and colours while the program runs; afterwards it is as it was. Line ends are written as they
/// are.
class ConsoleSetup
{
public:
    ConsoleSetup();
    ConsoleSetup(const ConsoleSetup&) = delete;
    ConsoleSetup& operator=(const ConsoleSetup&) = delete;
    ~ConsoleSetup();

    bool OutputIsTerminal() const
    {
        return outputIsTerminal;
    }

    bool ErrorsAreTerminal() const
    {
        return errorsAreTerminal;
    }

private:
    UINT formerCodePage;
    bool outputIsTerminal;
    bool errorsAreTerminal;
};

} // namespace velox::console
