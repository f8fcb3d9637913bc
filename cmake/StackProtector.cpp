// What functions that are compiled with -fstack-protector-strong need of their program or DLL: the value that they put between
// their arrays and their return address, and what ends the process when that was overwritten. Each module has its own.
//
// The compiler's library for this asks a cryptographic provider for the value; that loads DLLs within the system loader's lock,
// which nothing may do that runs while a module is loaded. Here it is made of what differs between processes; no DLL is loaded.
#include <windows.h>

#include <cstdint>

// The names are the compiler's.
extern "C"
{

    uintptr_t __stack_chk_guard = 0;

    /// Windows ends the process with STATUS_STACK_BUFFER_OVERRUN; nothing more of it runs: its stack is not its own any more.
    [[noreturn]] void __stack_chk_fail()
    {
        asm volatile("int $0x29" : : "c"(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE));
        __builtin_unreachable();
    }

} // extern "C"

namespace
{

/// Runs before any other code of the module.
[[gnu::constructor(101)]] void ChooseStackGuard()
{
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    const uint64_t parts[] = {time.dwLowDateTime,
                              static_cast<uint64_t>(counter.QuadPart),
                              GetCurrentProcessId(),
                              GetCurrentThreadId(),
                              reinterpret_cast<uintptr_t>(&time),               // where the system put the stack
                              reinterpret_cast<uintptr_t>(&__stack_chk_guard)}; // and the module
    uint64_t value = 0;
    for (const uint64_t part : parts)
    {
        value = (value ^ part) * 0x9E3779B97F4A7C15; // odd, so that nothing is lost, with bits all over
    }
    // Its first byte is 0: what is read or copied as a text ends before it.
    __stack_chk_guard = value & ~uint64_t{0xFF};
}

} // namespace
