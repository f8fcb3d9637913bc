#include "console/JsonDocument.h"

#include <nlohmann/json.hpp>

namespace velox::console
{

std::string JsonDocument(std::string_view command, const Outcome& outcome)
{
    using Json = nlohmann::ordered_json;
    Json document;
    document["schema"] = "velox-kws/1";
    document["command"] = command;
    document["exitCode"] = static_cast<int>(outcome.exitCode);
    document["verdict"] = outcome.verdict;
    document["results"] = outcome.results.Array();
    document["error"] = outcome.error ? Json{{"message", outcome.error->message}, {"fix", outcome.error->fix}} : Json(nullptr);
    // Texts of log lines and files may hold bytes that are no UTF-8.
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace velox::console
