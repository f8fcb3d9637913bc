#include "console/audio/OpenSound.h"

namespace velox::console
{

OpenedSound OpenSound(const std::filesystem::path& file, SF_INFO* info)
{
    return OpenedSound(sf_open(file.c_str(), SFM_READ, info));
}

} // namespace velox::console
