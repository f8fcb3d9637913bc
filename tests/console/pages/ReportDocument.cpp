#include "console/pages/ReportDocument.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace ReportDocumentTests
{

using namespace velox::console;

nlohmann::json Parsed(const Report& report)
{
    return nlohmann::json::parse(ReportDocument("verify", report));
}

TEST(ReportDocument, HasTheSameShapeForEveryCommand)
{
    Report report{ExitCode::Refused, "1 of 2."};
    report.facts = {{"language", 1033, "language", "1033 (en-US)"}, {"", {}, "shown", "to people only"}};
    report.remarks = {{Tone::Warning, "Odd", "something is odd", "Mend it."}};
    Entry entry{"a.wav", "refused", Tone::Bad, {{"seconds", 1.5, "length", "1.50 s"}, {"score", Value()}}};
    entry.parts = {{"0:01.00", "near miss"}};
    report.results = {entry};
    EXPECT_EQ(ReportDocument("verify", report), R"({
  "schema": "velox-kws/2",
  "command": "verify",
  "exitCode": 1,
  "verdict": "1 of 2.",
  "facts": {
    "language": 1033
  },
  "remarks": [
    {
      "severity": "warning",
      "code": "Odd",
      "text": "something is odd",
      "fix": "Mend it."
    }
  ],
  "results": [
    {
      "title": "a.wav",
      "status": "refused",
      "seconds": 1.5,
      "score": null,
      "remarks": [],
      "parts": [
        {
          "title": "0:01.00",
          "status": "near miss",
          "remarks": [],
          "parts": []
        }
      ]
    }
  ],
  "error": null
}
)");
}

TEST(ReportDocument, ValuesKeepTheirKind)
{
    Report report;
    report.facts = {{"yes", true},
                    {"negative", -1},
                    {"counter", UINT64_MAX},
                    {"none", std::optional<int>()},
                    {"some", std::optional<double>(0.5)},
                    {"ids", std::vector<int64_t>{1, 2}}};
    EXPECT_EQ(Parsed(report)["facts"].dump(),
              R"({"counter":18446744073709551615,"ids":[1,2],"negative":-1,"none":null,"some":0.5,"yes":true})");
}

TEST(ReportDocument, AnErrorHasAMessageAndAFix)
{
    Report report;
    report.error = Problem{"No room.", "Make some."};
    EXPECT_EQ(Parsed(report)["error"], nlohmann::json({{"message", "No room."}, {"fix", "Make some."}}));
}

TEST(ReportDocument, BytesThatAreNoTextAreReplaced)
{
    EXPECT_EQ(Parsed({ExitCode::Success, "caf\xE9"})["verdict"], "caf\xEF\xBF\xBD");
}

} // namespace ReportDocumentTests
