/// What every implementation of CDeviceInformention owes. A made-up machine has: two USB devices with one
/// description, of which the second has a problem; a device with several hardware IDs and lower-case letters
/// in them; a device without a description in a class that also has one with; a device without a working
/// driver; a class without devices; a removable device.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>

#include "platform/ostrine/setup_class.h"
#include "tests/contract/backend.h"

namespace contract {
namespace {

constexpr unsigned long kAbsentProblem = 45;
constexpr unsigned long kNoSuchDevice = 0xE000020B;
const std::wstring kNoId = L"PCI\\VEN_FFFF&DEV_FFFF&SUBSYS_00000000&REV_FF";

/// The text with the case of every ASCII letter changed.
std::wstring OtherCase(std::wstring text) {
  for (wchar_t& c : text) {
    if (c >= L'a' && c <= L'z') {
      c = static_cast<wchar_t>(c - L'a' + L'A');
    } else if (c >= L'A' && c <= L'Z') {
      c = static_cast<wchar_t>(c - L'A' + L'a');
    }
  }
  return text;
}

class Devices : public testing::Test {
 protected:
  /// Calls `check` with every device of the eight classes that no earlier one of its class hides, because it
  /// has the same description (or, with `by_id`, one of the same hardware IDs).
  template <class Check>
  void ForEachFirst(bool by_id, Check check) {
    for (const GUID& setup_class : SetupClasses()) {
      std::vector<std::wstring> seen;
      for (const auto& device : backend_->DevicesOf(setup_class)) {
        const std::vector<std::wstring> keys =
            by_id ? device.hardware_ids : std::vector<std::wstring>{device.description};
        for (const auto& key : keys) {
          if (!key.empty() && std::ranges::find(seen, key) == seen.end()) check(device, key);
          seen.push_back(key);
        }
      }
    }
  }

  std::unique_ptr<Backend> backend_ = Backend::SetUp();
  CDeviceInformention information_;
};

TEST_F(Devices, AreThereToBeAskedFor) {
  std::size_t count = 0;
  for (const GUID& setup_class : SetupClasses()) count += backend_->DevicesOf(setup_class).size();
  EXPECT_GT(count, 0u) << "the other tests would check nothing";
}

TEST_F(Devices, AreListedByDescriptionInEnumerationOrderOneEntryEach) {
  for (const GUID& setup_class : SetupClasses()) {
    std::vector<std::wstring> expected;
    for (const auto& device : backend_->DevicesOf(setup_class)) expected.push_back(device.description);
    EXPECT_EQ(information_.GetDeviceDesc(setup_class), expected);
  }
}

TEST_F(Devices, AreListedByFirstHardwareIdInEnumerationOrder) {
  for (const GUID& setup_class : SetupClasses()) {
    std::vector<std::wstring> expected;
    for (const auto& device : backend_->DevicesOf(setup_class)) {
      if (!device.hardware_ids.empty()) expected.push_back(device.hardware_ids.front());
    }
    EXPECT_EQ(information_.GetDeviceHardwareID(setup_class), expected);
  }
}

TEST_F(Devices, OfAnUnknownClassAreNone) {
  const GUID unknown{0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};
  EXPECT_TRUE(information_.GetDeviceDesc(unknown).empty());
  EXPECT_TRUE(information_.GetDeviceHardwareID(unknown).empty());
}

TEST_F(Devices, GiveTheirTextsByAnyHardwareId) {
  ForEachFirst(true, [&](const Device& device, const std::wstring& id) {
    const auto ask = [&](enmDEVICE_PROPERTY property) {
      return information_.GetDeviceStrInfoByHardwareID(id, device.setup_class, property);
    };
    const auto expect = [&](enmDEVICE_PROPERTY property, const std::optional<std::wstring>& text) {
      if (!text) return;
      EXPECT_EQ(ask(property), *text) << "property " << property;
    };
    expect(PROP_DESCRIPTION, device.description);
    expect(PROP_MANUFACTURER, device.manufacturer);
    expect(PROP_DRIVER_VERSION, device.driver_version);
    expect(PROP_HARDWARE_ID, device.hardware_ids.front());
    expect(PROP_DEVICE_TYPE, device.type);
    expect(PROP_DEVICE_NAME, device.name);
    expect(PROP_DISPLAY_NAME, device.display_name);
    expect(PROP_INF, device.inf);
    expect(PROP_INSTANCE_ID, device.instance_id);
  });
}

TEST_F(Devices, GiveTheirTextsByDescriptionTheFirstOfSeveralLikeOnes) {
  ForEachFirst(false, [&](const Device& device, const std::wstring& description) {
    const auto first_id =
        information_.GetDeviceStrInfoByDesc(description, device.setup_class, PROP_HARDWARE_ID);
    EXPECT_EQ(first_id, device.hardware_ids.empty() ? std::wstring() : device.hardware_ids.front());
    EXPECT_EQ(information_.GetDeviceStrInfoByDesc(description, device.setup_class, PROP_DESCRIPTION),
              description);
  });
}

TEST_F(Devices, AreFoundInEitherLetterCase) {
  ForEachFirst(true, [&](const Device& device, const std::wstring& id) {
    EXPECT_EQ(information_.GetDeviceStrInfoByHardwareID(OtherCase(id), device.setup_class, PROP_DESCRIPTION),
              device.description);
  });
  ForEachFirst(false, [&](const Device& device, const std::wstring& description) {
    EXPECT_EQ(
        information_.GetDeviceStrInfoByDesc(OtherCase(description), device.setup_class, PROP_DESCRIPTION),
        description);
  });
}

TEST_F(Devices, AreFoundByWholeTextsOnly) {
  ForEachFirst(true, [&](const Device& device, const std::wstring& id) {
    for (const auto& other : {id.substr(1), id + L"X", id + std::wstring(1, L'\0'), L" " + id}) {
      const auto found =
          information_.GetDeviceStrInfoByHardwareID(other, device.setup_class, PROP_INSTANCE_ID);
      const bool is_another_id = std::ranges::any_of(
          backend_->DevicesOf(device.setup_class),
          [&](const Device& candidate) { return std::ranges::count(candidate.hardware_ids, other) > 0; });
      if (is_another_id) continue;
      EXPECT_EQ(found, L"");
    }
  });
}

TEST_F(Devices, AreFoundInTheirOwnClassOnly) {
  ForEachFirst(true, [&](const Device& device, const std::wstring& id) {
    for (const GUID& setup_class : SetupClasses()) {
      const auto devices = backend_->DevicesOf(setup_class);
      const bool is_in_class = std::ranges::any_of(devices, [&](const Device& candidate) {
        return std::ranges::count(candidate.hardware_ids, id) > 0;
      });
      if (is_in_class) continue;
      EXPECT_EQ(information_.GetDeviceStrInfoByHardwareID(id, setup_class, PROP_DESCRIPTION), L"");
    }
    (void)device;
  });
}

TEST_F(Devices, GiveTheirProblemCode) {
  ForEachFirst(true, [&](const Device& device, const std::wstring& id) {
    if (!device.problem_code) return;
    EXPECT_EQ(information_.GetDeviceULONGInfoByHardwareID(id, device.setup_class, PROP_PROBLEM_CODE),
              *device.problem_code);
  });
  ForEachFirst(false, [&](const Device& device, const std::wstring& description) {
    if (!device.problem_code) return;
    EXPECT_EQ(information_.GetDeviceULONGInfoByDesc(description, device.setup_class, PROP_PROBLEM_CODE),
              *device.problem_code);
  });
}

TEST_F(Devices, GiveNoNumberForAnyOtherProperty) {
  ForEachFirst(true, [&](const Device& device, const std::wstring& id) {
    EXPECT_EQ(information_.GetDeviceULONGInfoByHardwareID(id, device.setup_class, PROP_DESCRIPTION), 0u);
  });
}

TEST_F(Devices, GiveTheTimeOfTheirLastInstallation) {
  ForEachFirst(true, [&](const Device& device, const std::wstring& id) {
    if (!device.last_install_time) return;
    EXPECT_EQ(information_.GetLastIntallTime(id, device.setup_class), *device.last_install_time);
  });
}

TEST_F(Devices, WithoutAWorkingDriverAreListedOverAllClasses) {
  const auto unknown = backend_->UnknownDevices();
  if (!unknown) GTEST_SKIP() << "this machine's devices without a driver are not known to the test";
  EXPECT_EQ(information_.GetUnknownDeviceHardID(), *unknown);
}

TEST_F(Devices, ThatAreAbsentGiveEmptyTextsAndTheAbsentProblemCode) {
  for (const GUID& setup_class : SetupClasses()) {
    for (const std::wstring& id :
         {kNoId, std::wstring(), std::wstring(L"A\0B", 3), std::wstring(70'000, L'X')}) {
      EXPECT_EQ(information_.GetDeviceStrInfoByHardwareID(id, setup_class, PROP_DESCRIPTION), L"");
      EXPECT_EQ(information_.GetDeviceStrInfoByDesc(id, setup_class, PROP_HARDWARE_ID), L"");
      EXPECT_EQ(information_.GetDeviceULONGInfoByHardwareID(id, setup_class, PROP_PROBLEM_CODE),
                kAbsentProblem);
      EXPECT_EQ(information_.GetDeviceULONGInfoByDesc(id, setup_class, PROP_PROBLEM_CODE), kAbsentProblem);
      EXPECT_EQ(information_.GetDeviceULONGInfoByHardwareID(id, setup_class, PROP_DESCRIPTION), 0u);
      EXPECT_EQ(information_.GetLastIntallTime(id, setup_class), 0u);
    }
  }
}

TEST_F(Devices, ThatAreAbsentCannotBeRemoved) {
  for (const std::wstring& id : {kNoId, std::wstring()}) {
    EXPECT_EQ(information_.UnstallDeviceByHardwareID(id, velmora::setup_class::kUsb), kNoSuchDevice);
  }
}

TEST_F(Devices, HaveNoPropertyOfAnUnknownNumber) {
  ForEachFirst(true, [&](const Device& device, const std::wstring& id) {
    for (const std::uint32_t number : {4u, 11u, 0xFFFFFFFFu}) {
      const auto property = static_cast<enmDEVICE_PROPERTY>(number);
      EXPECT_EQ(information_.GetDeviceStrInfoByHardwareID(id, device.setup_class, property), L"");
      EXPECT_EQ(information_.GetDeviceULONGInfoByHardwareID(id, device.setup_class, property), 0u);
    }
  });
}

TEST_F(Devices, AreGoneOnceRemovedUntilARescanBringsThemBack) {
  const auto device = backend_->RemovableDevice();
  if (!device) GTEST_SKIP() << "this machine has no device that a test may remove";
  const std::wstring id = device->hardware_ids.front();
  const auto ask = [&] {
    return information_.GetDeviceStrInfoByHardwareID(id, device->setup_class, PROP_HARDWARE_ID);
  };
  ASSERT_EQ(ask(), id);

  EXPECT_EQ(information_.UnstallDeviceByHardwareID(id, device->setup_class), 0u);
  EXPECT_EQ(ask(), L"");
  EXPECT_EQ(information_.UnstallDeviceByHardwareID(id, device->setup_class), kNoSuchDevice);

  backend_->Rescan();
  EXPECT_EQ(ask(), id);
}

TEST_F(Devices, AreEnoughOnAMadeUpMachineForEveryTestHere) {
  if (!backend_->IsMadeUp()) GTEST_SKIP() << "the devices are this machine's own";
  bool has_twins = false;
  bool has_problem = false;
  bool has_several_ids = false;
  bool has_empty_class = false;
  for (const GUID& setup_class : SetupClasses()) {
    const auto devices = backend_->DevicesOf(setup_class);
    has_empty_class |= devices.empty();
    for (const auto& device : devices) {
      has_twins |= std::ranges::count(devices, device.description, &Device::description) > 1;
      has_problem |= device.problem_code.value_or(0) != 0;
      has_several_ids |= device.hardware_ids.size() > 1;
    }
  }
  EXPECT_TRUE(has_twins);
  EXPECT_TRUE(has_problem);
  EXPECT_TRUE(has_several_ids);
  EXPECT_TRUE(has_empty_class);
  EXPECT_TRUE(backend_->UnknownDevices() && !backend_->UnknownDevices()->empty());
  EXPECT_TRUE(backend_->RemovableDevice());
}

}  // namespace
}  // namespace contract
