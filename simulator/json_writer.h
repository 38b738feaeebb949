#pragma once

#include <string>
#include <vector>

#include "simulator/archive.h"

namespace simulator {

/// Writes a machine's values, which stay as they are, as a JSON text. Throws std::invalid_argument for text
/// that is not UTF-8, which no JSON can hold.
class JsonWriter : public Archive {
 public:
  const std::string& Json() const { return json_; }

  using Archive::Value;
  void Value(std::string& text) override;
  void Value(bool& flag) override;
  void Value(std::uint8_t& number) override;
  void Value(std::uint32_t& number) override;
  void Value(std::uint64_t& number) override;
  void Value(std::int32_t& number) override;
  void Value(std::int64_t& number) override;
  void Value(Bytes& bytes) override;
  void Value(WmiValue& value) override;

 private:
  bool IsThere(bool is_there) override { return is_there; }
  std::size_t BeginList(std::size_t size) override;
  std::vector<std::string> Keys(std::vector<std::string> keys) override { return keys; }
  void EndList() override { End(']'); }
  void BeginObject() override { Begin('{'); }
  void EndObject() override { End('}'); }
  bool Enter(std::string_view key) override;
  void EnterElement(std::size_t /*index*/) override { key_.clear(); }
  void Leave() override {}

  /// Writes one value, with its key, on a line of its own.
  void Put(const std::string& value);
  void Begin(char bracket);
  void End(char bracket);
  void EndLine();

  std::string json_;
  std::string key_;                   ///< what stands before the current value
  std::vector<std::size_t> written_;  ///< how many values each list and object has that is not ended
};

}  // namespace simulator
