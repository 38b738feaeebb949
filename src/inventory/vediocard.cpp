#include "velmora/vediocard.h"

#include "platform/halquery.h"

using velmora::hal::DeviceClass;
using velmora::hal::Number;
using velmora::hal::WideText;

namespace {

constexpr auto kVideo = DeviceClass::kVideo;

/// Information ids of the class.
enum VideoId : std::uint32_t {
  kCardCount = 0,
  kInternalName = 1,
  kInternalStatus = 2,
  kInternalDriverVersion = 3,
  kInternalDriverDate = 4,
  kInternalMemorySize = 5,
  kInternalErrorCode = 6,
  kIndependentName = 7,
  kIndependentStatus = 8,
  kIndependentDriverVersion = 9,
  kIndependentDriverDate = 10,
  kIndependentMemorySize = 11,
  kIndependentErrorCode = 12,
  kResolution = 23,
  kHorizontalResolution = 24,
  kVerticalResolution = 25,
  kRefreshRate = 26,
  kMonitorCaption = 27,
  kBitsPerPixel = 28,
};

}  // namespace

CVediocard::CVediocard() { velmora::hal::PrepareTable(kVideo, card_table_); }
CVediocard::CVediocard(const CVediocard& /*other*/) : CVediocard() {}
CVediocard::~CVediocard() { velmora::hal::ReleaseTable(card_table_); }

CVediocard& CVediocard::operator=(const CVediocard& other) {
  if (this != &other) {
    velmora::hal::ReleaseTable(card_table_);
    velmora::hal::PrepareTable(kVideo, card_table_);
  }
  return *this;
}

unsigned long CVediocard::GetVideoCardNumber() { return Number(kVideo, kCardCount, card_table_); }

std::wstring CVediocard::GetInternalVideoCardName() { return WideText(kVideo, kInternalName, card_table_); }
std::wstring CVediocard::GetUsedVideoCardName() { return GetInternalVideoCardName(); }
std::wstring CVediocard::GetIndependentVideoCardName() {
  return WideText(kVideo, kIndependentName, card_table_);
}
std::wstring CVediocard::GetUnUsedVideoCardName() { return GetIndependentVideoCardName(); }

std::wstring CVediocard::GetInternalVideoCardStatus() {
  return WideText(kVideo, kInternalStatus, card_table_);
}
std::wstring CVediocard::GetUsedVideoCardStatus() { return GetInternalVideoCardStatus(); }
std::wstring CVediocard::GetIndependentVideoCardStatus() {
  return WideText(kVideo, kIndependentStatus, card_table_);
}
std::wstring CVediocard::GetUnUsedVideoCardStatus() { return GetIndependentVideoCardStatus(); }

std::wstring CVediocard::GetInternalVideoCardDriverVersion() {
  return WideText(kVideo, kInternalDriverVersion, card_table_);
}
std::wstring CVediocard::GetUsedVideoCardDriverVersion() { return GetInternalVideoCardDriverVersion(); }
std::wstring CVediocard::GetIndependentVideoCardDriverVersion() {
  return WideText(kVideo, kIndependentDriverVersion, card_table_);
}
std::wstring CVediocard::GetUnUsedVideoCardDriverVersion() { return GetIndependentVideoCardDriverVersion(); }

std::wstring CVediocard::GetInternalVideoCardDriverDate() {
  return WideText(kVideo, kInternalDriverDate, card_table_);
}
std::wstring CVediocard::GetUsedVideoCardDriverDate() { return GetInternalVideoCardDriverDate(); }
std::wstring CVediocard::GetIndependentVideoCardDriverDate() {
  return WideText(kVideo, kIndependentDriverDate, card_table_);
}
std::wstring CVediocard::GetUnUsedVideoCardDriverDate() { return GetIndependentVideoCardDriverDate(); }

unsigned long CVediocard::GetInternalVedioCardMemorySize() {
  return Number(kVideo, kInternalMemorySize, card_table_);
}
unsigned long CVediocard::GetUsedVedioCardMemorySize() { return GetInternalVedioCardMemorySize(); }
unsigned long CVediocard::GetIndependentVedioCardMemorySize() {
  return Number(kVideo, kIndependentMemorySize, card_table_);
}
unsigned long CVediocard::GetUnUsedVedioCardMemorySize() { return GetIndependentVedioCardMemorySize(); }

unsigned long CVediocard::GetInternalVedioCardErrorCode() {
  return Number(kVideo, kInternalErrorCode, card_table_);
}
unsigned long CVediocard::GetIndependentVedioCardErrorCode() {
  return Number(kVideo, kIndependentErrorCode, card_table_);
}

std::wstring CVediocard::GetDisplayResolution() { return WideText(kVideo, kResolution, card_table_); }
unsigned long CVediocard::GetHorizontalResolution() {
  return Number(kVideo, kHorizontalResolution, card_table_);
}
unsigned long CVediocard::GetVerticalResolution() { return Number(kVideo, kVerticalResolution, card_table_); }
unsigned long CVediocard::GetRefreshRate() { return Number(kVideo, kRefreshRate, card_table_); }
std::wstring CVediocard::GetMonitorCaption() {
  return velmora::hal::NarrowText(kVideo, kMonitorCaption, card_table_);
}
unsigned long CVediocard::GetBitPerPixel() { return Number(kVideo, kBitsPerPixel, card_table_); }
