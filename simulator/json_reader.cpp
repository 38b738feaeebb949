#include "simulator/json_reader.h"

#include <algorithm>
#include <limits>
#include <type_traits>

namespace simulator {
namespace {

/// What hexadecimal digit a character is; -1 for one that is none.
int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

void JsonReader::Require(Kind kind, const char* what) const {
  if (Current().kind != kind) throw JsonError(Current(), what);
}

void JsonReader::Value(std::string& text) {
  Require(Kind::kText, "must be a text");
  text = Current().text;
}

void JsonReader::Value(bool& flag) {
  Require(Kind::kFlag, "must be true or false");
  flag = Current().flag;
}

template <class Integer>
void JsonReader::Number(Integer& number) {
  using Limits = std::numeric_limits<Integer>;
  const JsonValue& value = Current();
  if (value.kind == Kind::kNatural && value.natural <= static_cast<std::uint64_t>(Limits::max())) {
    number = static_cast<Integer>(value.natural);
  } else if (value.kind == Kind::kNegative && std::is_signed_v<Integer> &&
             value.negative >= static_cast<std::int64_t>(Limits::min())) {
    number = static_cast<Integer>(value.negative);
  } else {
    throw JsonError(value, "must be a whole number from " + std::to_string(Limits::min()) + " to " +
                               std::to_string(Limits::max()));
  }
}

void JsonReader::Value(std::uint8_t& number) { Number(number); }
void JsonReader::Value(std::uint32_t& number) { Number(number); }
void JsonReader::Value(std::uint64_t& number) { Number(number); }
void JsonReader::Value(std::int32_t& number) { Number(number); }
void JsonReader::Value(std::int64_t& number) { Number(number); }

void JsonReader::Value(Bytes& bytes) {
  Require(Kind::kText, "must be a text");
  const std::string& text = Current().text;
  bytes.data.clear();
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == ' ') continue;
    const int high = HexDigit(text[i]);
    const int low = i + 1 < text.size() ? HexDigit(text[i + 1]) : -1;
    if (high < 0 || low < 0) throw JsonError(Current(), "must be pairs of hexadecimal digits");
    bytes.data.push_back(static_cast<std::uint8_t>(high * 16 + low));
    ++i;
  }
}

void JsonReader::Value(WmiValue& value) {
  if (Current().kind == Kind::kNatural) {
    value = Current().natural;
  } else {
    Require(Kind::kText, "must be a text or a whole number");
    value = Current().text;
  }
}

bool JsonReader::IsThere(bool /*is_there*/) { return Current().kind != Kind::kNull; }

std::size_t JsonReader::BeginList(std::size_t /*size*/) {
  Require(Kind::kList, "must be a list");
  return Current().values.size();
}

void JsonReader::BeginObject() { Require(Kind::kObject, "must be an object"); }

std::vector<std::string> JsonReader::Keys(std::vector<std::string> /*keys*/) {
  std::vector<std::string> keys;
  for (const JsonValue& value : Current().values) keys.push_back(value.key);
  return keys;
}

void JsonReader::EndObject() {
  for (const JsonValue& value : Current().values) {
    if (!taken_.contains(&value)) throw JsonError(value, "there is no such field");
  }
}

bool JsonReader::Enter(std::string_view key) {
  const auto& values = Current().values;
  const auto found =
      std::find_if(values.begin(), values.end(), [&](const JsonValue& value) { return value.key == key; });
  if (found == values.end()) return false;
  taken_.insert(&*found);
  way_.push_back(&*found);
  return true;
}

void JsonReader::EnterElement(std::size_t index) { way_.push_back(&Current().values[index]); }

}  // namespace simulator
