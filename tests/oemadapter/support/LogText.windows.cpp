#include "tests/oemadapter/support/LogText.h"

#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <chrono>
#include <filesystem>

LogText::LogText()
{
    static std::atomic<unsigned int> counter{0};
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    const std::string name = "velox-log-" + std::to_string(now) + "-" + std::to_string(counter++);
    path = (std::filesystem::temp_directory_path() / name / "adapter.log").u16string();
}

LogText::~LogText()
{
    std::error_code ignored;
    std::filesystem::remove_all(std::filesystem::path(path).parent_path(), ignored);
}

std::string LogText::Read() const
{
    return ReadWholeFile(std::filesystem::path(path).string());
}
