#include "library/adapter/SupportedKeyword.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

HRESULT CheckSelector(const KeywordSelector& selector, ConfigurationReader* reader, const SelectorLines& lines,
                      IVeloxKeywordDetectorLogger* logger)
{
    bool supported = false;
    if (FAILED(reader->IsLanguageSupported(selector.languageId, &supported)))
    {
        logger->Log(Error, Adapter, lines.languageCheckFailed);
        return E_FAIL;
    }
    if (selector.keywordId != SupportedKeywordId || !supported)
    {
        // Kept: a language that is not configured is reported with this line too, the two keyword ids then being equal.
        logger->LogFormat(Error, Adapter, lines.notSupportedFormat, static_cast<int>(SupportedKeywordId),
                          static_cast<int>(selector.keywordId), static_cast<int>(selector.languageId));
        return E_INVALIDARG;
    }
    return S_OK;
}
