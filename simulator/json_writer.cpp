#include "simulator/json_writer.h"

#include <variant>

#include "simulator/json_text.h"

namespace simulator {

void JsonWriter::Value(std::string& text) { Put(JsonQuoted(text)); }
void JsonWriter::Value(bool& flag) { Put(flag ? "true" : "false"); }
void JsonWriter::Value(std::uint8_t& number) { Put(std::to_string(number)); }
void JsonWriter::Value(std::uint32_t& number) { Put(std::to_string(number)); }
void JsonWriter::Value(std::uint64_t& number) { Put(std::to_string(number)); }
void JsonWriter::Value(std::int32_t& number) { Put(std::to_string(number)); }
void JsonWriter::Value(std::int64_t& number) { Put(std::to_string(number)); }
void JsonWriter::Value(Bytes& bytes) { Put(JsonQuoted(HexText(bytes))); }

void JsonWriter::Value(WmiValue& value) {
  if (auto* text = std::get_if<std::string>(&value)) Value(*text);
  if (auto* number = std::get_if<std::uint64_t>(&value)) Value(*number);
}

std::size_t JsonWriter::BeginList(std::size_t size) {
  Begin('[');
  return size;
}

bool JsonWriter::Enter(std::string_view key) {
  key_ = JsonQuoted(std::string(key)) + ": ";
  return true;
}

void JsonWriter::Put(const std::string& value) {
  if (!written_.empty()) {
    if (written_.back()++ != 0) json_ += ',';
    EndLine();
  }
  json_ += key_ + value;
}

void JsonWriter::Begin(char bracket) {
  Put({bracket});
  written_.push_back(0);
}

void JsonWriter::End(char bracket) {
  const bool is_empty = written_.back() == 0;
  written_.pop_back();
  if (!is_empty) EndLine();
  json_ += bracket;
}

/// Ends the line and indents the next.
void JsonWriter::EndLine() { json_.append("\n").append(2 * written_.size(), ' '); }

}  // namespace simulator
