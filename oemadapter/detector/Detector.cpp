#include "oemadapter/detector/Detector.h"

#include "oemadapter/detector/NarrowPath.h"
#include "oemadapter/windows/ProvisionalResultCodes.h"

#include <utility>

namespace velox::oemadapter
{

namespace
{

HRESULT MakeLibrary(DetectorContents& contents)
{
    const std::optional<std::string> path = NarrowPath(contents.settings.configurationFile);
    if (!path)
    {
        // Without a library nobody has said whether there is to be a log file: this has to be found.
        contents.logger.SetLogToFile(true);
        contents.logger.Log(VeloxLogLevel::Error, AdapterLogger::OwnSource,
                            "The configuration file cannot be opened: the process's code page lacks a letter of its path.");
        return HRESULT_FROM_WIN32(ERROR_NO_UNICODE_TRANSLATION);
    }
    contents.library.emplace(&contents.logger, &contents.lastArming, *path);
    return S_OK;
}

/// Reads the settings; a library that works by others is replaced.
HRESULT TakeSettings(DetectorContents& contents)
{
    std::vector<std::string> problems;
    AdapterSettings found = ReadAdapterSettings(&problems);
    if (contents.library && found == contents.settings)
    {
        return S_OK;
    }
    contents.library.reset(); // Before the next one: never two at once.
    contents.settings = std::move(found);
    contents.logger.SetFile(&contents.settings.logFile);
    if (const HRESULT result = MakeLibrary(contents); FAILED(result))
    {
        return result;
    }
    // Now that the library has told the level.
    for (const std::string& problem : problems)
    {
        contents.logger.Log(VeloxLogLevel::Warning, AdapterLogger::OwnSource, problem);
    }
    return S_OK;
}

} // namespace

HRESULT Detector::AddUser() noexcept
{
    return Call("IClassFactory::CreateInstance", [this](DetectorContents& inside) {
        if (users == 0)
        {
            if (const HRESULT result = TakeSettings(inside); FAILED(result))
            {
                return result;
            }
        }
        ++users;
        return S_OK;
    });
}

void Detector::RemoveUser() noexcept
{
    --users;
}

void Detector::LogResult(HRESULT result)
{
    const bool isFailure = FAILED(result) && result != E_NO_MATCH;
    contents.logger.LogWithStatus(isFailure ? VeloxLogLevel::Error : VeloxLogLevel::Information, AdapterLogger::OwnSource,
                                  isFailure ? "Failed." : "Done.", result);
}

} // namespace velox::oemadapter
