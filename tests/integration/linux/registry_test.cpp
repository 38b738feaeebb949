#include "platform/linux/registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/linux/network_interface.h"
#include "platform/os/handle.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "platform/text_search.h"
#include "platform/unicode.h"
#include "tests/support/linux/fake_machine.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeMachine;
using testing::ElementsAre;

const std::wstring kClass =
    L"SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e972-e325-11ce-bfc1-08002be10318}\\";

std::wstring TextValue(RegistryKey key, const wchar_t* name) {
  char16_t text[130] = {};
  std::uint32_t size = sizeof text;
  std::uint32_t type = 0;
  if (RegQueryValueExW(key, name, &type, text, size) != 0) return L"none";
  EXPECT_EQ(type, 1u);
  EXPECT_EQ(text[size / 2 - 1], u'\0');
  return unicode::WideFromUtf16({text, size / 2 - 1});
}

std::uint32_t MediumIn(RegistryKey key) {
  std::uint32_t medium = 0;
  std::uint32_t size = sizeof medium;
  return RegQueryValueExW(key, L"*PhysicalMediaType", nullptr, &medium, size) == 0 ? medium : 0;
}

class CardKeys : public testing::Test {
 protected:
  CardKeys() { BuildLaptop(machine_); }
  RegistryKey Open(const wchar_t* number) {
    RegistryKey key = nullptr;
    EXPECT_EQ(OpenRegistryKey(machine_.Path(), LocalMachine(), (kClass + number).c_str(), key), 0u);
    return key;
  }
  FakeMachine machine_;
  ostrine::test::ActsOn acts_on_{machine_};
};

TEST_F(CardKeys, StandInTheKernelsOrder) {
  EXPECT_THAT(ListCards(machine_.Path()), ElementsAre("enp0s31f6", "wlp0s20f3"));
  const RegistryKey wired = Open(L"0000");
  EXPECT_EQ(MediumIn(wired), 14u);
  EXPECT_EQ(TextValue(wired, L"ComponentId"), L"pci\\ven_8086&dev_1a1f&subsys_22e617aa");
  const RegistryKey wireless = Open(L"0001");
  EXPECT_EQ(MediumIn(wireless), 9u);
  EXPECT_EQ(RegCloseKey(wired), 0u);
  EXPECT_EQ(RegCloseKey(wireless), 0u);
}

TEST_F(CardKeys, LeadToTheDevicesThatTheHardwareLibraryKnows) {
  CDeviceInformention devices;
  for (const wchar_t* number : {L"0000", L"0001"}) {
    const RegistryKey key = Open(number);
    const std::wstring component = TextValue(key, L"componentid");
    std::wstring found;
    for (const auto& id : devices.GetDeviceHardwareID(setup_class::kNet)) {
      if (FindIgnoringCase(id.c_str(), component.c_str()) != nullptr) found = id;
    }
    ASSERT_NE(found, L"") << number;
    EXPECT_EQ(devices.GetDeviceStrInfoByHardwareID(found, setup_class::kNet, PROP_INSTANCE_ID),
              TextValue(key, L"DeviceInstanceID"));
    RegCloseKey(key);
  }
}

TEST_F(CardKeys, AreAsManyAsTheCards) {
  RegistryKey key = &machine_;
  for (const wchar_t* path : {L"0002", L"0029", L"9999", L"000", L"00000", L"000a", L"-001", L""}) {
    EXPECT_EQ(OpenRegistryKey(machine_.Path(), LocalMachine(), (kClass + path).c_str(), key), 2u) << path;
  }
  EXPECT_EQ(OpenRegistryKey(machine_.Path(), LocalMachine(), L"SOFTWARE", key), 2u);
  EXPECT_EQ(OpenRegistryKey(machine_.Path(), LocalMachine(), nullptr, key), 2u);
  EXPECT_EQ(OpenRegistryKey(machine_.Path(), nullptr, (kClass + L"0000").c_str(), key), 6u);
  EXPECT_EQ(key, &machine_);
}

TEST_F(CardKeys, AreFoundInEitherLetterCase) {
  EXPECT_EQ(CardNumberOf(kClass + L"0012"), 12u);
  EXPECT_EQ(CardNumberOf(
                L"system\\CURRENTCONTROLSET\\control\\class\\{4D36E972-E325-11CE-BFC1-08002BE10318}\\0029"),
            29u);
}

TEST_F(CardKeys, LeaveTheDataAloneThatAValueIsTooLongFor) {
  const RegistryKey key = Open(L"0000");
  char16_t text[8] = u"aaaaaaa";
  std::uint32_t size = sizeof text;
  EXPECT_EQ(RegQueryValueExW(key, L"ComponentId", nullptr, text, size), 234u);
  EXPECT_EQ(std::u16string(text), u"aaaaaaa");
  EXPECT_EQ(size, 2 * (std::u16string(u"pci\\ven_8086&dev_1a1f&subsys_22e617aa").size() + 1));
  std::uint32_t needed = 0;
  EXPECT_EQ(RegQueryValueExW(key, L"ComponentId", nullptr, nullptr, needed), 0u);
  EXPECT_EQ(needed, size);
  EXPECT_EQ(RegQueryValueExW(key, L"NoSuchValue", nullptr, text, size), 2u);
  EXPECT_EQ(RegQueryValueExW(key, nullptr, nullptr, text, size), 2u);
  EXPECT_EQ(RegCloseKey(key), 0u);
}

TEST_F(CardKeys, AreNoOtherHandles) {
  std::uint32_t size = 0;
  for (const RegistryKey key : {RegistryKey{nullptr}, LocalMachine(), InvalidHandle()}) {
    EXPECT_EQ(RegQueryValueExW(key, L"ComponentId", nullptr, nullptr, size), 6u);
    EXPECT_EQ(RegCloseKey(key), 6u);
  }
  const RegistryKey key = Open(L"0000");
  EXPECT_FALSE(CloseHandle(key));
  EXPECT_EQ(RegCloseKey(key), 0u);
}

TEST(ComponentIds, AreTheNumbersOfTheBus) {
  EXPECT_EQ(ComponentIdOf("pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00"),
            "pci\\ven_8086&dev_51f0&subsys_00948086");
  EXPECT_EQ(ComponentIdOf("usb:v0BDAp8153d3100dc00dsc00dp00icFFiscFFip00in00"), "usb\\vid_0bda&pid_8153");
  for (const char* none : {"", "pci:", "pci:v00018086d000051F0sv00008086sd00000094", "pci:v00008086d000051F0",
                           "pci:v0000*d000051F0sv00008086sd00000094", "usb:v0BDA", "usb:v0BDAp81",
                           "virtio:d00000001v00001AF4"}) {
    EXPECT_EQ(ComponentIdOf(none), "") << none;
  }
}

TEST(ComponentIds, OfParavirtualCardsAreThoseOfTheFunctionAbove) {
  const FakeMachine machine;
  const std::string function = "pci0000:00/0000:00:03.0";
  machine.Add("pci", function, {{"modalias", "pci:v00001AF4d00001000sv00001AF4sd00000001bc02sc00i00"}});
  machine.Add("virtio", function + "/virtio2", {{"modalias", "virtio:d00000001v00001AF4"}});
  machine.AddOfClass("net", function + "/virtio2/net/eth0", {{"type", "1"}, {"ifindex", "2"}});
  machine.Root().Link("sys/devices/" + function + "/virtio2/net/eth0/device", "../../../virtio2");
  EXPECT_EQ(ComponentId(machine.Path(), "eth0"), "pci\\ven_1af4&dev_1000&subsys_00011af4");
  EXPECT_EQ(ComponentId(machine.Path(), "../eth0"), "");
  EXPECT_EQ(ComponentId(machine.Path(), ""), "");
}

}  // namespace
}  // namespace velmora::os
