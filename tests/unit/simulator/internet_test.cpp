#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "platform/os/internet_settings.h"
#include "platform/os/last_error.h"
#include "simulator/run.h"

namespace {

using namespace velmora::os;
using simulator::Fault;

simulator::Machine MachineOnInternet(const simulator::Internet& internet) {
  auto machine = simulator::BlankMachine();
  machine.internet = internet;
  return machine;
}

/// The proxy option as the library reads it: the size first.
struct Proxy {
  Proxy() {
    first = InternetQueryOptionW(38, nullptr, size);
    first_error = LastError();
    answer.resize(size);
    second = InternetQueryOptionW(38, answer.data(), size);
  }
  std::uint32_t size = 0;
  bool first;
  std::uint32_t first_error;
  bool second;
  std::string answer;
};

TEST(SimulatedInternet, GivesTheProxyAfterTellingItsSize) {
  const auto run = simulator::Use(MachineOnInternet({.access_type = 3, .proxy = "proxy:8080"}));
  const Proxy proxy;
  EXPECT_FALSE(proxy.first);
  EXPECT_EQ(proxy.first_error, 122u);
  ASSERT_TRUE(proxy.second);
  EXPECT_EQ(proxy.size, 24 + 22u);
  EXPECT_EQ(proxy.answer[0], 3);
  const char16_t* name = nullptr;
  std::memcpy(&name, proxy.answer.data() + 8, sizeof name);
  EXPECT_EQ(reinterpret_cast<const char*>(name), proxy.answer.data() + 24);
}

TEST(SimulatedInternet, MayAnswerWithFewerBytesThanTheAccessTypeHas) {
  const auto run = simulator::Use(MachineOnInternet({.proxy_answer = simulator::Bytes{{3, 0}}}));
  const Proxy proxy;
  EXPECT_EQ(proxy.size, 2u);
  EXPECT_TRUE(proxy.second);
}

TEST(SimulatedInternet, TellsHowItIsConnected) {
  auto run = simulator::Use(MachineOnInternet({.connected = true, .connection_flags = 0x12}));
  std::uint32_t flags = 0;
  EXPECT_EQ(InternetGetConnectedState(flags, 0), 1);
  EXPECT_EQ(flags, 0x12u);
  run.machine().internet->connected = false;
  EXPECT_EQ(InternetGetConnectedState(flags, 0), 0);
}

TEST(SimulatedInternet, GoesWrongAsATestWishes) {
  auto run =
      simulator::Use(MachineOnInternet({.proxy_error = 12018, .connected = true, .connection_flags = 1}));
  std::uint32_t size = 0;
  EXPECT_FALSE(InternetQueryOptionW(38, nullptr, size));
  EXPECT_EQ(LastError(), 12018u);
  std::uint32_t flags = 0;
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_EQ(InternetGetConnectedState(flags, 0), 1);
  EXPECT_EQ(flags, 0u);
  run.Inject(Fault::kFail, 0, true);
  EXPECT_EQ(InternetGetConnectedState(flags, 0), 0);
}

}  // namespace
