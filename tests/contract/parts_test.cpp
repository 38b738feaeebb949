/// What the devices of every backend come to in the classes that look for the machine's parts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "platform/ostrine/device_record.h"
#include "platform/ostrine/hal.h"
#include "platform/ostrine/setup_class.h"
#include "tests/contract/backend.h"
#include "velmora/audio.h"
#include "velmora/biometric.h"
#include "velmora/keyboard.h"

namespace contract {
namespace {

namespace setup_class = velmora::setup_class;

class Parts : public testing::Test {
 protected:
  std::vector<Device> DevicesOf(const GUID& setup_class) const { return backend_->DevicesOf(setup_class); }

  /// The first device of the class whose first hardware ID contains `part`.
  std::optional<Device> FirstWith(std::wstring_view part, const GUID& setup_class) const {
    for (const Device& device : DevicesOf(setup_class)) {
      const bool has_id = !device.hardware_ids.empty();
      if (has_id && device.hardware_ids.front().find(part) != std::wstring::npos) return device;
    }
    return std::nullopt;
  }

  std::unique_ptr<Backend> backend_ = Backend::SetUp();
};

TEST_F(Parts, OfTheAudioClassAreCounted) {
  constexpr auto kAudio = static_cast<unsigned int>(velmora::hal::DeviceClass::kAudio);
  const auto expected = static_cast<std::uint32_t>(DevicesOf(setup_class::kMedia).size());
  void* table = nullptr;
  EXPECT_NE(HalInit(kAudio, &table), 0);
  EXPECT_NE(table, nullptr);
  std::free(table);
  std::uint32_t count = 77;
  unsigned int returned = 0;
  EXPECT_NE(HalQueryInformation(kAudio, nullptr, 0, &count, sizeof count, &returned), 0);
  EXPECT_EQ(count, expected);
}

TEST_F(Parts, IncludeTheFirstRealtekAudioDevice) {
  CAudioCard audio;
  if (audio.GetAudioCardNumbers() == 0) {
    EXPECT_FALSE(FirstWith(L"VEN_10EC", setup_class::kMedia));
    EXPECT_EQ(audio.GetAudioErrorCode(), 0xFFFFFFFFU);
    return;
  }
  std::wstring id;
  EXPECT_TRUE(audio.GetAudioHardId(id));
  const auto device = FirstWith(id, setup_class::kMedia);
  ASSERT_TRUE(device);
  EXPECT_EQ(audio.GetAudioCardName(), device->description);
  if (device->problem_code) {
    EXPECT_EQ(audio.GetAudioErrorCode(), *device->problem_code);
  }
  if (device->inf) {
    std::wstring inf = L"old";
    EXPECT_TRUE(audio.GetAudioDriverInf(inf));
    EXPECT_EQ(inf, *device->inf);
  }
}

TEST_F(Parts, AreAbsentWhereNoDeviceIsLikeThem) {
  CBiometric biometric;
  const bool has_reader = [&] {
    for (const Device& device : DevicesOf(setup_class::kBiometric)) {
      if (!device.hardware_ids.empty() && device.hardware_ids.front().starts_with(L"ACPI")) return true;
    }
    return false;
  }();
  EXPECT_EQ(biometric.GetHardwareID().empty(), !has_reader);
  EXPECT_EQ(biometric.GetErrorCode() == 45, !has_reader);
  if (DevicesOf(setup_class::kKeyboard).empty()) {
    EXPECT_EQ(CKeyBoard().GetKeyBoardName(), L"");
  }
}

TEST_F(Parts, OfTheSystemAreFoundByTheirDescriptions) {
  CBiometric biometric;
  std::vector<std::wstring> seen;
  for (const Device& device : DevicesOf(setup_class::kSystem)) {
    const bool is_hidden = std::ranges::find(seen, device.description) != seen.end();
    seen.push_back(device.description);
    if (is_hidden || device.description.empty() || !device.problem_code) continue;
    EXPECT_EQ(biometric.GetSystemDeviceErrorCodeByDesc(device.description), *device.problem_code);
    EXPECT_EQ(biometric.GetSystemDeviceErrorCodeByHardId(device.description), *device.problem_code);
  }
  const auto engine = biometric.GetMEIDesc();
  const auto all = CDeviceInformention().GetDeviceDesc(setup_class::kSystem);
  EXPECT_TRUE(engine.empty() || std::ranges::find(all, engine) != all.end());
}

}  // namespace
}  // namespace contract
