#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

TemporaryFolder::TemporaryFolder()
{
    static std::atomic<unsigned int> counter{0};
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    std::filesystem::path folder;
    do
    {
        const std::string name = "velox-test-" + std::to_string(now) + "-" + std::to_string(counter++);
        folder = std::filesystem::temp_directory_path() / name;
    } while (!std::filesystem::create_directory(folder));
    path = folder.string();
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

void WriteWholeFile(const std::string& path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
    {
        throw std::runtime_error("cannot write " + path);
    }
}

std::string ReadWholeFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
