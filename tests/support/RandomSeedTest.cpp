#include "RandomSeed.h"

#include <gtest/gtest.h>

#include <QByteArray>

namespace {

// Puts CORVANE_SEED back as it was.
class RandomSeedTest : public ::testing::Test {
 protected:
  void SetUp() override { qunsetenv("CORVANE_SEED"); }
  void TearDown() override {
    if (was_.isNull())
      qunsetenv("CORVANE_SEED");
    else
      qputenv("CORVANE_SEED", was_);
  }

 private:
  QByteArray was_ = qgetenv("CORVANE_SEED");
};

TEST_F(RandomSeedTest, EachRunTakesAFreshOne) {
  const std::vector<unsigned> seeds = {RandomSeed("a"), RandomSeed("b"), RandomSeed("c")};
  EXPECT_FALSE(seeds[0] == seeds[1] && seeds[1] == seeds[2]);
}

TEST_F(RandomSeedTest, TheFoundOnesComeFirst) {
  const std::vector<unsigned> seeds = RandomSeeds("a", 3, {4, 9});
  ASSERT_EQ(5U, seeds.size());
  EXPECT_EQ(4U, seeds[0]);
  EXPECT_EQ(9U, seeds[1]);
  EXPECT_EQ(seeds[2] + 1, seeds[3]);
  EXPECT_EQ(seeds[2] + 2, seeds[4]);
}

TEST_F(RandomSeedTest, AToldOneIsPlayedFirst) {
  qputenv("CORVANE_SEED", "4000000001");
  EXPECT_EQ(4000000001U, RandomSeed("a"));
  EXPECT_EQ((std::vector<unsigned>{4000000001U, 4000000002U}), RandomSeeds("a", 2, {4, 9}));
}

TEST_F(RandomSeedTest, ItIsPrintedAtOnce) {
  qputenv("CORVANE_SEED", "17");
  testing::internal::CaptureStdout();
  RandomSeed("steps");
  EXPECT_EQ("steps: CORVANE_SEED=17\n", testing::internal::GetCapturedStdout());
}

}  // namespace
