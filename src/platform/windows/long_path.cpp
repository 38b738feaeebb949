#include "platform/windows/long_path.h"

#include <windows.h>

#include <string_view>
#include <utility>

namespace velmora::os {
namespace {

constexpr std::wstring_view kVerbatim = L"\\\\?\\";

}  // namespace

std::wstring LongPath(std::wstring path) {
  constexpr std::size_t kShort = 248;  // what CreateDirectoryW takes is the shortest of the limits
  constexpr std::wstring_view kNetwork = L"\\\\";
  if (path.size() < kShort || path.starts_with(kVerbatim)) return path;
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  const DWORD size = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (size == 0 || size >= full.size()) return path;
  full.resize(size);
  if (!full.starts_with(kNetwork)) return std::wstring(kVerbatim) + full;
  return std::wstring(kVerbatim) + L"UNC\\" + full.substr(kNetwork.size());
}

std::wstring LongPattern(std::wstring pattern) {
  constexpr std::wstring_view kEverything = L"//*.*";
  // What begins so is taken character by character, and no slash separates anything there.
  if (pattern.starts_with(kVerbatim) && pattern.ends_with(kEverything)) {
    pattern.replace(pattern.size() - kEverything.size(), 2, L"\\");
  }
  return LongPath(std::move(pattern));
}

}  // namespace velmora::os
