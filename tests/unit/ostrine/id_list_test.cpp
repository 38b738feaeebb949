#include "ostrine/common/id_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace ostrine {
namespace {

constexpr std::string_view kList =
    "# a list\n"
    "\n"
    "1022  Advanced Machines\n"
    "\t51f0  A device of another vendor\n"
    "8086  Intel Corporation\n"
    "\t46a6  Alder Lake-P GT2\n"
    "\t51f0  Alder Lake-P PCH CNVi WiFi\n"
    "\t\t8086 0094  Wi-Fi 6E AX211 160MHz\n"
    "\t51f1  The device after it\n"
    "\t\t8086 0095  Its subsystem\n"
    "9005  Adaptec\r\n"
    "C 02  Network controller\n"
    "\t80  Network controller\n";

/// A list of which each look shows no more than it must, and which counts the bytes that it has shown.
class Pieces : public ListInPieces {
 public:
  explicit Pieces(std::string_view text) : text_(text) {}
  std::size_t Size() const override { return text_.size(); }
  std::string_view From(std::size_t offset) override {
    const std::size_t end = std::min(text_.find('\n', offset), text_.size() - 1) + 1;
    shown_ += end - offset;
    return text_.substr(offset, end - offset);
  }
  std::size_t Shown() const { return shown_; }

 private:
  std::string_view text_;
  std::size_t shown_ = 0;
};

/// The numbers of a list, each with its name.
struct Entry {
  std::uint16_t number = 0;
  std::vector<Entry> below{};
};

std::vector<Entry> RandomEntries(std::mt19937& random, std::size_t most, int depth, bool is_sorted) {
  std::vector<Entry> entries;
  std::vector<std::uint16_t> taken;
  for (auto count = random() % (most + 1); count > 0; --count) {
    const auto number = static_cast<std::uint16_t>(random() % 4096);
    if (std::find(taken.begin(), taken.end(), number) != taken.end()) continue;
    taken.push_back(number);
    Entry entry{number};
    // A few vendors have most of the devices.
    if (depth > 0) entry.below = RandomEntries(random, random() % 8 == 0 ? 200 : 4, depth - 1, is_sorted);
    entries.push_back(std::move(entry));
  }
  if (is_sorted) std::ranges::sort(entries, {}, &Entry::number);
  return entries;
}

void Write(const std::vector<Entry>& entries, const std::string& start, std::mt19937& random,
           std::string& list) {
  for (const Entry& entry : entries) {
    if (random() % 50 == 0) list += random() % 2 == 0 ? "# a comment\n" : "\n";
    char digits[5];
    std::snprintf(digits, sizeof digits, "%04x", static_cast<unsigned>(entry.number));
    // Below a device stand subsystems, of two numbers.
    const std::string second = start == "\t\t" ? std::string(digits) + " " : "";
    list += start + digits + " " + second + " name " + std::to_string(random()) +
            (random() % 9 == 0 ? "\r\n" : "\n");
    Write(entry.below, start + "\t", random, list);
  }
}

void ExpectTheSameNames(std::string_view list, const ListedNumbers& numbers, bool is_sorted) {
  const ListedNames linear = FindListedNames(list, numbers);
  Pieces pieces(list);
  const auto halved = FindNamesByHalves(pieces, numbers);
  if (is_sorted) {
    EXPECT_EQ(halved.has_value(), linear.vendor.data() != nullptr);
  }
  if (!halved) return;  // then the list is gone through as a whole
  EXPECT_EQ(halved->vendor, linear.vendor);
  EXPECT_EQ(halved->device, linear.device);
  EXPECT_EQ(halved->subsystem, linear.subsystem);
}

TEST(IdListByHalves, HasTheSameNamesAsTheWholeListSortedOrNot) {
  std::mt19937 random(11);
  for (int i = 0; i < 180; ++i) {
    const bool is_sorted = i % 2 == 0;
    const auto vendors = RandomEntries(random, i % 5 == 0 ? 3 : 40, 2, is_sorted);
    std::string list = "# a list\n";
    Write(vendors, "", random, list);
    list += "C 02  Network controller\n\t80  Network controller\n";
    for (std::size_t asked = 0; asked < std::min<std::size_t>(vendors.size(), 6); ++asked) {
      const Entry& vendor = vendors[random() % vendors.size()];
      for (std::size_t j = 0; j < std::min<std::size_t>(vendor.below.size(), 5); ++j) {
        const Entry& device = vendor.below[random() % vendor.below.size()];
        const std::uint16_t sub = device.below.empty() ? 1 : device.below.back().number;
        ExpectTheSameNames(list, {vendor.number, device.number, sub, sub}, is_sorted);
      }
      ExpectTheSameNames(list, {vendor.number, static_cast<std::uint16_t>(random() % 4096)}, is_sorted);
    }
    ExpectTheSameNames(list, {static_cast<std::uint16_t>(random() % 4096), 1}, is_sorted);
  }
}

TEST(IdListByHalves, LooksAtLittleOfALongList) {
  std::string list;
  for (unsigned vendor = 0; vendor < 40'000; ++vendor) {
    char line[64];
    std::snprintf(line, sizeof line, "%04x  Vendor %u\n\t0001  Device\n", vendor, vendor);
    list += line;
    // One with a tenth of the list.
    for (unsigned device = 2; vendor == 25'000 && device < 10'000; ++device) {
      std::snprintf(line, sizeof line, "\t%04x  Device %u\n", device, device);
      list += line;
    }
  }
  for (const auto vendor : std::initializer_list<std::uint16_t>{0, 12'345, 25'000, 25'001, 39'999}) {
    Pieces pieces(list);
    const auto names = FindNamesByHalves(pieces, {.vendor = vendor, .device = 1});
    ASSERT_TRUE(names);
    EXPECT_EQ(names->vendor, "Vendor " + std::to_string(vendor));
    EXPECT_EQ(names->device, "Device");
    EXPECT_LT(pieces.Shown(), list.size() / (vendor == 25'000 ? 2 : 8)) << vendor;
  }
}

TEST(IdListByHalves, HasNothingForAnUnknownVendorOrOutOfAnEmptyList) {
  Pieces pieces(kList);
  EXPECT_EQ(FindNamesByHalves(pieces, {.vendor = 0xFFFF}), std::nullopt);
  Pieces empty("");
  EXPECT_EQ(FindNamesByHalves(empty, {.vendor = 0x8086}), std::nullopt);
}

TEST(IdListByHalves, EndsWhereTheListCanNotBeRead) {
  class Unreadable : public ListInPieces {
    std::size_t Size() const override { return 1 << 20; }
    std::string_view From(std::size_t) override { return {}; }
  };
  Unreadable list;
  EXPECT_EQ(FindNamesByHalves(list, {.vendor = 0x8086}), std::nullopt);
}

TEST(IdList, KnowsVendorDeviceAndSubsystem) {
  const auto names = FindListedNames(kList, {0x8086, 0x51F0, 0x8086, 0x0094});
  EXPECT_EQ(names.vendor, "Intel Corporation");
  EXPECT_EQ(names.device, "Alder Lake-P PCH CNVi WiFi");
  EXPECT_EQ(names.subsystem, "Wi-Fi 6E AX211 160MHz");
}

TEST(IdList, KeepsToTheVendorsOwnDevices) {
  const auto names = FindListedNames(kList, {0x1022, 0x46A6, 0, 0});
  EXPECT_EQ(names.vendor, "Advanced Machines");
  EXPECT_EQ(names.device, "");
}

TEST(IdList, KeepsToTheDevicesOwnSubsystems) {
  EXPECT_EQ(FindListedNames(kList, {0x8086, 0x51F0, 0x8086, 0x0095}).subsystem, "");
}

TEST(IdList, GivesTheVendorOfAnUnknownDevice) {
  const auto names = FindListedNames(kList, {0x9005, 1, 0, 0});
  EXPECT_EQ(names.vendor, "Adaptec") << "without the carriage return";
  EXPECT_EQ(names.device, "");
}

TEST(IdList, HasNothingForAnUnknownVendor) {
  EXPECT_EQ(FindListedNames(kList, {0xFFFF, 0x51F0, 0, 0}).vendor, "");
  EXPECT_EQ(FindListedNames("", {0x8086, 0x51F0, 0, 0}).vendor, "");
}

TEST(IdList, PassesOverLinesOfAnotherForm) {
  constexpr std::string_view broken =
      "808\n8086\n8086x Vendor\n\t51f0  No vendor yet\n8086  Vendor\n\n\t51f\n\t\t\t8086 0094  Too deep\n"
      "\t51f0  Device\n\t\t8086\n\t\t8086 00\n\t\t8086 0094  Found";
  const auto names = FindListedNames(broken, {0x8086, 0x51F0, 0x8086, 0x0094});
  EXPECT_EQ(names.vendor, "Vendor");
  EXPECT_EQ(names.device, "Device");
  EXPECT_EQ(names.subsystem, "Found");
}

TEST(IdList, GivesTextsWithinTheListWhateverItHolds) {
  std::mt19937 random(7);
  for (int i = 0; i < 5000; ++i) {
    std::string list;
    for (auto length = random() % 80; length > 0; --length) list.push_back("\t\n 80\rx#"[random() % 8]);
    const auto names = FindListedNames(list, {0x8080, 0x0808, 0x8080, 0x0808});
    for (const std::string_view name : {names.vendor, names.device, names.subsystem}) {
      if (name.empty()) continue;
      EXPECT_GE(name.data(), list.data());
      EXPECT_LE(name.data() + name.size(), list.data() + list.size());
      EXPECT_EQ(name.find('\n'), std::string_view::npos);
    }
  }
}

}  // namespace
}  // namespace ostrine
