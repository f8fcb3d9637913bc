#pragma once

#include <string_view>

namespace velox::console
{

// The files page.html, table.html and page.css of this folder, which the build puts into the program. Neither '<' nor '&' may
// stand in the style, since the page is XML, too.
extern const std::string_view PageTemplate;
extern const std::string_view TableTemplate;
extern const std::string_view PageStyle;

} // namespace velox::console
