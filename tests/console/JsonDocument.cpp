#include "console/JsonDocument.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace velox::console;

TEST(JsonDocument, HasTheSameShapeForEveryCommand)
{
    Outcome outcome{ExitCode::Refused, "1 of 2.", "text for people"};
    outcome.results.Add({{"file", "a.wav"}, {"accepted", false}});
    EXPECT_EQ(JsonDocument("verify", outcome), R"({
  "schema": "velox-kws/1",
  "command": "verify",
  "exitCode": 1,
  "verdict": "1 of 2.",
  "results": [
    {
      "file": "a.wav",
      "accepted": false
    }
  ],
  "error": null
}
)");
}

TEST(JsonDocument, AnErrorHasAMessageAndAFix)
{
    Outcome outcome{ExitCode::WriteFailed, "", ""};
    outcome.error = Problem{"No room.", "Make some."};
    EXPECT_EQ(nlohmann::json::parse(JsonDocument("", outcome))["error"],
              nlohmann::json({{"message", "No room."}, {"fix", "Make some."}}));
}

TEST(JsonDocument, BytesThatAreNoTextAreReplaced)
{
    const Outcome outcome{ExitCode::Success, "caf\xE9", ""};
    EXPECT_EQ(nlohmann::json::parse(JsonDocument("inspect", outcome))["verdict"], "caf\xEF\xBF\xBD");
}
