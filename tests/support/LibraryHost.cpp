#include "tests/support/LibraryHost.h"

#include "DetectionResult.h"
#include "tests/support/AdapterTest.h"

#include <objbase.h>

#include <cstring>
#include <utility>

using namespace KeywordDetectorAdapterImplementation;

namespace
{

constexpr KeywordSelector Selector{1, 1033};

} // namespace

LibraryHost::LibraryHost(const std::string& configurationFile)
    : library(CreateKeywordDetectorAdapterImpl(&logger, configurationFile, "1.2.3", DetectorId))
{
}

void LibraryHost::Verify(IMFMediaBuffer* recording)
{
    answers.results.push_back(library->VerifyUserKeyword(nullptr, Selector.keywordId, Selector.languageId, 0, recording));
}

void LibraryHost::Train(IStream* stream, std::vector<IMFMediaBuffer*> recordings)
{
    const std::vector<int32_t> ends(recordings.size());
    answers.results.push_back(library->ComputeAndAddUserModelData(stream, Selector, ends.data(), recordings.data(),
                                                                  static_cast<uint32_t>(recordings.size())));
}

void LibraryHost::Arm(IStream* stream)
{
    uint8_t* block = nullptr;
    answers.results.push_back(library->BuildArmingPatternData(stream, &Selector, 1, &block));
    if (block != nullptr)
    {
        uint32_t size = 0;
        std::memcpy(&size, block, sizeof(size));
        answers.outputs.emplace_back(block, block + size);
        CoTaskMemFree(block);
    }
}

void LibraryHost::Parse(IStream* stream)
{
    DetectionResult block{};
    block.Size = DetectionResultMinSize;
    block.PatternType = DetectorId;
    block.KeywordStart = 1000;
    block.KeywordEnd = 2000;
    block.KeywordIdFw = 1;
    uint32_t keywordId = 0;
    uint16_t languageId = 0;
    BOOL isUserMatch = FALSE;
    uint64_t start = 0;
    uint64_t end = 0;
    answers.results.push_back(
        library->ParseDetectionResultData(stream, &block, &keywordId, &languageId, &isUserMatch, &start, &end));
    answers.outputs.push_back(std::to_string(keywordId) + " " + std::to_string(languageId) + " " + std::to_string(isUserMatch) +
                              " " + std::to_string(start) + " " + std::to_string(end));
}

Answers LibraryHost::Take()
{
    answers.lines = logger.Take();
    return std::exchange(answers, {});
}
