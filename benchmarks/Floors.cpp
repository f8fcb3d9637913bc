#include "benchmarks/Floors.h"

#include <tinyxml2.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>

namespace
{

/// Opens a text file and extracts one number.
void ReadNumber(const std::string& path)
{
    double number = 0.0;
    if (!(std::ifstream(path) >> number))
    {
        throw std::runtime_error("cannot read a number from " + path);
    }
}

} // namespace

void LoadDocumentOnly(const std::string& path)
{
    tinyxml2::XMLDocument document;
    if (document.LoadFile(path.c_str()) != tinyxml2::XML_SUCCESS)
    {
        throw std::runtime_error("cannot load " + path);
    }
}

void LoadDocumentAndThresholdsOnly(const TestConfiguration& configuration, uint16_t languageId)
{
    LoadDocumentOnly(configuration.Path());
    const std::string suffix = std::to_string(languageId) + ".txt";
    ReadNumber(configuration.Directory() + "\\kpd_pre_" + suffix);
    ReadNumber(configuration.Directory() + "\\kpd_user_" + suffix);
    ReadNumber(configuration.Directory() + "\\kpd_user_" + suffix);
}

std::unique_ptr<uint8_t[]> ReadFileOnly(const std::string& path)
{
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    const bool opened = file >= 0 && fstat(file, &status) == 0;
    const auto length = static_cast<std::size_t>(opened ? status.st_size : 0);
    std::unique_ptr<uint8_t[]> block(new uint8_t[length]);
    const bool complete = opened && read(file, block.get(), length) == status.st_size;
    close(file);
    if (!complete)
    {
        throw std::runtime_error("cannot read " + path);
    }
    return block;
}
