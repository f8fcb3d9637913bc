#pragma once

#include "console/doctor/Finding.h"

#include <tinyxml2.h>

namespace velox::console
{

/// The line of an element's attribute, or its own where it has none of that name.
int LineOf(const tinyxml2::XMLElement& element, const char* attribute);

/// Warns of attributes that the library ignores.
void CheckAttributeNames(const tinyxml2::XMLElement& element, std::initializer_list<std::string_view> known,
                         const Subject& subject);

/// Tells what is odd about how a number is written, which the library reads as sscanf does.
/// @param what   the number, at the beginning of a sentence
/// @param value  that the library takes
void CheckNumber(const tinyxml2::XMLAttribute& attribute, std::string_view what, int64_t value, const Subject& subject);

} // namespace velox::console
