#include "console/pages/Escaped.h"

#include <gtest/gtest.h>

namespace EscapedTests
{

using velox::console::Escaped;

TEST(Escaped, WhatMarkupIsMadeOfBecomesEntities)
{
    EXPECT_EQ(Escaped("a <b> & \"c\""), "a &lt;b&gt; &amp; &quot;c&quot;");
}

TEST(Escaped, WhatXmlCannotHoldIsReplaced)
{
    const struct
    {
        std::string text;
        std::string escaped;
    } cases[]{{"caf\xC3\xA9\n\t", "caf\xC3\xA9\n\t"},
              {"\x01", "\xEF\xBF\xBD"},
              {"\x7F", "\xEF\xBF\xBD"},
              {"caf\xE9!", "caf\xEF\xBF\xBD!"},
              {"\xED\xA0\x80!", "\xEF\xBF\xBD!"}};
    for (const auto& own : cases)
    {
        EXPECT_EQ(Escaped(own.text), own.escaped);
    }
}

} // namespace EscapedTests
