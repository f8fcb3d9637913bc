#pragma once

#include <string>

namespace velox::evaluation
{

/// A number with so many digits behind the point.
std::string Fixed(double value, int digits);

/// A number with at most four digits that count.
std::string Short(double value);

} // namespace velox::evaluation
