#pragma once

#include <cstdint>

/// How much memory the process holds. Asking allocates nothing.
class ResidentMemory
{
public:
    ResidentMemory();
    ResidentMemory(const ResidentMemory&) = delete;
    ResidentMemory& operator=(const ResidentMemory&) = delete;
    ~ResidentMemory();

    uint64_t Bytes() const;

private:
    int file = -1; ///< natively the system's figures, open from the beginning on
};
