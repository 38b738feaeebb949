// Any bytes as UTF-8 and as UTF-16, against a decoder that is read straight off the standard's table.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/unicode.h"
#include "tests/support/naive_utf8.h"

namespace {

namespace unicode = velmora::unicode;
namespace naive = velmora::testing;

void Require(bool holds) {
  if (!holds) std::abort();
}

void ReadAsUtf8(std::string_view bytes) {
  const std::u32string characters = naive::NaiveDecode(bytes);
  const std::wstring wide = unicode::WideFromUtf8(bytes);
  Require(wide == naive::NaiveWide<std::wstring>(characters));
  Require(unicode::Utf16FromUtf8(bytes) == naive::NaiveWide<std::u16string>(characters));
  Require(unicode::Utf8FromWide(wide) == naive::NaiveEncode(characters));

  std::wstring exact(wide.size(), L'\0');
  Require(unicode::PutWideFromUtf8(bytes, exact) == wide.size() && exact == wide);
  if (!wide.empty()) Require(!unicode::PutWideFromUtf8(bytes, std::span(exact).subspan(1)));
}

void ReadAsUtf16(std::string_view bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  std::memcpy(units.data(), bytes.data(), units.size() * 2);
  const std::string utf8 = unicode::Utf8FromWide(unicode::WideFromUtf16(units));
  Require(naive::NaiveEncode(naive::NaiveDecode(utf8)) == utf8);
  Require(unicode::Utf16FromUtf8(utf8).size() <= units.size());
}

void ReadAsWide(std::string_view bytes) {
  std::wstring units(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(units.data(), bytes.data(), units.size() * sizeof(wchar_t));
  const std::string utf8 = unicode::Utf8FromWide(units);
  Require(naive::NaiveEncode(naive::NaiveDecode(utf8)) == utf8);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  ReadAsUtf8(bytes);
  ReadAsUtf16(bytes);
  ReadAsWide(bytes);
  return 0;
}
