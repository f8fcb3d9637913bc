#include "library/configuration/ConfigurationReader.h"
#include "library/configuration/FilePath.h"

#include <fstream>
#include <limits>
#include <locale>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

/// Rounds half away from zero to Q8 fixed point; saturates where 32 bits end.
/// @param value  a number: a stream extracts no NaN
int32_t ToQ8(double value)
{
    using Limits = std::numeric_limits<int32_t>;
    const double scaled = value > 0.0 ? value * 256.0 + 0.5 : value * 256.0 - 0.5;
    if (scaled >= Limits::max())
    {
        return Limits::max();
    }
    if (scaled <= Limits::min())
    {
        return Limits::min();
    }
    return static_cast<int32_t>(scaled);
}

} // namespace

HRESULT ConfigurationReader::ReadThresholdFile(const std::string& directory, const std::string& fileName, int32_t* value)
{
    std::ifstream file(JoinPath(directory, fileName));
    if (!file.is_open())
    {
        logger->Log(Failure, Internals, "[ReadThresholdFile] Failed to open threshold file.");
        return E_FAIL;
    }

    // Neither extraction is examined: a file that holds no number gives 0.
    double threshold = 0.0;
    file.imbue(std::locale::classic());
    file >> threshold;
    file.close();
    file >> threshold; // Kept: reads from the closed stream, extracts nothing and leaves the value.
    *value = ToQ8(threshold);
    return S_OK;
}
