#include "Report.h"

#include <iostream>

void Report::Step(const std::string& title)
{
    std::cout << "\n" << ++steps << ". " << title << std::endl;
}

void Report::Say(const std::string& text) const
{
    std::cout << "    " << text << std::endl;
}

void Report::Expect(const std::string& expectation, bool met)
{
    ++expectations;
    failures += met ? 0 : 1;
    std::cout << (met ? "    [as expected] " : "    [NOT AS EXPECTED] ") << expectation << std::endl;
}

bool Report::Conclude() const
{
    std::cout << "\n" << expectations - failures << " of " << expectations << " results came as expected." << std::endl;
    return failures == 0;
}
