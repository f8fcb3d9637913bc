#pragma once

#include <cstdint>

/// One keyword in one language.
struct KeywordSelector
{
    uint32_t keywordId;  ///< 1 is the one supported keyword
    uint16_t languageId; ///< Windows LANGID, for example 1033
};

static_assert(sizeof(KeywordSelector) == 8, "the record crosses the library boundary by value");
