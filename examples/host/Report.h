#pragma once

#include <string>

/// Tells the reader what happens, and counts what came out otherwise than expected.
class Report
{
public:
    /// Begins a numbered step.
    void Step(const std::string& title);

    /// A line of explanation.
    void Say(const std::string& text) const;

    /// A line for something that was expected, and whether it came so.
    void Expect(const std::string& expectation, bool met);

    /// The last line. Returns whether everything came as expected.
    bool Conclude() const;

private:
    int steps = 0;
    int expectations = 0;
    int failures = 0;
};
