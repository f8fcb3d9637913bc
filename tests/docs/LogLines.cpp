#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace LogLinesTests
{

// docs/log-lines.md holds every text that the library can log, and no other.

using testing::ElementsAre;
using testing::IsSubsetOf;
using testing::SizeIs;

const std::string SourceFolder = VELOX_SOURCE_FOLDER;

struct Literal
{
    std::string text;      ///< of literals that stand side by side, as one
    std::string preceding; ///< the code between the literal before and this one
};

/// The string literals of a piece of C++, without those in comments.
std::vector<Literal> LiteralsIn(const std::string& code)
{
    std::vector<Literal> literals;
    std::string between;
    for (std::size_t i = 0; i < code.size(); ++i)
    {
        if (code.compare(i, 2, "//") == 0)
        {
            i = code.find('\n', i);
            if (i == std::string::npos)
            {
                break;
            }
        }
        if (code[i] != '"')
        {
            between += code[i];
            continue;
        }
        std::string text;
        for (++i; code.at(i) != '"'; ++i)
        {
            text += code[i] == '\\' ? code.at(++i) : code[i];
        }
        const bool continues = !literals.empty() &&
                               std::all_of(between.begin(), between.end(), [](unsigned char c) { return std::isspace(c) != 0; });
        if (continues)
        {
            literals.back().text += text;
        }
        else
        {
            literals.push_back({text, between});
        }
        between.clear();
    }
    return literals;
}

/// Whether a literal is a log text: it begins as the library's lines do, or is the first text that a call of the logger is given.
bool IsLogText(const Literal& literal)
{
    const bool isTagged =
        literal.text.size() > 1 && literal.text[0] == '[' && std::isalpha(static_cast<unsigned char>(literal.text[1])) != 0;
    const std::size_t call = literal.preceding.rfind("logger->Log");
    return isTagged || (call != std::string::npos && literal.preceding.find(';', call) == std::string::npos);
}

std::set<std::string> LogTextsOf(const std::string& code)
{
    std::set<std::string> texts;
    for (const Literal& literal : LiteralsIn(code))
    {
        if (IsLogText(literal))
        {
            texts.insert(literal.text);
        }
    }
    return texts;
}

std::set<std::string> LogTextsOfTheProduct()
{
    std::set<std::string> texts;
    for (const char* folder : {"adapter", "configuration", "modelstream", "wovwrapper"})
    {
        for (const auto& entry : std::filesystem::directory_iterator(SourceFolder + "/library/" + folder))
        {
            if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h")
            {
                texts.merge(LogTextsOf(ReadWholeFile(entry.path().string())));
            }
        }
    }
    return texts;
}

/// The texts of a page: what stands between backquotes at the beginning of a table's row.
std::set<std::string> LogTextsOfPage(const std::string& page)
{
    const std::string rowStart = "\n| `";
    std::set<std::string> texts;
    for (std::size_t row = page.find(rowStart); row != std::string::npos; row = page.find(rowStart, row))
    {
        row += rowStart.size();
        texts.insert(page.substr(row, page.find('`', row) - row));
    }
    return texts;
}

TEST(LogLines, TextsAreFoundInSources)
{
    EXPECT_THAT(LogTextsOf("logger->Log(Error, Adapter, \"[Tagged] One \"\n    \"line.\"); // \"[Comment] Not a line.\""),
                ElementsAre("[Tagged] One line."));
    EXPECT_THAT(LogTextsOf("constexpr char Line[] = \"[Table] A line.\"; Open(\"file\");"), ElementsAre("[Table] A line."));
    EXPECT_THAT(LogTextsOf("logger->LogWithCode(Error, Internals, \"Function failed!\", status); Use(\"other\");"),
                ElementsAre("Function failed!"));
    EXPECT_THAT(LogTextsOf("logger->Log(level, source, line); Use(\"other\");"), SizeIs(0));
}

TEST(LogLines, TextsAreFoundOnThePage)
{
    EXPECT_THAT(LogTextsOfPage("Some `code`.\n\n| text | level |\n|---|---|\n| `[A] B.` | 4 | see `C` |\n| `D failed!` | 1 |\n"),
                ElementsAre("D failed!", "[A] B."));
}

TEST(LogLines, PageHoldsEveryLine)
{
    const auto texts = LogTextsOfTheProduct();
    EXPECT_GT(texts.size(), 100U);
    EXPECT_THAT(texts, IsSubsetOf(LogTextsOfPage(ReadWholeFile(SourceFolder + "/docs/log-lines.md"))));
}

TEST(LogLines, PageHoldsNoOtherLine)
{
    EXPECT_THAT(LogTextsOfPage(ReadWholeFile(SourceFolder + "/docs/log-lines.md")), IsSubsetOf(LogTextsOfTheProduct()));
}

} // namespace LogLinesTests
