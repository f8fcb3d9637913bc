#include "console/text/WriteWhole.h"

#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"
#include "console/text/LastError.h"
#include "console/text/Utf8Path.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace velox::console
{

namespace
{

/// A file beside another, which vanishes unless it takes the other's place.
class Beside
{
public:
    explicit Beside(const std::filesystem::path& file) : target(file), path(file)
    {
        path += ".velox-kws-new";
    }

    Beside(const Beside&) = delete;
    Beside& operator=(const Beside&) = delete;

    ~Beside()
    {
        std::error_code ignored;
        if (mine)
        {
            std::filesystem::remove(path, ignored);
        }
    }

    void Write(std::span<const uint8_t> bytes)
    {
        std::ofstream stream(path, std::ios::binary | std::ios::trunc);
        mine = stream.is_open();
        if (!mine ||
            !stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size())).flush())
        {
            Fail();
        }
    }

    void TakeItsPlace()
    {
        std::error_code error;
        std::filesystem::rename(path, target, error);
        if (error)
        {
            Fail();
        }
        mine = false;
    }

private:
    [[noreturn]] void Fail() const
    {
        throw CommandFailure(ExitCode::WriteFailed, "Cannot write " + Utf8(target) + ": " + LastError() + ".",
                             "Choose another place, or make this one writable. What was there is unchanged.");
    }

    std::filesystem::path target;
    std::filesystem::path path;
    bool mine = false;
};

} // namespace

void WriteWhole(const std::filesystem::path& file, std::span<const uint8_t> bytes)
{
    StopIfInterrupted();
    Beside beside(file);
    beside.Write(bytes);
    StopIfInterrupted();
    beside.TakeItsPlace();
}

void WriteWhole(const std::filesystem::path& file, std::string_view text)
{
    WriteWhole(file, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
}

std::vector<uint8_t> ReadWhole(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream.is_open() || stream.bad())
    {
        throw CommandFailure(ExitCode::BadInput, "Cannot read " + Utf8(file) + ".",
                             "Check the name, and that you may read the file.");
    }
    return bytes;
}

} // namespace velox::console
