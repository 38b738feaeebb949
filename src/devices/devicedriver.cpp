/// The list of failing devices.
#include "velmora/devicedriver.h"

#include "platform/halquery.h"

using velmora::hal::DeviceClass;

namespace {

constexpr auto kFailing = DeviceClass::kFailingDriver;

/// Information ids of the class.
enum Id : std::uint32_t {
  kCaption = 0,
  kDeviceId = 1,
  kClassGuid = 2,
  kErrorCode = 3,
  kManufacturer = 4,
  kService = 5,
  kStatus = 6,
};

/// What stands for a library that could not be asked: other than 0, so that it is not asked again, and other
/// than 1, so that nothing is counted.
constexpr std::int32_t kListRefused = -1;
constexpr std::int32_t kListLoaded = 1;

/// The entry at `index` of a list that has `count`; null when there is none.
void* EntryAt(void* list, std::int32_t count, int index) {
  const bool is_in_list = list != nullptr && index >= 0 && index < count;
  return is_in_list ? velmora::hal::FailingDriverEntry(list, index) : nullptr;
}

std::string EntryText(void* entry, Id id) {
  return entry == nullptr ? std::string() : velmora::hal::NarrowBytes(kFailing, id, entry);
}

}  // namespace

CDeviceDriver::CDeviceDriver() = default;

// A list belongs to one object, and is a picture of the moment: a copy takes its own.
CDeviceDriver::CDeviceDriver(const CDeviceDriver& /*other*/) {}

CDeviceDriver& CDeviceDriver::operator=(const CDeviceDriver& other) {
  if (this == &other) return *this;
  velmora::hal::ReleaseTable(list_);
  count_ = 0;
  init_result_ = 0;
  return *this;
}

CDeviceDriver::~CDeviceDriver() { velmora::hal::ReleaseTable(list_); }

int CDeviceDriver::Init() {
  if (init_result_ != 0) return init_result_;
  const int result = velmora::hal::PrepareTableResult(kFailing, list_);
  if (result == 0) list_ = nullptr;  // whatever a failed call has left there is not to be read, nor released
  init_result_ = result != 0 ? result : kListRefused;
  count_ = velmora::hal::FailingDriverCount(list_);
  return init_result_;
}

int CDeviceDriver::GetErrDeviceDriverCount() { return Init() == kListLoaded ? count_ : 0; }

stErrDriverInfo CDeviceDriver::GetErrDriverInfoByIndex(int index) {
  stErrDriverInfo info;
  info.strCaption = GetCaptionByIndex(index);
  info.strClassGUID = GetClassGUIDByIndex(index);
  info.strDeviceID = GetDeviceIdByIndex(index);
  info.strManufacture = GetManufactureByIndex(index);
  info.strService = GetServiceByIndex(index);
  info.strStatus = GetStatusByIndex(index);
  info.uErrorCode = GetErrorCodeByIndex(index);
  return info;
}

// Any success of the library is believed here, though only a 1 lets the entries be counted.

std::string CDeviceDriver::GetCaptionByIndex(int index) {
  Init();
  return EntryText(EntryAt(list_, count_, index), kCaption);
}

std::string CDeviceDriver::GetDeviceIdByIndex(int index) {
  Init();
  return EntryText(EntryAt(list_, count_, index), kDeviceId);
}

std::string CDeviceDriver::GetClassGUIDByIndex(int index) {
  Init();
  return EntryText(EntryAt(list_, count_, index), kClassGuid);
}

std::string CDeviceDriver::GetServiceByIndex(int index) {
  Init();
  return EntryText(EntryAt(list_, count_, index), kService);
}

std::string CDeviceDriver::GetStatusByIndex(int index) {
  Init();
  return EntryText(EntryAt(list_, count_, index), kStatus);
}

std::string CDeviceDriver::GetManufactureByIndex(int index) {
  Init();
  return EntryText(EntryAt(list_, count_, index), kManufacturer);
}

unsigned int CDeviceDriver::GetErrorCodeByIndex(int index) {
  Init();
  void* const entry = EntryAt(list_, count_, index);
  return entry == nullptr ? 0 : velmora::hal::Number(kFailing, kErrorCode, entry);
}
