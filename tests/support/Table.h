#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <string>

/// Names the rows of a table after their `description`: "no model file" becomes NoModelFile.
struct RowName
{
    template <typename Row>
    std::string operator()(const testing::TestParamInfo<Row>& info) const
    {
        std::string name;
        bool wordBegins = true;
        for (const char character : std::string(info.param.description))
        {
            const auto code = static_cast<unsigned char>(character);
            if (std::isalnum(code) != 0)
            {
                name += wordBegins ? static_cast<char>(std::toupper(code)) : character;
            }
            wordBegins = std::isalnum(code) == 0;
        }
        return name;
    }
};
