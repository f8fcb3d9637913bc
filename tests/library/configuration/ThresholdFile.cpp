#include "tests/library/configuration/Lines.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ReaderTest.h"
#include "tests/support/Table.h"

#include <gmock/gmock.h>

#include <limits>
#include <locale>

namespace ThresholdFileTests
{

using testing::ElementsAre;
using testing::IsEmpty;

struct ThresholdCase
{
    const char* description;
    std::string content;
    int32_t q8;
};

class ThresholdFile : public ReaderTest, public testing::WithParamInterface<ThresholdCase>
{
protected:
    HRESULT Read(int32_t* value)
    {
        return PrivateAccess::ReadThresholdFile(reader, configuration.Directory(), "threshold.txt", value);
    }
};

TEST_P(ThresholdFile, GivesTheNumberInQ8)
{
    configuration.WriteFile("threshold.txt", GetParam().content);
    int32_t value = 4711;
    EXPECT_EQ(Read(&value), S_OK);
    EXPECT_EQ(value, GetParam().q8);
    EXPECT_THAT(logger.lines, IsEmpty());
}

constexpr int32_t Most = std::numeric_limits<int32_t>::max();
constexpr int32_t Least = std::numeric_limits<int32_t>::min();

INSTANTIATE_TEST_SUITE_P(
    Contents, ThresholdFile,
    testing::Values(ThresholdCase{"with a line end", "0.75\n", 192}, ThresholdCase{"without a line end", "0.75", 192},
                    ThresholdCase{"one half", "0.5\n", 128}, ThresholdCase{"after blanks", "  1\n", 256},
                    ThresholdCase{"negative, rounded half away from zero", "-1.3\n", -333}, ThresholdCase{"zero", "0\n", 0},
                    ThresholdCase{"exponent", "2e-1\n", 51}, ThresholdCase{"half a step up", "0.001953125\n", 1},
                    ThresholdCase{"half a step down", "-0.001953125\n", -1}, ThresholdCase{"below half a step", "0.0019\n", 0},
                    ThresholdCase{"what follows the number is ignored", "0.75 and more\n1.5\n", 192},
                    ThresholdCase{"a second number is not read", "0.75\n0.25\n", 192}, ThresholdCase{"letters", "abc\n", 0},
                    ThresholdCase{"empty", "", 0}, ThresholdCase{"only blanks", " \n \n", 0},
                    ThresholdCase{"a comma ends the number", "1,5\n", 256}, ThresholdCase{"not a number", "nan\n", 0},
                    ThresholdCase{"too large for a double", "1e999\n", Most},
                    ThresholdCase{"too small for a double", "-1e999\n", Least},
                    ThresholdCase{"too large for 32 bits", "8388608\n", Most},
                    ThresholdCase{"the largest that fits", "8388607.99609375\n", Most},
                    ThresholdCase{"too small for 32 bits", "-8388609\n", Least},
                    ThresholdCase{"the smallest that fits", "-8388608\n", Least}),
    RowName());

/// The process's locale while it lives: numbers are written with a comma, and with points between thousands.
class CommaLocale
{
public:
    CommaLocale() : former(std::locale::global(std::locale(std::locale::classic(), new Punctuation)))
    {
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale()
    {
        std::locale::global(former);
    }

private:
    struct Punctuation : std::numpunct<char>
    {
        char do_decimal_point() const override
        {
            return ',';
        }
        char do_thousands_sep() const override
        {
            return '.';
        }
    };

    std::locale former;
};

TEST_F(ThresholdFile, IsReadWithAPointWhateverTheProcesssLocale)
{
    configuration.WriteFile("threshold.txt", "0.75\n");
    const CommaLocale german;
    int32_t value = 4711;
    EXPECT_EQ(Read(&value), S_OK);
    EXPECT_EQ(value, 192);
}

TEST_F(ThresholdFile, MissingFileFailsAndLeavesTheValue)
{
    int32_t value = 4711;
    EXPECT_EQ(Read(&value), E_FAIL);
    EXPECT_EQ(value, 4711);
    EXPECT_THAT(logger.lines, ElementsAre(ConfigurationLines::ThresholdNotOpened));
}

} // namespace ThresholdFileTests
