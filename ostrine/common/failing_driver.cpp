#include "ostrine/common/failing_driver.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/ostrine/device_record.h"

namespace ostrine {
namespace {

using velmora::hal::kFailingDriverCountAt;
using velmora::hal::kFailingDriverSize;
using velmora::hal::kTableHeadSize;

/// The texts of an entry in the order of their places in it.
constexpr std::array kTexts{FailingDriverFact::kCaption,   FailingDriverFact::kDeviceId,
                            FailingDriverFact::kClassGuid, FailingDriverFact::kManufacturer,
                            FailingDriverFact::kService,   FailingDriverFact::kStatus};

/// Where a text stands, from the beginning of its entry.
struct TextPlace {
  std::uint32_t offset = 0;
  std::uint32_t size = 0;
};

/// What is in an entry's 520 bytes, in front.
struct Entry {
  std::uint32_t mark = 0;  ///< tells an entry from other memory
  std::uint32_t error_code = 0;
  std::array<TextPlace, kTexts.size()> texts;
};
static_assert(sizeof(Entry) <= kFailingDriverSize);

constexpr std::uint32_t kMark = 0x32304446;  // "FD20"

/// More failing devices than any machine has.
constexpr std::size_t kMostDrivers = 0xFFFF;

/// A longer text is cut: no question has room for more.
constexpr std::size_t kLongestText = velmora::hal::kNarrowTextSize;

std::string_view FactText(const FailingDriver& driver, FailingDriverFact fact) {
  switch (fact) {
    case FailingDriverFact::kCaption:
      return driver.caption;
    case FailingDriverFact::kDeviceId:
      return driver.device_id;
    case FailingDriverFact::kClassGuid:
      return driver.class_guid;
    case FailingDriverFact::kManufacturer:
      return driver.manufacturer;
    case FailingDriverFact::kService:
      return driver.service;
    case FailingDriverFact::kStatus:
      return driver.status;
    case FailingDriverFact::kErrorCode:
      break;
  }
  return {};
}

std::string_view CutText(const FailingDriver& driver, FailingDriverFact fact) {
  return FactText(driver, fact).substr(0, kLongestText);
}

std::size_t SizeOfTexts(const std::vector<FailingDriver>& drivers) {
  std::size_t size = 0;
  for (const FailingDriver& driver : drivers) {
    for (const FailingDriverFact fact : kTexts) size += CutText(driver, fact).size();
  }
  return size;
}

/// Writes the entries at `entries` and their texts behind the last.
void FillEntries(const std::vector<FailingDriver>& drivers, std::uint8_t* entries) {
  std::uint8_t* free_place = entries + kFailingDriverSize * drivers.size();
  for (std::size_t i = 0; i < drivers.size(); ++i) {
    std::uint8_t* const place = entries + kFailingDriverSize * i;
    Entry entry{.mark = kMark, .error_code = drivers[i].error_code};
    for (std::size_t j = 0; j < kTexts.size(); ++j) {
      const std::string_view text = CutText(drivers[i], kTexts[j]);
      entry.texts[j] = {static_cast<std::uint32_t>(free_place - place),
                        static_cast<std::uint32_t>(text.size())};
      free_place = std::copy(text.begin(), text.end(), free_place);
    }
    std::memcpy(place, &entry, sizeof entry);
  }
}

}  // namespace

bool PrepareFailingDrivers(void** table) {
  return table != nullptr && MakeFailingDriverTable(ReadFailingDriversOfMachine(), table);
}

bool MakeFailingDriverTable(const FailingDrivers& drivers, void** table) {
  if (!drivers || drivers->size() > kMostDrivers) return false;
  const std::size_t size = kTableHeadSize + kFailingDriverSize * drivers->size() + SizeOfTexts(*drivers);
  auto* const bytes = static_cast<std::uint8_t*>(std::calloc(1, size));
  if (bytes == nullptr) return false;
  const auto count = static_cast<std::uint32_t>(drivers->size());
  std::memcpy(bytes + kFailingDriverCountAt, &count, sizeof count);
  FillEntries(*drivers, bytes + kTableHeadSize);
  *table = bytes;
  return true;
}

bool QueryFailingDriver(void* device, unsigned int information_id, Answer& answer) {
  if (device == nullptr) return false;
  Entry entry;
  std::memcpy(&entry, device, sizeof entry);
  if (entry.mark != kMark) return false;
  const auto fact = static_cast<FailingDriverFact>(information_id);
  if (fact == FailingDriverFact::kErrorCode) return answer.Number(entry.error_code);
  const auto found = std::ranges::find(kTexts, fact);
  if (found == kTexts.end()) return false;
  const TextPlace place = entry.texts[static_cast<std::size_t>(found - kTexts.begin())];
  return answer.NarrowText({static_cast<const char*>(device) + place.offset, place.size});
}

}  // namespace ostrine
