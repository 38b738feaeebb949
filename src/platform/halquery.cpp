#include "platform/halquery.h"

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

#include "platform/guard.h"
#include "platform/os/text.h"
#include "platform/ostrine/hal.h"
#include "platform/unicode.h"

namespace velmora::hal {
namespace {

constexpr unsigned int Raw(DeviceClass device_class) { return static_cast<unsigned int>(device_class); }

/// One query into `buffer`; the count that the contract demands is zeroed and never read.
int Query(DeviceClass device_class, std::uint32_t information_id, void* device, std::span<std::byte> buffer) {
  unsigned int returned_size = 0;
  return HalQueryInformation(Raw(device_class), device, information_id, buffer.data(),
                             static_cast<unsigned int>(buffer.size()), &returned_size);
}

/// The same into any trivial object, such as a number or an array of characters.
template <class Object>
bool QueryObject(DeviceClass device_class, std::uint32_t information_id, void* device, Object& object) {
  return Query(device_class, information_id, device, std::as_writable_bytes(std::span(&object, 1))) != 0;
}

/// The part of a text before its first zero, found by the fastest search that the characters have.
template <class Character>
std::basic_string_view<Character> UntilZero(std::basic_string_view<Character> text) {
  return text.substr(0, text.find(Character{}));
}

/// The part of a text buffer before its first zero. The last place always counts as a zero, so that a buffer
/// that came back without one is still bounded.
template <class Character, std::size_t kSize>
std::basic_string_view<Character> UntilZero(const std::array<Character, kSize>& buffer) {
  return UntilZero(std::basic_string_view<Character>(buffer.data(), kSize - 1));
}

/// Widens through a buffer of as many characters as the narrow one has bytes, so that it always fits. Of that
/// buffer only what the conversion says it has written is read.
template <std::size_t kSize>
std::wstring Widen(const std::array<char, kSize>& narrow) {
  const std::string_view text = UntilZero(narrow);
  if (text.empty()) return {};
  std::array<wchar_t, kSize> wide;
  const int written =
      os::MultiByteToWideChar(os::kNarrowCodePage, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                              static_cast<int>(kSize));
  const auto end = wide.begin() + std::clamp(written, 0, static_cast<int>(kSize) - 1);
  return {wide.begin(), std::find(wide.begin(), end, L'\0')};
}

/// Narrow text through a buffer of `kSize` bytes, widened; empty when the query fails.
template <std::size_t kSize>
std::wstring AnyNarrowText(DeviceClass device_class, std::uint32_t information_id, void* device) noexcept {
  return Answer(std::wstring(), [&]() -> std::wstring {
    std::array<char, kSize> buffer{};
    if (!QueryObject(device_class, information_id, device, buffer)) return {};
    return Widen(buffer);
  });
}

template <std::unsigned_integral Value>
bool ReadAnyNumber(DeviceClass device_class, std::uint32_t information_id, void* device,
                   Value& number) noexcept {
  number = 0;
  return Answer(false, [&] {
    Value answer = 0;
    if (!QueryObject(device_class, information_id, device, answer)) return false;
    static_assert(std::endian::native == std::endian::little,
                  "numbers cross the contract in little-endian form");
    number = answer;
    return true;
  });
}

/// A device that stands open while the object lives.
class OpenDevice {
 public:
  OpenDevice(DeviceClass device_class, std::uint32_t number)
      : device_class_(device_class),
        record_{.number = number},
        is_open_(HalOpenDevice(Raw(device_class), &record_) != 0) {}
  OpenDevice(const OpenDevice&) = delete;
  OpenDevice& operator=(const OpenDevice&) = delete;
  ~OpenDevice() {
    if (is_open_) Attempt([this] { HalCloseDevice(Raw(device_class_), &record_); });
  }

  /// The device argument of a query; null when the device did not open.
  void* Record() { return is_open_ ? &record_ : nullptr; }

 private:
  DeviceClass device_class_;
  DeviceRecord record_;
  bool is_open_;
};

}  // namespace

bool Prepare(DeviceClass device_class) noexcept {
  return Answer(false, [=] { return HalInit(Raw(device_class), nullptr) != 0; });
}

bool PrepareTable(DeviceClass device_class, void*& table) noexcept {
  return PrepareTableResult(device_class, table) != 0;
}

int PrepareTableResult(DeviceClass device_class, void*& table) noexcept {
  table = nullptr;
  return Answer(0, [&] { return HalInit(Raw(device_class), &table); });
}

std::int32_t FailingDriverCount(const void* table) noexcept {
  if (table == nullptr) return 0;
  std::uint32_t count = 0;
  std::memcpy(&count, static_cast<const std::byte*>(table) + kFailingDriverCountAt, sizeof count);
  return std::in_range<std::int32_t>(count) ? static_cast<std::int32_t>(count) : 0;
}

void* FailingDriverEntry(void* table, std::int32_t index) noexcept {
  return static_cast<std::byte*>(table) + kTableHeadSize +
         kFailingDriverSize * static_cast<std::size_t>(index);
}

void ReleaseTable(void*& table) noexcept {
  std::free(table);
  table = nullptr;
}

bool ReadNarrowText(DeviceClass device_class, std::uint32_t information_id, void* device,
                    std::wstring& text) noexcept {
  text.clear();
  return Answer(false, [&] {
    std::array<char, kNarrowTextSize> buffer{};
    if (!QueryObject(device_class, information_id, device, buffer)) return false;
    text = Widen(buffer);
    return true;
  });
}

std::wstring NarrowText(DeviceClass device_class, std::uint32_t information_id, void* device) noexcept {
  return AnyNarrowText<kNarrowTextSize>(device_class, information_id, device);
}

std::wstring ShortNarrowText(DeviceClass device_class, std::uint32_t information_id) noexcept {
  return AnyNarrowText<kProcessorNameSize>(device_class, information_id, nullptr);
}

std::string NarrowBytes(DeviceClass device_class, std::uint32_t information_id, void* device) noexcept {
  return Answer(std::string(), [&]() -> std::string {
    std::array<char, kNarrowTextSize> buffer{};
    if (!QueryObject(device_class, information_id, device, buffer)) return {};
    return std::string(UntilZero(buffer));
  });
}

std::wstring WideText(DeviceClass device_class, std::uint32_t information_id, void* device) noexcept {
  return Answer(std::wstring(), [&]() -> std::wstring {
    std::array<char16_t, kWideTextSize / sizeof(char16_t)> buffer{};
    if (!QueryObject(device_class, information_id, device, buffer)) return {};
    return unicode::WideFromUtf16(UntilZero(buffer));
  });
}

bool ReadNumber(DeviceClass device_class, std::uint32_t information_id, void* device,
                std::uint32_t& number) noexcept {
  return ReadAnyNumber(device_class, information_id, device, number);
}

bool ReadNumber(DeviceClass device_class, std::uint32_t information_id, void* device,
                std::uint64_t& number) noexcept {
  return ReadAnyNumber(device_class, information_id, device, number);
}

std::uint32_t Number(DeviceClass device_class, std::uint32_t information_id, void* device) noexcept {
  std::uint32_t number = 0;
  ReadNumber(device_class, information_id, device, number);
  return number;
}

std::uint32_t ProcessorKind() noexcept {
  constexpr std::uint32_t kKind = 19;
  Prepare(DeviceClass::kProcessor);
  return Number(DeviceClass::kProcessor, kKind);
}

int QueryBytes(DeviceClass device_class, std::uint32_t information_id, std::span<std::byte> buffer) noexcept {
  return Answer(0, [=] { return Query(device_class, information_id, nullptr, buffer); });
}

int SetBytes(DeviceClass device_class, std::uint32_t information_id, std::span<std::byte> buffer) noexcept {
  return Answer(0, [=] {
    unsigned int returned_size = 0;
    return HalSetInformation(Raw(device_class), nullptr, information_id, buffer.data(),
                             static_cast<unsigned int>(buffer.size()), &returned_size);
  });
}

std::wstring WideTextOf(DeviceClass device_class, std::uint32_t number,
                        std::uint32_t information_id) noexcept {
  return Answer(std::wstring(), [&]() -> std::wstring {
    OpenDevice device(device_class, number);
    return device.Record() == nullptr ? std::wstring()
                                      : WideText(device_class, information_id, device.Record());
  });
}

std::uint64_t LargeNumberOf(DeviceClass device_class, std::uint32_t number,
                            std::uint32_t information_id) noexcept {
  return Answer(std::uint64_t{0}, [&] {
    OpenDevice device(device_class, number);
    std::uint64_t value = 0;
    if (device.Record() != nullptr) ReadNumber(device_class, information_id, device.Record(), value);
    return value;
  });
}

int QueryInto(DeviceClass device_class, std::uint32_t number, std::uint32_t information_id,
              int& value) noexcept {
  return Answer(0, [&] {
    OpenDevice device(device_class, number);
    if (device.Record() == nullptr) return 0;
    return Query(device_class, information_id, device.Record(), std::as_writable_bytes(std::span(&value, 1)));
  });
}

}  // namespace velmora::hal
