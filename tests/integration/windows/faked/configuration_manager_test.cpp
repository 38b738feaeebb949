#include "platform/os/configuration_manager.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace velmora::os {
namespace {

/// Calls what the made-up library exports beside the system's functions.
unsigned long Ask(const char* name) {
  const HMODULE module = GetModuleHandleW(L"cfgmgr32.dll");
  const auto get =
      reinterpret_cast<unsigned long (*)()>(reinterpret_cast<void*>(GetProcAddress(module, name)));
  if (get == nullptr) ADD_FAILURE() << "this is the system's own library, not the made-up one";
  return get != nullptr ? get() : 0;
}

TEST(ConfigurationManager, FindsTheRootAndRescansIt) {
  DevNode root = 0;
  ASSERT_EQ(CM_Locate_DevNodeW(root, nullptr, 0), kConfigSuccess);
  EXPECT_EQ(CM_Reenumerate_DevNode(root, 4), kConfigSuccess);
  EXPECT_EQ(Ask("RescannedNode"), 1u);
  EXPECT_EQ(Ask("RescanFlags"), 4u);
}

TEST(ConfigurationManager, FindsADeviceByItsInstanceId) {
  DevNode node = 0;
  ASSERT_EQ(CM_Locate_DevNodeW(node, L"USB\\VID_8087&PID_0026\\5&1", 0), kConfigSuccess);
  EXPECT_EQ(node, 0x80000002u);
  EXPECT_EQ(CM_Reenumerate_DevNode(node, 0), kConfigFailure);
}

TEST(ConfigurationManager, LeavesTheNodeAloneWhenThereIsNone) {
  DevNode node = 7;
  EXPECT_EQ(CM_Locate_DevNodeW(node, L"USB\\NOSUCH\\1", 0), kConfigNoSuchDevNode);
  EXPECT_EQ(node, 7u);
}

}  // namespace
}  // namespace velmora::os
