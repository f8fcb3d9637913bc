#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// What every target defines: one run with one input. Runs know nothing of one another.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

/// A finding, with its place in the stack trace, when something does not hold.
inline void Expect(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}
