#pragma once

#include <string>
#include <string_view>

namespace velox::console
{

/// Text as it may stand in an element or in an attribute between double quotes, in HTML and XML alike. What is no UTF-8, and
/// control characters, which XML cannot hold, become the replacement character.
std::string Escaped(std::string_view text);

/// <name attributes>content</name>, with a line end. @param attributes  as they are written, content  markup
std::string Element(std::string_view name, std::string_view attributes, std::string_view content);

/// The same for text, which is escaped. @param classes  may be empty
std::string TextElement(std::string_view name, std::string_view classes, std::string_view text);

} // namespace velox::console
