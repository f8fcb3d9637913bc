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

    /// Whether the output is a terminal that knows escape sequences.
    bool OutputTakesColours() const
    {
        return outputTakesColours;
    }

    bool ErrorsAreTerminal() const
    {
        return errorsAreTerminal;
    }

private:
    UINT formerCodePage;
    bool outputTakesColours;
    bool errorsAreTerminal;
};

} // namespace velox::console
