#include "ostrine/common/processor_firmware.h"

#include <gtest/gtest.h>

#include <optional>

#include "processor_structure.h"

namespace ostrine {
namespace {

using test::ByteVector;
using test::ProcessorStructure;

std::optional<FirmwareProcessor> ProcessorOf(const std::vector<ProcessorStructure>& processors) {
  ByteVector table;
  test::AppendBios(table);
  std::uint16_t handle = 4;
  for (const ProcessorStructure& processor : processors) test::AppendProcessor(table, processor, handle++);
  test::AppendEnd(table);
  return ReadFirmwareProcessor({.bytes = table});
}

TEST(ProcessorFirmware, ReadsTextsAndClocks) {
  const auto processor = ProcessorOf({{}});
  ASSERT_TRUE(processor);
  EXPECT_EQ(processor->manufacturer, "Intel(R) Corporation");
  EXPECT_EQ(processor->name, "12th Gen Core");
  EXPECT_EQ(processor->external_clock, 100u);
  EXPECT_EQ(processor->maximum_clock, 4700u);
  EXPECT_EQ(processor->current_clock, 2100u);
}

TEST(ProcessorFirmware, TakesAClockOfZeroForUnknown) {
  const auto processor = ProcessorOf({{.external_clock = 0, .maximum_clock = 0, .current_clock = 0}});
  ASSERT_TRUE(processor);
  EXPECT_EQ(processor->external_clock, std::nullopt);
  EXPECT_EQ(processor->maximum_clock, std::nullopt);
  EXPECT_EQ(processor->current_clock, std::nullopt);
}

TEST(ProcessorFirmware, PassesOverEmptySocketsAndOtherProcessors) {
  const auto processor = ProcessorOf({{.version = "empty socket", .status = 0x00},
                                      {.type = 6, .version = "video processor"},
                                      {.version = "the one"},
                                      {.version = "the other"}});
  ASSERT_TRUE(processor);
  EXPECT_EQ(processor->name, "the one");
  EXPECT_FALSE(ProcessorOf({{.status = 0x01}}));
  EXPECT_FALSE(ProcessorOf({{.type = 4}}));
  EXPECT_FALSE(ProcessorOf({}));
}

TEST(ProcessorFirmware, KnowsNothingPastTheEndOfAShortStructure) {
  const auto without_status = ProcessorOf({{.length = 0x18}});
  ASSERT_TRUE(without_status);
  EXPECT_EQ(without_status->current_clock, 2100u);
  const auto cut = ProcessorOf({{.length = 0x17}});
  ASSERT_TRUE(cut);
  EXPECT_EQ(cut->maximum_clock, 4700u);
  EXPECT_EQ(cut->current_clock, std::nullopt);
  EXPECT_FALSE(ProcessorOf({{.length = 0x05}}));
}

}  // namespace
}  // namespace ostrine
