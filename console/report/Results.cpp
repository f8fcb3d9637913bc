#include "console/report/Results.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace velox::console
{

Results::Results() : array(std::make_unique<nlohmann::ordered_json>(nlohmann::ordered_json::array()))
{
}

Results::Results(const Results& other) : array(std::make_unique<nlohmann::ordered_json>(*other.array))
{
}

Results::Results(Results&& other) noexcept : array(std::move(other.array))
{
}

Results& Results::operator=(Results other) noexcept
{
    array.swap(other.array);
    return *this;
}

Results::~Results() = default;

void Results::Add(nlohmann::ordered_json result)
{
    array->push_back(std::move(result));
}

std::size_t Results::Count() const
{
    return array->size();
}

const nlohmann::ordered_json& Results::Array() const
{
    return *array;
}

} // namespace velox::console
