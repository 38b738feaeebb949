#include "ostrine/common/disk.h"

#include <cstdlib>
#include <cstring>

#include "ostrine/common/disk_rules.h"
#include "platform/ostrine/device_record.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

using velmora::hal::DeviceRecord;
using velmora::hal::kTableHeadSize;

struct DiskTableHead {
  std::uint32_t zero = 0;
  std::uint32_t count = 0;
};
static_assert(sizeof(DiskTableHead) == kTableHeadSize);

/// More disks than any machine has.
constexpr std::uint32_t kMostDisks = 4096;

/// The record may stand at any address.
DeviceRecord LoadRecord(const void* device) {
  DeviceRecord record;
  std::memcpy(&record, device, sizeof record);
  return record;
}

bool AnswerLong(std::uint64_t handle, DiskFact fact, Answer& answer) {
  const auto number = ReadDiskNumber(handle, fact);
  return number && answer.LongNumber(*number);
}

bool AnswerText(std::uint64_t handle, DiskFact fact, Answer& answer) {
  const auto text = ReadDiskText(handle, fact);
  return text && answer.WideText(velmora::unicode::Utf16FromUtf8(*text));
}

bool AnswerDisk(std::uint64_t handle, DiskFact fact, Answer& answer) {
  switch (fact) {
    case DiskFact::kMediaType:
    case DiskFact::kCaption:
    case DiskFact::kSerialNumber:
    case DiskFact::kFirmware:
      return AnswerText(handle, fact, answer);
    case DiskFact::kTotal:
    case DiskFact::kNominal:
      return AnswerLong(handle, DiskFact::kTotal, answer);
    case DiskFact::kRemaining:
      return AnswerLong(handle, fact, answer);
    case DiskFact::kNominalMegabytes: {
      const auto total = ReadDiskNumber(handle, DiskFact::kTotal);
      return total && answer.LongNumber(WholeMegabytes(*total));
    }
    case DiskFact::kSolidState: {
      const auto flag = ReadDiskNumber(handle, fact);
      return flag && answer.Number(*flag != 0 ? 1 : 0);
    }
    case DiskFact::kCount:
      break;
  }
  return false;
}

}  // namespace

bool PrepareDisks(void** table) {
  if (table == nullptr) return true;
  const std::uint32_t count = CountDisks();
  if (count > kMostDisks) return false;
  auto* const bytes = static_cast<std::uint8_t*>(std::malloc(kTableHeadSize + sizeof(DeviceRecord) * count));
  if (bytes == nullptr) return false;
  const DiskTableHead head{.count = count};
  std::memcpy(bytes, &head, sizeof head);
  for (std::uint32_t i = 0; i < count; ++i) {
    const DeviceRecord record{.number = i};
    std::memcpy(bytes + kTableHeadSize + sizeof record * i, &record, sizeof record);
  }
  *table = bytes;
  return true;
}

bool QueryDisk(void* device, unsigned int information_id, Answer& answer) {
  const auto fact = static_cast<DiskFact>(information_id);
  if (device == nullptr) return fact == DiskFact::kCount && answer.Number(CountDisks());
  const DeviceRecord record = LoadRecord(device);
  return record.handle != 0 && AnswerDisk(record.handle, fact, answer);
}

bool OpenDisk(void* device_record) {
  DeviceRecord record = LoadRecord(device_record);
  if (record.handle != 0) return false;
  const auto handle = OpenDiskHandle(record.number);
  if (!handle) return false;
  record.handle = *handle;
  std::memcpy(device_record, &record, sizeof record);
  return true;
}

bool CloseDisk(void* device_record) {
  DeviceRecord record = LoadRecord(device_record);
  if (record.handle == 0 || !CloseDiskHandle(record.handle)) return false;
  record.handle = 0;
  std::memcpy(device_record, &record, sizeof record);
  return true;
}

}  // namespace ostrine
