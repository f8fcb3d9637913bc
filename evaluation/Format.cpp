#include "evaluation/Format.h"

#include <iomanip>
#include <sstream>

namespace velox::evaluation
{

std::string Fixed(double value, int digits)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(digits) << value;
    return text.str();
}

std::string Short(double value)
{
    std::ostringstream text;
    text << std::setprecision(4) << value;
    return text.str();
}

} // namespace velox::evaluation
