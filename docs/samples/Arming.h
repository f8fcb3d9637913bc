#include <VeloxHwKwsImpl.h>

#include <functional>

/// Arms keyword 1 in English (United States): hands the block for the firmware to `send`.
inline HRESULT ArmEnglish(IVeloxKeywordDetectorLogger* logger, const std::string& configurationFile, GUID detectorId,
                          IStream* userModel, const std::function<void(const uint8_t* block)>& send)
{
    using namespace KeywordDetectorAdapterImplementation;
    auto adapter = CreateKeywordDetectorAdapterImpl(logger, configurationFile, "1.0.0", detectorId);

    const KeywordSelector selector{1, 1033};
    uint8_t* block = nullptr;
    const HRESULT result = adapter->BuildArmingPatternData(userModel, &selector, 1, &block);
    if (SUCCEEDED(result))
    {
        send(block); // the block's length is its first 32-bit field
        CoTaskMemFree(block);
    }

    delete adapter.release(); // the adapter's own deleter would free its storage without the destructor
    return result;
}
