#include "HostAdapter.h"

#include "Settings.h"

AdapterPointer CreateAdapter(const std::filesystem::path& folder, Logger& logger)
{
    return KeywordDetectorAdapterImplementation::CreateKeywordDetectorAdapterImpl(
        &logger, (folder / "configuration.xml").string(), "example host 1.0", DetectorId);
}

void SwitchLoggingOn()
{
    WriteSetting(L"LoggerLevel", VeloxLogLevel::Detail);
    WriteSetting(L"SDKLoggerLevel", 3);
    WriteSetting(L"LogToFile", 1);
}
