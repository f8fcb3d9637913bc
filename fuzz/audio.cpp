// Sound files of any bytes, as the console reads recordings.
#include "console/audio/AudioFile.h"
#include "console/text/CommandFailure.h"
#include "fuzz/Target.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (bytes.starts_with("OggS"))
    {
        return -1; // On Windows no Ogg is decoded; the distribution's decoder loses memory over a cut file.
    }
    static const TemporaryFolder folder;
    const std::string path = folder.Path() + "/sound";
    WriteWholeFile(path, bytes);
    try
    {
        const velox::console::Audio audio = velox::console::ReadAudio(path);
        Expect(!audio.samples.empty() && audio.seconds > 0.0);
        Expect(std::ranges::all_of(audio.samples, [](float sample) { return std::isfinite(sample); }));
    }
    catch (const velox::console::CommandFailure& failure)
    {
        Expect(failure.exitCode == velox::console::ExitCode::BadInput);
    }
    return 0;
}
