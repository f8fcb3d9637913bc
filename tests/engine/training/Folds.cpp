#include "engine/training/Folds.h"

#include <gmock/gmock.h>

namespace FoldsTests
{

using testing::Each;
using testing::ElementsAre;
using velox::engine::PreparedTake;
using Material = velox::engine::Folds;

std::vector<PreparedTake> TakesOf(const std::vector<std::string>& voices)
{
    std::vector<PreparedTake> takes;
    for (const std::string& voice : voices)
    {
        takes.emplace_back().voice = voice;
    }
    return takes;
}

TEST(Folds, AVoiceStandsInOneHalf)
{
    const Material folds = Material::Of(TakesOf({"a", "b", "a", "c", "d", "b", "d"}), {});
    EXPECT_THAT(folds.takes, ElementsAre(0, 1, 0, 0, 1, 1, 1));
}

TEST(Folds, TakesOfVeryFewVoicesAreHalvedAllTheSame)
{
    EXPECT_THAT(Material::Of(TakesOf({"a", "a", "a"}), {}).takes, ElementsAre(0, 1, 0));
}

TEST(Folds, NeighboursInTheBackgroundGoTogether)
{
    const std::vector<std::vector<float>> background(64, std::vector<float>(100));
    const std::vector<int> folds = Material::Of({}, background).background;
    for (std::size_t first = 0; first < folds.size(); first += 4)
    {
        EXPECT_THAT(std::vector<int>(folds.begin() + static_cast<std::ptrdiff_t>(first),
                                     folds.begin() + static_cast<std::ptrdiff_t>(first) + 4),
                    Each(static_cast<int>(first / 4 % 2)));
    }
}

TEST(Folds, FewRecordingsOfUnequalLengthFallIntoBothHalves)
{
    const std::vector<std::vector<float>> background{std::vector<float>(1000), std::vector<float>(900), std::vector<float>(10)};
    EXPECT_THAT(Material::Of({}, background).background, testing::IsSupersetOf({0, 1}));
}

} // namespace FoldsTests
