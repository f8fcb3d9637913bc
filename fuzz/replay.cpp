// The main function of a target outside of libFuzzer: runs it over every file of the folders that are named.
#include "fuzz/Target.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace
{

/// In memory of its own length, so that a read behind its end is seen.
void Run(const std::filesystem::path& path)
{
    std::printf("%s\n", path.filename().c_str());
    std::fflush(stdout);
    std::ifstream file(path, std::ios::binary);
    std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    bytes.shrink_to_fit();
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char** argv)
{
    int runs = 0;
    for (int i = 1; i < argc; ++i)
    {
        for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::absolute(argv[i])))
        {
            Run(entry.path());
            ++runs;
        }
    }
    return runs > 0 ? 0 : 1;
}
