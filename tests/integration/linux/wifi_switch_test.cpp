#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/rfkill.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <thread>
#include <tuple>

#include "platform/linux/rfkill.h"
#include "tests/integration/linux/wifi_machine.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeMachine;
using testing::ElementsAre;

/// Does what the kernel does with what is written to /dev/rfkill.
class SwitchingKernel {
 public:
  SwitchingKernel(const FakeMachine& machine, std::map<std::uint32_t, std::string> folders)
      : machine_(machine), folders_(std::move(folders)), thread_([this] {
          while (!stop_) {
            Follow();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
          }
        }) {}
  ~SwitchingKernel() {
    stop_ = true;
    thread_.join();
  }
  std::vector<std::pair<std::uint32_t, int>> Done() const { return done_; }

 private:
  void Follow() {
    // Each event overwrites the one before it, since a device has no end to be written behind.
    std::ifstream file(machine_.Path() / "dev/rfkill", std::ios::binary);
    std::array<char, RFKILL_EVENT_SIZE_V1> bytes{};
    if (!file.read(bytes.data(), bytes.size())) return;
    rfkill_event event{};
    std::memcpy(&event, bytes.data(), bytes.size());
    const std::uint32_t number = event.idx;  // the record is packed
    const std::pair<std::uint32_t, int> change{number, int{event.soft}};
    if (event.op != RFKILL_OP_CHANGE || event.type != RFKILL_TYPE_WLAN) return;
    if (!done_.empty() && done_.back() == change) return;
    done_.push_back(change);
    machine_.WriteFile(folders_.at(number) + "/soft", std::to_string(event.soft) + "\n");
  }

  const FakeMachine& machine_;
  std::map<std::uint32_t, std::string> folders_;
  std::vector<std::pair<std::uint32_t, int>> done_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

class WifiSwitch : public test::WifiMachine {
 protected:
  const std::string kRadio = "sys/devices/pci0000:00/0000:00:14.3/net/wlp0s20f3/phy80211/rfkill5";
  std::uint32_t Set(std::uint32_t state, std::uint32_t phy = 0, std::uint32_t size = 12) {
    const WlanPhyRadioState wanted{.phy_index = phy, .software_state = state, .hardware_state = 0};
    return WlanSetInterface(client_, first_, 4, size, &wanted);
  }
};

TEST_F(WifiSwitch, IsSwitchedAndReadBack) {
  AddSwitch("0", "0");
  machine_.WriteFile("dev/rfkill", "");
  const SwitchingKernel kernel(machine_, {{5, kRadio}});
  EXPECT_EQ(Set(2), 0u);
  EXPECT_FALSE(ReadRadioSwitch(machine_.Path(), "wlp0s20f3")->software_on);
  EXPECT_EQ(Set(1), 0u);
  EXPECT_TRUE(ReadRadioSwitch(machine_.Path(), "wlp0s20f3")->software_on);
  EXPECT_THAT(kernel.Done(), ElementsAre(std::pair(5U, 1), std::pair(5U, 0)));
}

TEST_F(WifiSwitch, TakesTwoStatesOfOneRadioOnly) {
  AddSwitch("0", "0");
  machine_.WriteFile("dev/rfkill", "");
  EXPECT_EQ(Set(0), 87u);
  EXPECT_EQ(Set(3), 87u);
  EXPECT_EQ(Set(1, 1), 87u);
  EXPECT_EQ(Set(1, 0, 11), 87u);
  EXPECT_EQ(WlanSetInterface(client_, first_, 4, 12, nullptr), 87u);
  EXPECT_EQ(std::filesystem::file_size(machine_.Path() / "dev/rfkill"), 0u);
}

TEST_F(WifiSwitch, SaysWhyItStays) {
  EXPECT_EQ(Set(2), 50u) << "there is no switch";
  AddSwitch("0", "0");
  EXPECT_EQ(Set(2), 50u) << "the kernel takes no wishes";
  EXPECT_FALSE(std::filesystem::exists(machine_.Path() / "dev/rfkill"));
  machine_.WriteFile("dev/rfkill", "");
  EXPECT_EQ(Set(2), 1460u) << "it does not follow";
  machine_.Root().Forbid("dev/rfkill");
  const ostrine::test::WithoutRights without_rights;
  EXPECT_EQ(SetRadioSwitch(machine_.Path(), "wlp0s20f3", false), 5u);
}

TEST_F(WifiSwitch, OnFreesTheMachinesOwnSwitchOffDoesNotTouchIt) {
  AddSwitch("1", "1");
  const std::string own = "sys/devices/platform/wmi/rfkill/rfkill0";
  for (const auto& [place, type, soft] :
       {std::tuple("rfkill0", "wlan", "1"), std::tuple("rfkill1", "bluetooth", "1"),
        std::tuple("rfkill2", "wlan", "0")}) {
    const std::string folder = std::string("sys/devices/platform/wmi/rfkill/") + place;
    machine_.WriteFile(folder + "/type", std::string(type) + "\n");
    machine_.WriteFile(folder + "/soft", std::string(soft) + "\n");
    machine_.Root().Link(std::string("sys/class/rfkill/") + place,
                         "../../devices/platform/wmi/rfkill/" + std::string(place));
  }
  // Another card's radio, off as well.
  machine_.WriteFile("sys/devices/pci0000:00/0000:05:00.0/phy9/rfkill9/type", "wlan\n");
  machine_.WriteFile("sys/devices/pci0000:00/0000:05:00.0/phy9/rfkill9/soft", "1\n");
  machine_.WriteFile("sys/devices/pci0000:00/0000:05:00.0/phy9/index", "9\n");
  machine_.WriteFile("sys/devices/pci0000:00/0000:05:00.0/phy9/macaddress", "00:00:00:00:00:09\n");
  machine_.Root().Link("sys/devices/pci0000:00/0000:05:00.0/phy9/rfkill9/device", "..");
  machine_.Root().Link("sys/class/rfkill/rfkill9", "../../devices/pci0000:00/0000:05:00.0/phy9/rfkill9");
  machine_.WriteFile("dev/rfkill", "");
  const SwitchingKernel kernel(machine_, {{0, own}, {5, kRadio}});
  EXPECT_EQ(SetRadioSwitch(machine_.Path(), "wlp0s20f3", true), 0u);
  EXPECT_EQ(kernel.Done().back(), std::pair(5U, 0));
  EXPECT_EQ(SetRadioSwitch(machine_.Path(), "wlp0s20f3", false), 0u);
  EXPECT_EQ(kernel.Done().back(), std::pair(5U, 1));
  std::ifstream other(machine_.Path() / "sys/class/rfkill/rfkill9/soft");
  EXPECT_EQ(other.get(), '1');
}

}  // namespace
}  // namespace velmora::os
