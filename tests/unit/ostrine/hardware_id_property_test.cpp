#include <gtest/gtest.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "ostrine/common/hardware_id.h"
#include "ostrine/common/setup_class.h"

namespace ostrine {
namespace {

using RandomSource = std::mt19937;
constexpr int kModaliasRounds = 5000;

unsigned Bits(RandomSource& random, unsigned count) {
  return static_cast<unsigned>(random() & ((1ull << count) - 1));
}

[[gnu::format(printf, 1, 2)]] std::string Print(const char* format, ...) {
  char text[160];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

std::wstring Wide(const std::string& text) { return {text.begin(), text.end()}; }

std::string RandomUsb(RandomSource& random, unsigned vendor, unsigned product) {
  return Print("usb:v%04Xp%04Xd%04Xdc%02Xdsc%02Xdp%02Xic%02Xisc%02Xip%02Xin%02X", vendor, product,
               Bits(random, 16), Bits(random, 8), Bits(random, 8), Bits(random, 8), Bits(random, 8),
               Bits(random, 8), Bits(random, 8), Bits(random, 8));
}

std::string RandomModalias(RandomSource& random) {
  switch (Bits(random, 3)) {
    case 0:
      return RandomUsb(random, Bits(random, 16), Bits(random, 16));
    case 1:
      return Print("hdaudio:v%08Xr%08Xa%02X", Bits(random, 32), Bits(random, 32), Bits(random, 8));
    case 2:
      return Print("hid:b%04Xg%04Xv%08Xp%08X", Bits(random, 16), Bits(random, 16), Bits(random, 16),
                   Bits(random, 16));
    case 3:
      return Print("virtio:d%08Xv%08X", Bits(random, 32), Bits(random, 32));
    case 4:
      return Print("acpi:LEN%04X:PNP%04X:", Bits(random, 16), Bits(random, 16));
    case 5:
      return Print("serio:ty%02Xpr%02Xid%02Xex%02X", Bits(random, 8), Bits(random, 8), Bits(random, 8),
                   Bits(random, 8));
    default:
      return Print("pci:v%08Xd%08Xsv%08Xsd%08Xbc%02Xsc%02Xi%02x", Bits(random, 16), Bits(random, 16),
                   Bits(random, 16), Bits(random, 16), Bits(random, 8), Bits(random, 8), Bits(random, 8));
  }
}

DeviceFacts RandomFacts(RandomSource& random) {
  DeviceFacts facts;
  facts.modalias = RandomModalias(random);
  facts.usb_composite = Bits(random, 1) != 0;
  if (Bits(random, 1)) facts.pci_revision = static_cast<std::uint8_t>(Bits(random, 8));
  if (Bits(random, 1)) facts.codec_subsystem = Bits(random, 32);
  if (Bits(random, 1)) facts.parent_modalias = RandomModalias(random);
  facts.firmware_id = Print("PNP: LEN%04x PNP%04x", Bits(random, 16), Bits(random, 16));
  return facts;
}

TEST(HardwareIdProperty, WritesPciNumbersWhereTheFormHasThem) {
  RandomSource random(1);
  for (int round = 0; round < kModaliasRounds; ++round) {
    const unsigned v = Bits(random, 16), d = Bits(random, 16), sv = Bits(random, 16), sd = Bits(random, 16);
    const unsigned revision = Bits(random, 8);
    DeviceFacts facts;
    facts.modalias = Print("pci:v%08Xd%08Xsv%08Xsd%08Xbc02sc80i00", v, d, sv, sd);
    facts.pci_revision = static_cast<std::uint8_t>(revision);
    const DeviceIds ids = BuildDeviceIds(facts);
    ASSERT_EQ(ids.hardware.at(0),
              Wide(Print("PCI\\VEN_%04X&DEV_%04X&SUBSYS_%04X%04X&REV_%02X", v, d, sd, sv, revision)));
    for (const std::wstring& id : ids.hardware) {
      const auto numbers = ParseNumberedId(id);
      ASSERT_TRUE(numbers);
      ASSERT_EQ(numbers->bus, NumberedId::Bus::kPci);
      ASSERT_EQ(numbers->vendor, v);
      ASSERT_EQ(numbers->device, d);
    }
  }
}

TEST(HardwareIdProperty, WritesUsbNumbersThatCanBeReadBack) {
  RandomSource random(2);
  for (int round = 0; round < kModaliasRounds; ++round) {
    const unsigned vendor = Bits(random, 16) | 0x8000;  // never the kernel's own, whose hubs have no numbers
    const unsigned product = Bits(random, 16);
    DeviceFacts facts;
    facts.modalias = RandomUsb(random, vendor, product);
    facts.usb_composite = Bits(random, 1) != 0;
    const DeviceIds ids = BuildDeviceIds(facts);
    ASSERT_EQ(ids.hardware.size(), 2u);
    for (const std::wstring& id : ids.hardware) {
      const auto numbers = ParseNumberedId(id);
      ASSERT_TRUE(numbers && numbers->bus == NumberedId::Bus::kUsb);
      ASSERT_EQ(numbers->vendor, vendor);
      ASSERT_EQ(numbers->device, product);
      ASSERT_EQ(id.find(L"&MI_") != std::wstring::npos, facts.usb_composite);
    }
  }
}

TEST(HardwareIdProperty, GivesDistinctIdsOfPrintableCharacters) {
  RandomSource random(3);
  for (int round = 0; round < kModaliasRounds; ++round) {
    const DeviceFacts facts = RandomFacts(random);
    const DeviceIds ids = BuildDeviceIds(facts);
    ASSERT_FALSE(ids.hardware.empty()) << facts.modalias;
    std::vector<std::wstring> all = ids.hardware;
    all.insert(all.end(), ids.compatible.begin(), ids.compatible.end());
    const std::set<std::wstring> distinct(all.begin(), all.end());
    const bool repeats_firmware_id =
        facts.modalias.starts_with("acpi:") || facts.modalias.starts_with("serio:");
    ASSERT_TRUE(repeats_firmware_id || distinct.size() == all.size()) << facts.modalias;
    for (const std::wstring& id : all) {
      ASSERT_TRUE(
          std::all_of(id.begin(), id.end(), [](wchar_t c) { return c > L' ' && c < 0x7F && c != L','; }));
    }
  }
}

TEST(HardwareIdProperty, GivesNothingForAModaliasThatIsCutShort) {
  RandomSource random(4);
  for (int round = 0; round < kModaliasRounds / 10; ++round) {
    const std::string whole = RandomModalias(random);
    const bool is_usb = whole.starts_with("usb:");
    for (std::size_t length = 0; length < whole.size(); ++length) {
      if (is_usb && length == whole.find("ic", 4 + 20)) continue;                    // a whole device
      if (whole.starts_with("acpi:") && length == whole.find(':', 5) + 1) continue;  // the first ID alone
      DeviceFacts facts;
      facts.modalias = whole.substr(0, length);
      ASSERT_TRUE(BuildDeviceIds(facts).hardware.empty()) << facts.modalias;
    }
  }
}

TEST(HardwareIdProperty, ClassifiesOnlyWhatHasAModalias) {
  RandomSource random(5);
  for (int round = 0; round < kModaliasRounds; ++round) {
    std::string modalias = RandomModalias(random);
    modalias[Bits(random, 16) % modalias.size()] = static_cast<char>(Bits(random, 7));
    const DeviceTraits reader{.is_fingerprint_reader = true};
    const bool known = !std::holds_alternative<std::monostate>(ParseModalias(modalias));
    ASSERT_EQ(ClassifyDevice(modalias, reader), known ? SetupClass::kBiometric : SetupClass::kNone)
        << modalias;
  }
}

}  // namespace
}  // namespace ostrine
