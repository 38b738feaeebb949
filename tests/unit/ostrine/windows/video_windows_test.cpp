// Video cards as the system lists them: made-up ones, entered into its device tree.
#include <windows.h>

#include <devpkey.h>
#include <devpropdef.h>
#include <gtest/gtest.h>
#include <setupapi.h>

#include <vector>

#include "ostrine/common/video.h"
#include "ostrine/windows/property_keys.h"
#include "platform/ostrine/setup_class.h"
#include "tests/support/windows/fake_device.h"

extern "C" BOOL WINAPI SetupDiSetDevicePropertyW(HDEVINFO, PSP_DEVINFO_DATA, const DEVPROPKEY*, DEVPROPTYPE,
                                                 const BYTE*, DWORD, DWORD);

namespace ostrine {
namespace {

using windows_support::FakeDevice;
using windows_support::InstalledDevice;

/// A display adapter with what the general made-up device does not have.
class FakeCard {
 public:
  FakeCard(const wchar_t* instance, const wchar_t* description, const wchar_t* hardware_id,
           std::optional<std::uint32_t> problem_code = std::nullopt)
      : device_(FakeDevice{.setup_class = velmora::setup_class::kDisplay,
                           .class_name = L"Display",
                           .instance_id = instance,
                           .description = description,
                           .hardware_ids = {hardware_id},
                           .driver_version = L"30.0.101.1404",
                           .problem_code = problem_code}),
        set_(SetupDiCreateDeviceInfoList(&velmora::setup_class::kDisplay, nullptr)) {
    data_.cbSize = sizeof data_;
    EXPECT_TRUE(SetupDiOpenDeviceInfoW(set_, instance, nullptr, 0, &data_));
  }
  FakeCard(const FakeCard&) = delete;
  FakeCard& operator=(const FakeCard&) = delete;
  ~FakeCard() { SetupDiDestroyDeviceInfoList(set_); }

  void SetBus(std::uint32_t bus) { Set(property_key::kBusNumber, DEVPROP_TYPE_UINT32, &bus, sizeof bus); }
  void SetDriverDate(std::uint64_t time) {
    Set(property_key::kDriverDate, DEVPROP_TYPE_FILETIME, &time, sizeof time);
  }
  void SetDriverValue(const wchar_t* name, DWORD type, const void* value, DWORD size) {
    const HKEY key = SetupDiCreateDevRegKeyW(set_, &data_, DICS_FLAG_GLOBAL, 0, DIREG_DRV, nullptr, nullptr);
    ASSERT_NE(key, INVALID_HANDLE_VALUE);
    EXPECT_EQ(RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(value), size), ERROR_SUCCESS);
    RegCloseKey(key);
  }

 private:
  void Set(const DEVPROPKEY& key, DEVPROPTYPE type, const void* value, DWORD size) {
    EXPECT_TRUE(
        SetupDiSetDevicePropertyW(set_, &data_, &key, type, static_cast<const BYTE*>(value), size, 0));
  }

  InstalledDevice device_;
  HDEVINFO set_;
  SP_DEVINFO_DATA data_{};
};

constexpr const wchar_t* kIntelCard = L"PCI\\VEN_8086&DEV_46A6&SUBSYS_22E617AA&REV_0C";

/// Made-up cards are told from a machine's own by being internal ones, of which the machine must have none.
bool HasOwnInternalCard() { return FindVideoCards().internal.has_value(); }

TEST(PropertyKeysOfVideo, AreTheSystems) {
  const auto same = [](const DEVPROPKEY& left, const DEVPROPKEY& right) {
    return left.pid == right.pid && IsEqualGUID(left.fmtid, right.fmtid);
  };
  EXPECT_TRUE(same(property_key::kBusNumber, DEVPKEY_Device_BusNumber));
  EXPECT_TRUE(same(property_key::kDriverDate, DEVPKEY_Device_DriverDate));
}

TEST(VideoWindows, TellsTheProcessorsCardFromTheGraphicsCardByItsBus) {
  if (HasOwnInternalCard()) GTEST_SKIP() << "this machine has an internal card of its own";
  const VideoCards own = FindVideoCards();
  FakeCard graphics(L"ROOT\\DISPLAY\\0101", L"Graphics Card", kIntelCard);
  graphics.SetBus(3);
  FakeCard internal(L"ROOT\\DISPLAY\\0102", L"Internal Graphics", kIntelCard);
  internal.SetBus(0);
  const FakeCard remote(L"ROOT\\DISPLAY\\0103", L"Remote Display", L"ROOT\\RemoteDisplay");
  const VideoCards cards = FindVideoCards();
  EXPECT_EQ(cards.count, own.count + 2);
  ASSERT_TRUE(cards.internal && cards.independent);
  EXPECT_EQ(ReadCardText(*cards.internal, CardFact::kName), "Internal Graphics");
  EXPECT_NE(cards.independent, cards.internal);
  if (own.count == 0) {
    EXPECT_EQ(ReadCardText(*cards.independent, CardFact::kName), "Graphics Card");
  }
}

TEST(VideoWindows, KnowsAnApuByItsNeighbourOnTheBus) {
  if (HasOwnInternalCard()) GTEST_SKIP() << "this machine has an internal card of its own";
  FakeCard apu(L"ROOT\\DISPLAY\\0104", L"APU Graphics", L"PCI\\VEN_1002&DEV_1638&SUBSYS_0&REV_C6");
  apu.SetBus(7);
  EXPECT_FALSE(FindVideoCards().internal);
  FakeCard neighbour(L"ROOT\\DISPLAY\\0105", L"Security Processor", L"PCI\\VEN_1022&DEV_15DF&REV_00");
  neighbour.SetBus(7);
  const VideoCards cards = FindVideoCards();
  ASSERT_TRUE(cards.internal);
  EXPECT_EQ(ReadCardText(*cards.internal, CardFact::kName), "APU Graphics");
}

TEST(VideoWindows, TellsTheDriversVersionDateAndMemory) {
  if (HasOwnInternalCard()) GTEST_SKIP() << "this machine has an internal card of its own";
  FakeCard card(L"ROOT\\DISPLAY\\0106", L"Internal Graphics", kIntelCard);
  card.SetBus(0);
  card.SetDriverDate(132'892'704'000'000'000);
  const std::uint32_t short_size = 0xFFF00000;
  card.SetDriverValue(L"HardwareInformation.MemorySize", REG_BINARY, &short_size, sizeof short_size);
  const auto shown = FindVideoCards().internal;
  ASSERT_TRUE(shown);
  EXPECT_EQ(ReadCardText(*shown, CardFact::kDriverVersion), "30.0.101.1404");
  EXPECT_EQ(ReadCardText(*shown, CardFact::kDriverDate), "2022-02-14");
  EXPECT_EQ(ReadCardMemory(*shown), 0xFFF00000u);
  const std::uint64_t long_size = std::uint64_t{8} << 30;
  card.SetDriverValue(L"HardwareInformation.qwMemorySize", REG_QWORD, &long_size, sizeof long_size);
  EXPECT_EQ(ReadCardMemory(*shown), long_size);
}

TEST(VideoWindows, TellsTheProblemCode) {
  if (HasOwnInternalCard()) GTEST_SKIP() << "this machine has an internal card of its own";
  FakeCard broken(L"ROOT\\DISPLAY\\0107", L"Internal Graphics", kIntelCard, 43);
  broken.SetBus(0);
  const auto shown = FindVideoCards().internal;
  ASSERT_TRUE(shown);
  EXPECT_EQ(ReadCardProblem(*shown), 43u);
}

TEST(VideoWindows, TellsNothingOfACardThatHasGone) {
  if (HasOwnInternalCard()) GTEST_SKIP() << "this machine has an internal card of its own";
  std::optional<std::uint64_t> gone;
  {
    FakeCard card(L"ROOT\\DISPLAY\\0108", L"Internal Graphics", kIntelCard);
    card.SetBus(0);
    gone = FindVideoCards().internal;
    ASSERT_TRUE(gone);
  }
  EXPECT_EQ(ReadCardText(*gone, CardFact::kName), std::nullopt);
  EXPECT_EQ(ReadCardMemory(*gone), std::nullopt);
  EXPECT_EQ(ReadCardProblem(*gone), std::nullopt);
}

}  // namespace
}  // namespace ostrine
