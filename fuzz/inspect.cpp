// Files of any bytes, as the console's inspect shows them and compares them with an arming pattern.
#include "console/inspect/InspectCommand.h"
#include "console/inspect/Inspection.h"
#include "fuzz/Target.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"
#include "tests/support/TemporaryFolder.h"

using namespace velox::console;

namespace
{

/// Every byte belongs to one field, and every field lies in the file.
void CheckFields(const Inspection& inspection, std::size_t size)
{
    std::size_t end = 0;
    for (const InspectedField& field : inspection.fields)
    {
        Expect(field.offset == end);
        end += field.size;
    }
    Expect(end == size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static const TemporaryFolder folder;
    static const std::string other = [] {
        const auto pattern = HandMadePattern::Make(TinyLanguage::Phrase(), 60 * 256);
        const std::string path = folder.Path() + "/pattern";
        WriteWholeFile(path, {reinterpret_cast<const char*>(pattern.data()), pattern.size()});
        return path;
    }();
    CheckFields(Inspect({data, size}), size);

    const std::string path = folder.Path() + "/input";
    WriteWholeFile(path, {reinterpret_cast<const char*>(data), size});
    Expect(!InspectFiles({path}).verdict.empty());
    Expect(InspectFiles({path, path}).exitCode == ExitCode::Success);
    Expect(!InspectFiles({path, other}).verdict.empty());
    return 0;
}
