#include "velmora-report/lifelines.h"

#include <gtest/gtest.h>

namespace {

TEST(PlaceOf, IsTheWholeInstanceIdInCapitals) {
  EXPECT_EQ(report::PlaceOf("PCI\\VEN_8086&dev_51f0\\3&11583659"), "PCI\\VEN_8086&DEV_51F0\\3&11583659");
  EXPECT_EQ(report::PlaceOf(""), "");
}

TEST(Lifelines, ReadTwiceAreTheSame) {
  const auto first = report::ReadLifelines();
  const auto second = report::ReadLifelines();
  EXPECT_EQ(first.disks, second.disks);
  EXPECT_EQ(first.displays, second.displays);
  EXPECT_EQ(first.keyboards, second.keyboards);
}

}  // namespace
