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

/// Loads the configuration file and finds the first language element with this id. An element without a valid id ahead of it is
/// E_FAIL, so every later language is out of reach.
/// @param document   receives the file; owns what `language` points to
/// @param directory  receives the root's "directory"
/// @param language   receives the element, or null with S_OK when no element carries the id
HRESULT LookUpLanguage(tinyxml2::XMLDocument* document, const std::string& configurationFilePath, uint16_t languageId,
                       std::string* directory, const tinyxml2::XMLElement** language, IVeloxKeywordDetectorLogger* logger,
                       const LookupLines& lines);

/// A child of a language element whose text is a file name, with the lines for its absence.
struct FileElement
{
    const char* name;
    const char* missingElementLine;
    const char* missingFileNameLine;
};

/// Reads the file name from the language's first child of that name; a missing child or text is E_FAIL.
HRESULT GetFileName(const tinyxml2::XMLElement& language, const FileElement& element, std::string* fileName,
                    IVeloxKeywordDetectorLogger* logger);
