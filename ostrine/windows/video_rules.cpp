#include "ostrine/windows/video_rules.h"

#include <algorithm>
#include <chrono>
#include <cstddef>

#include "ostrine/common/hardware_id.h"

namespace ostrine {
namespace {

/// Whether `text` begins with `start`, which is in capitals.
bool BeginsWith(std::wstring_view text, std::wstring_view start) {
  const auto capital = [](wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - 32) : c; };
  return text.size() >= start.size() && std::equal(start.begin(), start.end(), text.begin(),
                                                   [&](wchar_t a, wchar_t b) { return a == capital(b); });
}

/// The number in exactly `width` bytes, lowest first; 0 for another width.
std::uint64_t LittleEndian(std::span<const std::uint8_t> bytes, std::size_t width) {
  if (bytes.size() != width) return 0;
  std::uint64_t number = 0;
  for (std::size_t i = width; i-- > 0;) number = number << 8 | bytes[i];
  return number;
}

}  // namespace

VideoCardTraits TraitsOfHardwareId(std::wstring_view hardware_id) {
  constexpr std::uint16_t kHyperV = 0x1414;
  const auto numbers = ParseNumberedId(hardware_id);
  if (numbers && numbers->bus == NumberedId::Bus::kPci) return {.vendor = numbers->vendor};
  if (BeginsWith(hardware_id, L"VMBUS\\")) return {.vendor = kHyperV};
  const bool is_described = BeginsWith(hardware_id, L"ACPI\\");
  return {.is_virtual = !is_described, .is_on_root_bus = is_described};
}

std::optional<std::uint64_t> MemoryOfDriverValues(std::span<const std::uint8_t> long_size,
                                                  std::span<const std::uint8_t> short_size) {
  if (const std::uint64_t bytes = LittleEndian(long_size, 8); bytes != 0) return bytes;
  if (const std::uint64_t bytes = LittleEndian(short_size, 4); bytes != 0) return bytes;
  return std::nullopt;
}

std::string DateText(std::uint64_t file_time) {
  namespace chrono = std::chrono;
  constexpr std::uint64_t kUnitsInDay = 24ULL * 60 * 60 * 10'000'000;
  constexpr chrono::sys_days kFirst = chrono::year(1601) / 1 / 1;
  constexpr chrono::sys_days kLast = chrono::year(9999) / 12 / 31;
  const std::uint64_t day = file_time / kUnitsInDay;
  if (file_time == 0 || day > static_cast<std::uint64_t>((kLast - kFirst).count())) return {};
  const chrono::year_month_day date(kFirst + chrono::days(static_cast<int>(day)));
  const auto two = [](unsigned int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  return std::to_string(static_cast<int>(date.year())) + "-" + two(static_cast<unsigned int>(date.month())) +
         "-" + two(static_cast<unsigned int>(date.day()));
}

std::wstring MonitorInstance(std::wstring_view interface_name) {
  constexpr std::wstring_view kStart = L"\\\\?\\";
  if (!interface_name.starts_with(kStart)) return {};
  std::wstring instance(interface_name.substr(kStart.size()));
  instance.erase(std::min(instance.rfind(L'#'), instance.size()));  // the interface's class
  if (!BeginsWith(instance, L"DISPLAY#") || instance.find(L'\\') != std::wstring::npos ||
      std::count(instance.begin(), instance.end(), L'#') != 2) {
    return {};
  }
  std::replace(instance.begin(), instance.end(), L'#', L'\\');
  return instance;
}

}  // namespace ostrine
