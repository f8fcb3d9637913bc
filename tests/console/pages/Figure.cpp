#include "console/pages/Figure.h"

#include <gmock/gmock.h>

#include <tinyxml2.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace FigureTests
{

using namespace velox::console;
using testing::HasSubstr;
using testing::Not;
using Kind = Mark::Kind;

Picture TwoSeconds()
{
    Picture picture;
    picture.seconds = 2.0;
    return picture;
}

class Drawn
{
public:
    explicit Drawn(const Picture& picture)
    {
        document.Parse(Figure(picture, "3").c_str());
        EXPECT_FALSE(document.Error()) << document.ErrorStr();
    }

    /// The drawing of a class; null when there is none.
    const tinyxml2::XMLElement* Drawing(const std::string& name) const
    {
        const auto* svg = document.RootElement()->FirstChildElement("svg");
        while (svg != nullptr && svg->Attribute("class") != name)
        {
            svg = svg->NextSiblingElement("svg");
        }
        return svg;
    }

    /// The curve's path in a drawing.
    std::string Path(const std::string& drawing) const
    {
        return Drawing(drawing)->FirstChildElement("path")->Attribute("d");
    }

    tinyxml2::XMLDocument document;
};

TEST(Figure, MarksLieAtTheirPlaces)
{
    Picture picture = TwoSeconds();
    picture.marks = {
        {Kind::Speech, 0.5, 1.5}, {Kind::Phrase, 0.6, 1.4, "score 112"}, {Kind::Clipped, 1.0, 1.0}, {Kind::Fault, 1.9, 9.0}};
    const Drawn drawn(picture);
    const struct
    {
        std::string lane;
        double x;
        double width;
        std::string title;
    } cases[]{{"lane-speech", 250.0, 500.0, "0.50 s to 1.50 s"},
              {"lane-phrase", 300.0, 400.0, "0.60 s to 1.40 s: score 112"},
              {"lane-clipped", 500.0, 0.05, "1.00 s"},
              {"lane-fault", 950.0, 50.0, "1.90 s to 9.00 s"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.lane);
        const tinyxml2::XMLElement* lane = drawn.Drawing(own.lane);
        ASSERT_NE(lane, nullptr);
        const tinyxml2::XMLElement* mark = lane->FirstChildElement("rect");
        ASSERT_NE(mark, nullptr);
        EXPECT_DOUBLE_EQ(mark->DoubleAttribute("x"), own.x);
        EXPECT_DOUBLE_EQ(mark->DoubleAttribute("width"), own.width);
        EXPECT_EQ(mark->FirstChildElement("title")->GetText(), own.title);
    }
    EXPECT_EQ(drawn.Drawing("lane-near"), nullptr);
}

TEST(Figure, EveryDrawingSaysWhatItIs)
{
    Picture picture = TwoSeconds();
    picture.marks = {{Kind::NearMiss, 0.5, 1.5}};
    picture.wave = {{-0.5F, 0.5F}};
    picture.quality.values = {12.0F};
    picture.score.values = {90.0F};
    picture.threshold = 100.0;
    const Drawn drawn(picture);
    for (const std::string name : {"lane-near", "sound", "quality", "score"})
    {
        SCOPED_TRACE(name);
        const tinyxml2::XMLElement* svg = drawn.Drawing(name);
        ASSERT_NE(svg, nullptr);
        EXPECT_EQ(svg->Attribute("role"), std::string("img"));
        const std::string id = "r3-" + name;
        EXPECT_EQ(svg->Attribute("aria-labelledby"), id + "-title " + id + "-desc");
        EXPECT_EQ(svg->FirstChildElement("title")->Attribute("id"), id + "-title");
        EXPECT_EQ(svg->FirstChildElement("desc")->Attribute("id"), id + "-desc");
        EXPECT_NE(svg->FirstChildElement("title")->GetText(), nullptr);
    }
    EXPECT_STREQ(drawn.Drawing("score")->FirstChildElement("desc")->GetText(), "highest 90 at 0.00 s; threshold 100, dashed");
}

TEST(Figure, TheThresholdLineAndTheScoreShareTheirScale)
{
    Picture picture = TwoSeconds();
    picture.threshold = 80.0;
    picture.score = {0.5, 0.5, {0.0F, 80.0F, 100.0F}};
    const Drawn drawn(picture);
    EXPECT_EQ(drawn.Path("score"), "M250.0 100.0L500.0 20.0L750.0 0.0");
    const tinyxml2::XMLElement* line = drawn.Drawing("score")->LastChildElement("line");
    EXPECT_STREQ(line->Attribute("class"), "threshold");
    EXPECT_DOUBLE_EQ(line->DoubleAttribute("y1"), 20.0);
}

TEST(Figure, ValuesThatAreMissingLeaveAGap)
{
    Picture picture = TwoSeconds();
    picture.quality = {0.0, 0.5, {0.0F, std::numeric_limits<float>::quiet_NaN(), 30.0F, 15.0F}};
    EXPECT_EQ(Drawn(picture).Path("quality"), "M0.0 100.0M500.0 0.0L750.0 50.0");
    picture.quality.values = {std::numeric_limits<float>::quiet_NaN()};
    EXPECT_EQ(Drawn(picture).Drawing("quality"), nullptr);
}

TEST(Figure, AQuietRecordingIsEnlargedAndSaysSo)
{
    Picture picture = TwoSeconds();
    picture.wave = {{-0.1F, 0.05F}};
    // Four times: full height is 0.25.
    EXPECT_EQ(Drawn(picture).Path("sound"), "M500.0 40.0L500.0 70.0");
    EXPECT_THAT(Figure(picture, "1"), HasSubstr("drawn 4 times as high: highest sample -20 dB"));
    picture.wave = {{0.0F, 0.0F}};
    EXPECT_THAT(Figure(picture, "1"), HasSubstr("silent"));
    picture.wave = {{-1.0F, 1.0F}};
    EXPECT_EQ(Drawn(picture).Path("sound"), "M500.0 0.0L500.0 100.0");
    EXPECT_THAT(Figure(picture, "1"), HasSubstr("full scale is 1: highest sample 0 dB"));
}

TEST(Figure, TimesAreWrittenAsPeopleReadThem)
{
    const struct
    {
        double seconds;
        std::string tick;
    } cases[]{{0.9, ">0.8 s<"}, {5.0, ">3 s<"}, {90.0, ">1:20<"}, {3600.0, ">50:00<"}, {36000.0, ">2:00:00<"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.seconds);
        Picture picture;
        picture.seconds = own.seconds;
        EXPECT_THAT(Figure(picture, "1"), HasSubstr(own.tick));
    }
}

TEST(Figure, ARecordingWithoutLengthHasNone)
{
    EXPECT_EQ(Figure({}, "1"), "");
}

TEST(Figure, ScoresThatWereComparedStandWhereTheirPhraseEnds)
{
    Picture picture = TwoSeconds();
    picture.threshold = 100.0;
    picture.marks = {{Kind::Phrase, 0.5, 1.0, "", 120.0}, {Kind::NearMiss, 1.2, 1.5, "", 60.0}};
    const Drawn drawn(picture);
    const tinyxml2::XMLElement* stem = drawn.Drawing("score")->LastChildElement("line");
    EXPECT_STREQ(stem->Attribute("class"), "stem near");
    EXPECT_DOUBLE_EQ(stem->DoubleAttribute("x1"), 750.0);
    EXPECT_DOUBLE_EQ(stem->DoubleAttribute("y2"), 50.0);
    EXPECT_STREQ(drawn.Drawing("score")->FirstChildElement("desc")->GetText(), "highest 120 at 1.00 s; threshold 100, dashed");
}

TEST(Figure, APieceShowsTheTimesOfItsRecording)
{
    Picture picture = TwoSeconds();
    picture.firstSecond = 61.0;
    picture.marks = {{Kind::Phrase, 62.0, 62.5}};
    EXPECT_DOUBLE_EQ(Drawn(picture).Drawing("lane-phrase")->FirstChildElement("rect")->DoubleAttribute("x"), 500.0);
    EXPECT_THAT(Figure(picture, "1"), HasSubstr(">1:02.0<"));
}

TEST(Figure, AChartHasALineWithinItsBandAndTheMarkedPlace)
{
    const Chart chart{"Misses", "false alarms per hour", "missed", {{0.1, 40.0, 30.0, 50.0}, {10.0, 0.0, 0.0, 10.0}}, 1.0};
    const std::string markup = ChartFigure(chart);
    EXPECT_THAT(markup, HasSubstr("class=\"curve\" d=\"M0.0 60.0L1000.0 100.0\""));
    EXPECT_THAT(markup, HasSubstr("class=\"shade\" d=\"M0.0 50.0L1000.0 90.0L1000.0 100.0L0.0 70.0Z\""));
    EXPECT_THAT(markup, HasSubstr("class=\"threshold\" x1=\"500.0\""));
    EXPECT_EQ(ChartFigure({}), "");
}

} // namespace FigureTests
