/// Results and outputs of operations as printable text, by which outcomes are compared.
#pragma once

#include <concepts>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/unicode.h"

namespace torture {

/// Text in quotes; of a very long one the begin and the length.
inline std::string Shown(const std::string& text) {
  constexpr std::size_t kLongest = 1000;
  if (text.size() <= kLongest) return '"' + text + '"';
  return '"' + text.substr(0, kLongest) + "\"... of " + std::to_string(text.size()) + " bytes";
}
inline std::string Shown(const std::wstring& text) { return Shown(velmora::unicode::Utf8FromWide(text)); }
inline std::string Shown(bool flag) { return flag ? "true" : "false"; }

template <class Number>
  requires std::is_arithmetic_v<Number>
std::string Shown(Number number) {
  return std::to_string(number);
}

template <class Number>
  requires std::is_enum_v<Number>
std::string Shown(Number number) {
  return std::to_string(static_cast<std::underlying_type_t<Number>>(number));
}

template <class Element>
std::string Shown(const std::vector<Element>& list) {
  std::string text = "[";
  for (const auto& element : list) text += (text.size() > 1 ? ", " : "") + Shown(element);
  return text + "]";
}

/// A result with the outputs beside it.
template <class... Elements>
std::string Shown(const std::tuple<Elements...>& elements) {
  std::string text = "(";
  std::apply([&](const auto&... element) { ((text += (text.size() > 1 ? ", " : "") + Shown(element)), ...); },
             elements);
  return text + ")";
}

}  // namespace torture
