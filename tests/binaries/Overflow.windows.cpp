// overflow [TEXT]: prints the value that guards the stack, and copies the text into an array of 16 characters. With a longer one
// the process must end before the function returns.
#include <cstdint>
#include <cstdio>

extern "C" uintptr_t __stack_chk_guard;

namespace
{

[[gnu::noinline]] char Last(const char* text)
{
    char copy[16] = {};
    volatile char* at = copy;
    while (*text != 0)
    {
        *at++ = *text++;
    }
    return copy[15];
}

} // namespace

int main(int argc, char** argv)
{
    std::printf("%016llx\n", static_cast<unsigned long long>(__stack_chk_guard));
    std::fflush(stdout);
    return argc > 1 && Last(argv[1]) == 0 ? 1 : 0;
}
