#include "console/pages/Markup.h"

#include <gtest/gtest.h>

using namespace velox::console;

TEST(Markup, TextIsEscaped)
{
    const struct
    {
        std::string text;
        std::string expected;
    } cases[]{
        {"", ""},
        {"take <1> & \"2\"", "take &lt;1&gt; &amp; &quot;2&quot;"},
        {"prise-\xC3\xA9t\xC3\xA9 \xE6\x97\xA5 \xF0\x9F\x99\x82", "prise-\xC3\xA9t\xC3\xA9 \xE6\x97\xA5 \xF0\x9F\x99\x82"},
        {"line\nand\ttab", "line\nand\ttab"},
        {std::string("a\0b\x1B[31m\x7F", 9), "a\xEF\xBF\xBD"
                                             "b\xEF\xBF\xBD[31m\xEF\xBF\xBD"},
        // No UTF-8: a lone continuation, a cut character, an overlong one, a surrogate, beyond Unicode.
        {"\x80", "\xEF\xBF\xBD"},
        {"\xC3", "\xEF\xBF\xBD"},
        {"\xC3(", "\xEF\xBF\xBD("},
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xE0\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    };
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.expected);
        EXPECT_EQ(Escaped(own.text), own.expected);
    }
}

TEST(Markup, ElementsHaveTheirAttributesAndContent)
{
    EXPECT_EQ(Element("p", "", "<b>x</b>"), "<p><b>x</b></p>\n");
    EXPECT_EQ(Element("p", "id=\"a\"", ""), "<p id=\"a\"></p>\n");
    EXPECT_EQ(TextElement("p", "good word", "1 < 2"), "<p class=\"good word\">1 &lt; 2</p>\n");
    EXPECT_EQ(TextElement("p", "", "x"), "<p>x</p>\n");
}
