#include "engine/models/Network.h"

#include <gmock/gmock.h>

namespace NetworkTests
{

using Weights = velox::engine::Network;

TEST(Network, FieldIsWhatAllLayersSpanAndTheLookAheadIsItsMiddle)
{
    const Eigen::MatrixXf any;
    const Weights network{{{5, 1, any, {}}, {3, 3, any, {}}, {3, 6, any, {}}, {3, 6, any, {}}, {1, 1, any, {}}}};
    EXPECT_EQ(network.Field(), 35);
    EXPECT_EQ(network.LookAhead(), 17);
}

} // namespace NetworkTests
