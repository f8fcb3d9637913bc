#pragma once

#include <sndfile.h>

#include <filesystem>
#include <memory>

namespace velox::console
{

struct CloseSound
{
    void operator()(SNDFILE* sound) const
    {
        sf_close(sound);
    }
};
using OpenedSound = std::unique_ptr<SNDFILE, CloseSound>;

/// Opens a sound file for reading, whatever letters its name has. @return null when it is none
OpenedSound OpenSound(const std::filesystem::path& file, SF_INFO* info);

} // namespace velox::console
