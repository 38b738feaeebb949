#include "network/model_table.h"

#include <gtest/gtest.h>

namespace {

TEST(ModelTable, HasThePathOfTheModelList) {
  EXPECT_STREQ(velmora::models::kListPath, "\\config\\MachineTypeList.xml");
}

TEST(ModelTable, HasTheTextTwo) { EXPECT_STREQ(velmora::models::kTextTwo, L"2"); }

}  // namespace
