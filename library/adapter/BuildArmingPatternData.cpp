#include "library/adapter/ArmingPattern.h"
#include "library/adapter/ModelBuffer.h"
#include "library/adapter/SupportedKeyword.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"
#include "library/modelstream/UserModelStream.h"

#include <cstring>
#include <limits>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

constexpr uint32_t SupportedSelectors = 1;

constexpr SelectorLines KeywordLines{
    .languageCheckFailed = "[BuildArmingPatternData] Failed to check if language is supported.",
    .notSupportedFormat = "[BuildArmingPatternData] Validation error, expected keyword ID: %d, actual keyword ID: %d. "
                          "Language ID: %d.",
};

struct TaskMemoryFree
{
    void operator()(void* block) const
    {
        CoTaskMemFree(block);
    }
};

using TaskMemory = std::unique_ptr<void, TaskMemoryFree>;

/// Task memory for a pattern; null when there is none, or when the pattern's length does not fit its 32-bit size field.
TaskMemory AllocatePattern(uint32_t modelSize)
{
    if (modelSize > std::numeric_limits<uint32_t>::max() - sizeof(ArmingPattern))
    {
        return nullptr;
    }
    return TaskMemory(CoTaskMemAlloc(modelSize + sizeof(ArmingPattern)));
}

/// Copies as the bounds-checked copies of the platform do: it fails only when there are bytes to copy and no source.
bool CopyModel(void* target, const uint8_t* model, uint32_t modelSize)
{
    if (modelSize == 0)
    {
        return true;
    }
    if (model == nullptr)
    {
        return false;
    }
    std::memcpy(target, model, modelSize);
    return true;
}

/// @return S_OK; E_POINTER; E_INVALIDARG
HRESULT CheckArguments(const IStream* userModelData, const KeywordSelector* keywordSelectors, uint32_t numKeywordSelectors,
                       uint8_t* const* patternData, IVeloxKeywordDetectorLogger* logger)
{
    if (userModelData == nullptr)
    {
        logger->Log(Error, Adapter, "[BuildArmingPatternData] Validation error, user model data is null.");
        return E_POINTER;
    }
    if (keywordSelectors == nullptr || numKeywordSelectors == 0)
    {
        logger->Log(Error, Adapter, "[BuildArmingPatternData] Validation error, keyword selectors are null.");
        return E_POINTER;
    }
    if (numKeywordSelectors > SupportedSelectors)
    {
        logger->LogFormat(Error, Adapter,
                          "[BuildArmingPatternData] Validation error, supported number of keyword selectors: %d, actual "
                          "number of keyword selectors: %lu.",
                          static_cast<int>(SupportedSelectors), static_cast<unsigned long>(numKeywordSelectors));
        return E_INVALIDARG;
    }
    if (patternData == nullptr)
    {
        logger->Log(Error, Adapter, "[BuildArmingPatternData] Validation error, pattern data is null.");
        return E_POINTER;
    }
    return S_OK;
}

} // namespace

HRESULT VeloxKeywordDetectorAdapterImpl::BuildArmingPatternData(IStream* userModelData, const KeywordSelector* keywordSelectors,
                                                                uint32_t numKeywordSelectors, uint8_t** patternData)
{
    logger->Log(Information, Adapter, "[BuildArmingPatternData] Entry.");

    if (const HRESULT result = CheckArguments(userModelData, keywordSelectors, numKeywordSelectors, patternData, logger);
        FAILED(result))
    {
        return result;
    }
    const KeywordSelector selector = keywordSelectors[0];
    logger->LogFormat(Information, Adapter, "[BuildArmingPatternData] Building package for language: %d.",
                      static_cast<int>(selector.languageId));
    if (const HRESULT result = CheckSelector(selector, configurationReader.get(), KeywordLines, logger); FAILED(result))
    {
        return result;
    }

    ModelBuffer model;
    if (const HRESULT result = GetModelToArm(userModelData, selector.languageId, &model); result != S_OK)
    {
        model.data = nullptr; // Kept: a block that the getter produced all the same is dropped, not released.
        return result;
    }

    VELOX_WOV_DETECTION_PARAMETERS parameters{};
    if (const HRESULT result = configurationReader->GetDetectionParameters(selector.languageId, &parameters); FAILED(result))
    {
        logger->LogWithStatus(Error, Adapter, "[BuildArmingPatternData] Failed to load configuration parameters.", result);
        return E_FAIL;
    }

    if (const HRESULT result = WritePattern(model, parameters, patternData); FAILED(result))
    {
        return result;
    }
    armedLanguageId = selector.languageId;
    logger->Log(Information, Adapter, "[BuildArmingPatternData] Exit, success.");
    return S_OK;
}

HRESULT VeloxKeywordDetectorAdapterImpl::GetModelToArm(IStream* userModelData, uint16_t languageId, ModelBuffer* model)
{
    if (FAILED(CheckIStreamForUserModel(userModelData, logger)))
    {
        logger->Log(Information, Adapter, "[BuildArmingPatternData] Using predefined model.");
        if (const HRESULT result = configurationReader->GetPredefinedModel(languageId, &model->data, &model->size);
            result != S_OK)
        {
            logger->Log(Error, Adapter, "[BuildArmingPatternData] Failed to get predefined model.");
            return result;
        }
        userModelArmed = false;
        return S_OK;
    }

    logger->Log(Information, Adapter, "[BuildArmingPatternData] Using user model.");
    if (const HRESULT result = GetUserModelFromIStream(userModelData, model->data, model->size, logger); result != S_OK)
    {
        logger->Log(Error, Adapter, "[BuildArmingPatternData] Failed to get user model.");
        return result;
    }
    logger->LogFormat(Detail, Adapter, "[BuildArmingPatternData] Dynamic model data size: %lu.",
                      static_cast<unsigned long>(model->size));
    userModelArmed = true;
    return S_OK;
}

HRESULT VeloxKeywordDetectorAdapterImpl::WritePattern(const ModelBuffer& model, const VELOX_WOV_DETECTION_PARAMETERS& parameters,
                                                      uint8_t** patternData)
{
    const uint32_t threshold = ArmedThreshold(parameters);
    TaskMemory block = AllocatePattern(model.size);
    if (block == nullptr)
    {
        logger->Log(Error, Adapter, "[BuildArmingPatternData] Failed to allocate memory for pattern data.");
        return E_OUTOFMEMORY;
    }

    logger->LogFormat(Detail, Adapter,
                      "[BuildArmingPatternData] Detection parameters: Quality threshold(%u), KPD(%u), model_size(%u).",
                      static_cast<unsigned int>(parameters.qualityThreshold), static_cast<unsigned int>(threshold),
                      static_cast<unsigned int>(model.size));

    auto* const pattern = new (block.get()) ArmingPattern{};
    pattern->Size = model.size + static_cast<uint32_t>(sizeof(ArmingPattern));
    pattern->PatternType = detectorId;
    pattern->Signature = ArmingPatternSignature;
    pattern->KpdThreshold = threshold;
    pattern->Limit = ArmingPatternLimit;
    pattern->ModelSize = model.size;
    if (!CopyModel(pattern + 1, model.data, model.size))
    {
        static_cast<void>(block.release()); // Kept: the pattern block is dropped, not freed.
        logger->Log(Error, Adapter, "[BuildArmingPatternData] Failed to copy model data to pattern structure.");
        return E_FAIL;
    }
    *patternData = static_cast<uint8_t*>(block.release());
    return S_OK;
}
