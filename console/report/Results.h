#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <memory>

namespace velox::console
{

/// What a command tells machines: an array with an object for each file, language, detection or finding. Whoever looks into it
/// includes nlohmann/json.hpp; whoever passes it on need not.
class Results
{
public:
    Results();
    Results(const Results& other);
    Results(Results&& other) noexcept;
    Results& operator=(Results other) noexcept;
    ~Results();

    void Add(nlohmann::ordered_json result);

    std::size_t Count() const;
    const nlohmann::ordered_json& Array() const;

private:
    std::unique_ptr<nlohmann::ordered_json> array;
};

} // namespace velox::console
