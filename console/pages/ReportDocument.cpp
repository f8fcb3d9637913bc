#include "console/pages/ReportDocument.h"

#include <nlohmann/json.hpp>

namespace velox::console
{

namespace
{

using Json = nlohmann::ordered_json;

Json JsonOf(const Value& value)
{
    return std::visit(
        [](const auto& held) -> Json {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::monostate>)
            {
                return nullptr;
            }
            else
            {
                return held;
            }
        },
        static_cast<const Value::variant&>(value));
}

Json JsonOf(const std::vector<Fact>& facts)
{
    Json json = Json::object();
    for (const Fact& fact : facts)
    {
        if (!fact.key.empty())
        {
            json[fact.key] = JsonOf(fact.value);
        }
    }
    return json;
}

std::string_view ToneName(Tone tone)
{
    switch (tone)
    {
    case Tone::Bad:
        return "error";
    case Tone::Warning:
        return "warning";
    case Tone::Note:
        return "note";
    default:
        return "good";
    }
}

Json JsonOf(const std::vector<Remark>& remarks)
{
    Json json = Json::array();
    for (const Remark& remark : remarks)
    {
        json.push_back({{"severity", ToneName(remark.tone)}, {"code", remark.code}, {"text", remark.text}, {"fix", remark.fix}});
    }
    return json;
}

// NOLINTNEXTLINE(misc-no-recursion): an entry's parts are entries; they have none themselves
Json JsonOf(const Entry& entry)
{
    Json json{{"title", entry.title}, {"status", entry.status}};
    json.update(JsonOf(entry.facts));
    json["remarks"] = JsonOf(entry.remarks);
    json["parts"] = Json::array();
    for (const Entry& part : entry.parts)
    {
        json["parts"].push_back(JsonOf(part));
    }
    return json;
}

} // namespace

std::string ReportDocument(std::string_view command, const Report& report)
{
    Json results = Json::array();
    for (const Entry& entry : report.results)
    {
        results.push_back(JsonOf(entry));
    }
    Json document{{"schema", "velox-kws/2"}, {"command", command}};
    document["exitCode"] = static_cast<int>(report.exitCode);
    document["verdict"] = report.verdict;
    document["facts"] = JsonOf(report.facts);
    document["remarks"] = JsonOf(report.remarks);
    document["results"] = std::move(results);
    document["error"] = report.error ? Json{{"message", report.error->message}, {"fix", report.error->fix}} : Json(nullptr);
    // Texts of log lines and files may hold bytes that are no UTF-8.
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace velox::console
