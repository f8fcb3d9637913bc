#pragma once

#include "KeywordSelector.h"
#include "library/configuration/ConfigurationReader.h"

#include <cstdint>

/// The one keyword that is announced, trained and armed; 0 stands for none.
inline constexpr uint32_t SupportedKeywordId = 1;

/// The lines of an operation that takes the supported keyword in a configured language only.
struct SelectorLines
{
    const char* languageCheckFailed;
    const char* notSupportedFormat; ///< "%d" for the supported keyword id, "%d" for the actual one, "%d" for the language id
};

/// Checks that the selector names the supported keyword and a language of the configuration file.
/// @return S_OK; E_FAIL when the configuration file cannot be used; E_INVALIDARG; failures are logged with the operation's line
HRESULT CheckSelector(const KeywordSelector& selector, ConfigurationReader* reader, const SelectorLines& lines,
                      IVeloxKeywordDetectorLogger* logger);
