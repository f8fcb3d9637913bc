#pragma once

#include "IVeloxKeywordDetectorLogger.h"

#include <windows.h>

#include <tinyxml2.h>

#include <cstdint>
#include <string>

/// Reads a language element's id. The whole unsigned value counts: 66569 is not 1033.
/// @return XML_SUCCESS; XML_NO_ATTRIBUTE; XML_WRONG_ATTRIBUTE_TYPE
tinyxml2::XMLError QueryLanguageId(const tinyxml2::XMLElement& element, unsigned int* id);

/// The lines of an operation that looks a language up.
struct LookupLines
{
    const char* loadFailedFormat; ///< "%s" for the path, "%s" for the parser's error name
    const char* missingRootLine;
    const char* missingDirectoryLine;
    const char* invalidIdFormat; ///< "%d" for the parser's status
};

/// A language's element in the loaded configuration file.
struct LanguageEntry
{
    tinyxml2::XMLDocument document;                ///< owns the element
    std::string directory;                         ///< the root's
    const tinyxml2::XMLElement* element = nullptr; ///< null when no element carries the id
};

/// Loads the configuration file and finds the first language element with this id. An element without a valid id ahead of it is
/// E_FAIL, so every later language is out of reach.
/// @return S_OK, also when no element carries the id; E_FAIL, logged with the operation's line
HRESULT LookUpLanguage(const std::string& configurationFilePath, uint16_t languageId, const LookupLines& lines,
                       IVeloxKeywordDetectorLogger* logger, LanguageEntry* language);

/// A child of a language element whose text is a file name, with the lines for its absence.
struct FileElement
{
    const char* name;
    const char* missingElementLine;
    const char* missingFileNameLine;
};

/// Reads the file name from the language's first child of that name; a missing child or text is E_FAIL.
HRESULT GetFileName(const LanguageEntry& language, const FileElement& child, IVeloxKeywordDetectorLogger* logger,
                    std::string* fileName);
