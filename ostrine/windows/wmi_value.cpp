#include "ostrine/windows/wmi_value.h"

#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>

#include "ostrine/windows/com_pointer.h"

namespace ostrine {
namespace {

constexpr CIMTYPE kTypeOfElements = ~static_cast<CIMTYPE>(CIM_FLAG_ARRAY);

std::wstring_view TextIn(const VARIANT& value) {
  if (value.bstrVal == nullptr) return {};
  const std::wstring_view whole(value.bstrVal, SysStringLen(value.bstrVal));
  return whole.substr(0, whole.find(L'\0'));
}

/// A whole number as 64 bits; that it is to be read as unsigned stands in its property's type.
std::optional<std::int64_t> WholeNumberIn(const VARIANT& value, CIMTYPE type) {
  switch (value.vt) {
    case VT_I1:
      return static_cast<signed char>(value.cVal);
    case VT_UI1:
      return value.bVal;
    case VT_I2:
      return type == CIM_UINT16 ? static_cast<std::uint16_t>(value.iVal) : value.iVal;
    case VT_UI2:
      return value.uiVal;
    case VT_I4:
    case VT_INT:
      return type == CIM_UINT32 ? static_cast<std::int64_t>(static_cast<std::uint32_t>(value.lVal))
                                : value.lVal;
    case VT_UI4:
    case VT_UINT:
      return value.ulVal;
    case VT_I8:
      return value.llVal;
    case VT_UI8:
      return static_cast<std::int64_t>(value.ullVal);
    default:
      return std::nullopt;
  }
}

/// The number that a text of decimal digits states, when the whole text is one.
std::optional<std::uint64_t> ParseNumber(std::wstring_view text) {
  constexpr auto kMost = std::numeric_limits<std::uint64_t>::max();
  if (text.empty()) return std::nullopt;
  std::uint64_t number = 0;
  for (const wchar_t digit : text) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    const auto figure = static_cast<std::uint64_t>(digit - L'0');
    if (number > (kMost - figure) / 10) return std::nullopt;
    number = number * 10 + figure;
  }
  return number;
}

/// The shortest decimal form, whatever the process's locale.
std::wstring RealText(double number) {
  std::array<char, 32> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return std::wstring(digits.data(), end);
}

/// Calls `use` with the first element of the list `value`, or with a null.
template <class Use>
auto WithFirstElement(const VARIANT& value, Use use) {
  ComValue element;
  VARIANT* first = element.Receive();
  VARTYPE type = VT_EMPTY;
  LONG lower = 0;
  LONG upper = -1;
  SAFEARRAY* list = value.parray;
  // An element is owned by whom it is copied to, so it is read into a VARIANT of its type.
  if (list != nullptr && SafeArrayGetDim(list) == 1 && SUCCEEDED(SafeArrayGetVartype(list, &type)) &&
      SUCCEEDED(SafeArrayGetLBound(list, 1, &lower)) && SUCCEEDED(SafeArrayGetUBound(list, 1, &upper)) &&
      lower <= upper && type != VT_VARIANT && type != VT_DECIMAL && type != VT_RECORD &&
      SUCCEEDED(SafeArrayGetElement(list, &lower, &first->llVal))) {
    first->vt = type;
  }
  return use(element.Get());
}

}  // namespace

std::wstring WmiText(const VARIANT& value, CIMTYPE type) {
  if ((value.vt & VT_ARRAY) != 0) {
    return WithFirstElement(value,
                            [&](const VARIANT& element) { return WmiText(element, type & kTypeOfElements); });
  }
  if (value.vt == VT_BSTR) return std::wstring(TextIn(value));
  if (value.vt == VT_BOOL) return value.boolVal != VARIANT_FALSE ? L"True" : L"False";
  if (value.vt == VT_R4) return RealText(static_cast<double>(value.fltVal));
  if (value.vt == VT_R8) return RealText(value.dblVal);
  const auto number = WholeNumberIn(value, type);
  if (!number) return {};
  return value.vt == VT_UI8 ? std::to_wstring(value.ullVal) : std::to_wstring(*number);
}

unsigned int WmiNumber(const VARIANT& value, CIMTYPE type) {
  if ((value.vt & VT_ARRAY) != 0) {
    return WithFirstElement(
        value, [&](const VARIANT& element) { return WmiNumber(element, type & kTypeOfElements); });
  }
  constexpr std::uint64_t kMost = std::numeric_limits<unsigned int>::max();
  if (value.vt == VT_BOOL) return value.boolVal != VARIANT_FALSE ? 1 : 0;
  std::optional<std::uint64_t> number;
  if (value.vt == VT_BSTR) {
    if (type == CIM_UINT64 || type == CIM_SINT64) number = ParseNumber(TextIn(value));
  } else if (const auto whole = WholeNumberIn(value, type)) {
    number = static_cast<std::uint64_t>(*whole);  // a negative one lies far above the limit
  }
  return number && *number <= kMost ? static_cast<unsigned int>(*number) : 0;
}

std::vector<std::uint8_t> WmiBytes(const VARIANT& value) {
  LONG lower = 0;
  LONG upper = -1;
  void* first = nullptr;
  if (value.vt != (VT_ARRAY | VT_UI1) || value.parray == nullptr || SafeArrayGetDim(value.parray) != 1 ||
      FAILED(SafeArrayGetLBound(value.parray, 1, &lower)) ||
      FAILED(SafeArrayGetUBound(value.parray, 1, &upper)) || upper < lower ||
      FAILED(SafeArrayAccessData(value.parray, &first))) {
    return {};
  }
  const auto* bytes = static_cast<const std::uint8_t*>(first);
  std::vector<std::uint8_t> copy;
  try {
    copy.assign(bytes, bytes + (static_cast<std::int64_t>(upper) - lower + 1));
  } catch (...) {
    SafeArrayUnaccessData(value.parray);
    throw;
  }
  SafeArrayUnaccessData(value.parray);
  return copy;
}

}  // namespace ostrine
