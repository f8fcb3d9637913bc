// make-models FOLDER: writes the models of the tones' language (TinyLanguage), which needs no training, into the folder, named as
// those that are packed.
#include "engine/models/AcousticModel.h"
#include "engine/models/PhraseModel.h"
#include "engine/models/Population.h"
#include "tests/engine/support/TinyLanguage.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

using namespace velox::engine;

namespace
{

void Write(const std::filesystem::path& file, std::string_view text)
{
    std::ofstream stream(file, std::ios::binary);
    stream.exceptions(std::ios::badbit | std::ios::failbit);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void Write(const std::filesystem::path& file, const std::vector<uint8_t>& bytes)
{
    Write(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        return 2;
    }
    const std::filesystem::path folder(argv[1]);
    Write(folder / "kp_1033.bin", WritePhraseModel(TinyLanguage::Phrase()));
    Write(folder / "am_1033.bin", WriteAcousticModel(TinyLanguage::Acoustic()));
    Write(folder / "zn_1033.bin", WritePopulation(TinyLanguage::Background()));
    Write(folder / "fw_1033.bin", WritePhraseModel(TinyLanguage::Phrase()));
    Write(folder / "kpd_pre_1033.txt", "70");
    Write(folder / "kpd_user_1033.txt", "60");
    Write(folder / "constraints.txt", "");
    return 0;
}
