#pragma once

#include "IVeloxKeywordDetectorLogger.h"

#include <windows.h>

#include <tinyxml2.h>

#include <string>

// The opening that the reader's operations share: load the file, take the root, read one of its attributes. Each operation brings
// its own log lines; a failure is logged at level 2 with source 1 and reported as E_FAIL.

/// Loads the configuration file.
/// @param failureFormat  line for a file that cannot be loaded or parsed: "%s" for the path, "%s" for the parser's error name
HRESULT LoadDocument(tinyxml2::XMLDocument* document, const std::string& path, IVeloxKeywordDetectorLogger* logger,
                     const char* failureFormat);

/// Takes the document's first element, whatever its name.
/// @param failureLine  line for a document without an element
HRESULT GetRoot(const tinyxml2::XMLDocument& document, const tinyxml2::XMLElement** root, IVeloxKeywordDetectorLogger* logger,
                const char* failureLine);

/// Reads a text attribute of the root.
/// @param failureLine  line for a root without the attribute
HRESULT GetRootAttribute(const tinyxml2::XMLElement& root, const char* name, std::string* value,
                         IVeloxKeywordDetectorLogger* logger, const char* failureLine);
