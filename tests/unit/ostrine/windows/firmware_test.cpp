#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <array>
#include <optional>

#include "platform/ostrine/wmi.h"
#include "tests/support/windows/fake_wmi.h"

namespace {

using testing::ElementsAre;
using namespace windows_support;

constexpr std::uint64_t kTemperatureOfSensor0 = 0x0202;
constexpr std::uint64_t kTemperatureOfSensor1 = 0x10202;
constexpr std::uint64_t kFan = 0x0802;

/// A machine whose firmware has the method (`WithMethod`), or has thermal zones only.
class Firmware : public testing::Test {
 protected:
  Firmware() { wmi_.emplace(); }
  ~Firmware() override {
    EXPECT_EQ(wmi_->connections, 0);
    EXPECT_EQ(wmi_->calls_without_class, 0) << "a method was called before its class was looked up";
    wmi_.reset();
    CoUninitialize();
  }

  void WithMethod() {
    wmi_->has_firmware = true;
    wmi_->tables[L"VelmoraFirmware"] = {
        {{L"__RELPATH", TextProperty(L"VelmoraFirmware.InstanceName=\"ACPI\\\\X\"")}}};
    wmi_->firmware = [this](const std::wstring& input) {
      input_ = input;
      return FakeRow{{L"OutData", BytesProperty({0, 1, 40})}};
    };
  }
  void WithZones(std::initializer_list<LONG> readings) {
    auto& zones = wmi_->tables[L"MSAcpi_ThermalZoneTemperature"];
    for (const LONG reading : readings) zones.push_back({{L"CurrentTemperature", NumberProperty(reading)}});
  }
  bool Ask(std::uint64_t input, unsigned int size = 256) {
    output_.fill(0xEE);
    SetLastError(0);
    return CWMI(L"ROOT\\WMI").GetOutPutUInt(input, output_.data(), size);
  }

  const HRESULT entered_ = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  std::optional<FakeWmi> wmi_;
  std::wstring input_;
  std::array<unsigned char, 256> output_{};
};

TEST_F(Firmware, GetsTheWordAndGivesItsBytes) {
  WithMethod();
  for (const bool at_once : {false, true}) {
    wmi_->calls_return_at_once = at_once;
    ASSERT_TRUE(Ask(0xFFFFFFFFFFFF0202));
    EXPECT_EQ(input_, L"18446744073709486594");
    EXPECT_EQ(output_[0], 0);
    EXPECT_EQ(output_[1], 1);
    EXPECT_EQ(output_[2], 40);
    EXPECT_EQ(output_[3], 0xEE) << "more was written than the firmware gave";
  }
  EXPECT_EQ(wmi_->called_paths.front(), L"VelmoraFirmware.InstanceName=\"ACPI\\\\X\"");
}

TEST_F(Firmware, WritesNoMoreThanFits) {
  WithMethod();
  ASSERT_TRUE(Ask(kFan, 1));
  EXPECT_EQ(output_[0], 0);
  EXPECT_EQ(output_[1], 0xEE);
  ASSERT_TRUE(Ask(kFan, 0));
  EXPECT_EQ(output_[0], 0xEE);
  EXPECT_TRUE(CWMI(L"ROOT\\WMI").GetOutPutUInt(kFan, nullptr, 0));
  EXPECT_FALSE(CWMI(L"ROOT\\WMI").GetOutPutUInt(kFan, nullptr, 1));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(Firmware, FailsWithAnErrorWhicheverStepDoes) {
  WithMethod();
  WithZones({3000});
  wmi_->calls_return_at_once = true;
  for (const Step step : kAllSteps) {
    if (step == Step::kExecQuery) continue;  // no query is made
    for (const HRESULT result :
         {E_FAIL, static_cast<HRESULT>(WBEM_E_ACCESS_DENIED), S_OK, static_cast<HRESULT>(WBEM_S_TIMEDOUT)}) {
      if (step == Step::kPut && SUCCEEDED(result)) continue;  // nothing is expected of it
      wmi_->answers = {{step, result}};
      EXPECT_FALSE(Ask(kFan)) << "step " << static_cast<int>(step) << ", " << result;
      EXPECT_NE(GetLastError(), 0u);
      EXPECT_EQ(output_[0], 0xEE) << "something was written";
    }
  }
}

TEST_F(Firmware, TellsWhyItFailed) {
  WithMethod();
  const std::pair<HRESULT, DWORD> cases[] = {
      {static_cast<HRESULT>(WBEM_E_ACCESS_DENIED), ERROR_ACCESS_DENIED},
      {E_ACCESSDENIED, ERROR_ACCESS_DENIED},
      {static_cast<HRESULT>(WBEM_S_TIMEDOUT), ERROR_TIMEOUT},
      {static_cast<HRESULT>(WBEM_E_OUT_OF_MEMORY), ERROR_NOT_ENOUGH_MEMORY},
      {E_OUTOFMEMORY, ERROR_NOT_ENOUGH_MEMORY},
      {E_FAIL, ERROR_GEN_FAILURE},
  };
  wmi_->calls_return_at_once = true;
  for (const auto& [result, error] : cases) {
    wmi_->answers = {{Step::kResultObject, result}};
    EXPECT_FALSE(Ask(kFan));
    EXPECT_EQ(GetLastError(), error);
  }
  wmi_->answers = {{Step::kConnect, static_cast<HRESULT>(WBEM_E_ACCESS_DENIED)}};
  EXPECT_FALSE(Ask(kFan));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
}

TEST_F(Firmware, OfOtherShapeIsNoValidData) {
  WithMethod();
  for (const FakeProperty& other : {BytesProperty({}), TextProperty(L"0"), NumberProperty(3, CIM_UINT32)}) {
    wmi_->firmware = [&](const std::wstring&) { return FakeRow{{L"OutData", other}}; };
    EXPECT_FALSE(Ask(kFan));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_DATA});
  }
}

TEST_F(Firmware, IsNotSupportedOnAMachineWithoutTheMethod) {
  EXPECT_FALSE(Ask(kFan));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_SUPPORTED});
  wmi_->has_firmware = true;  // the class alone, no instance
  wmi_->tables[L"VelmoraFirmware"] = {};
  EXPECT_FALSE(Ask(0x250105));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_SUPPORTED});
}

TEST_F(Firmware, WithoutTheMethodGivesTemperaturesOfTheThermalZonesInTheirOrder) {
  WithZones({3132, 2632});  // 40.05 and -9.95 degrees
  ASSERT_TRUE(Ask(kTemperatureOfSensor0));
  EXPECT_THAT(std::vector<int>(output_.begin(), output_.begin() + 4), ElementsAre(0, 0, 40, 0));
  ASSERT_TRUE(Ask(kTemperatureOfSensor1));
  EXPECT_THAT(std::vector<int>(output_.begin(), output_.begin() + 4), ElementsAre(0, 1, 10, 0));
  for (const std::uint64_t sensor : {std::uint64_t{2}, std::uint64_t{64}, std::uint64_t{0xFFFFFFFFFFFF}}) {
    EXPECT_FALSE(Ask(sensor << 16 | 0x0202)) << sensor;
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_SUPPORTED});
  }
}

TEST_F(Firmware, GivesNoTemperatureThatCannotBe) {
  for (const LONG reading : {0, 2732, 2731, -1, 9999}) {
    wmi_->tables.clear();
    WithZones({reading});
    EXPECT_FALSE(Ask(kTemperatureOfSensor0)) << reading;
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_DATA});
  }
}

TEST_F(Firmware, WithTheMethodIsNotReplacedByTheThermalZones) {
  WithMethod();
  WithZones({3132});
  ASSERT_TRUE(Ask(kTemperatureOfSensor0));
  EXPECT_EQ(output_[1], 1);
  wmi_->answers = {{Step::kExecMethod, E_FAIL}};
  EXPECT_FALSE(Ask(kTemperatureOfSensor0)) << "the method failed, but it is there";
}

}  // namespace
