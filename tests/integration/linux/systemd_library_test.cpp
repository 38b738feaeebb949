#include "platform/linux/systemd_library.h"

#include <gtest/gtest.h>

#include "platform/linux/systemd_message.h"

namespace velmora {
namespace {

TEST(SystemdLibrary, HasEveryFunctionThatIsUsed) {
  const SystemdLibrary library;
  ASSERT_TRUE(library);
  EXPECT_EQ(library.bus_message_unref(nullptr), nullptr);
  EXPECT_EQ(library.hwdb_unref(nullptr), nullptr);
}

TEST(SystemdLibrary, IsNoneOnAMachineThatLacksIt) {
  const SystemdLibrary library("libnot-on-any-machine.so.0");
  EXPECT_FALSE(library);
  EXPECT_EQ(library.bus_new, nullptr);
  EXPECT_EQ(library.hwdb_new_from_path, nullptr);
}

TEST(SystemdLibrary, IsNoneWhenItLacksAFunction) {
  const SystemdLibrary library("libc.so.6");
  EXPECT_FALSE(library);
  EXPECT_EQ(library.bus_call, nullptr);
}

TEST(SystemdMessage, FailsInEverythingWhenThereIsNone) {
  const SystemdMessage none;
  char type = 0;
  const char* text = nullptr;
  EXPECT_FALSE(none);
  EXPECT_LT(none.Append("s", "text"), 0);
  EXPECT_LT(none.Read("s", &text), 0);
  EXPECT_LT(none.ReadBasic('s', &text), 0);
  EXPECT_LT(none.PeekType(type, text), 0);
  EXPECT_LT(none.Skip("s"), 0);
  EXPECT_LT(none.Enter('a', "s"), 0);
  EXPECT_LT(none.Exit(), 0);
  EXPECT_LT(none.SetAutoStart(false), 0);
  EXPECT_EQ(text, nullptr);
}

}  // namespace
}  // namespace velmora
