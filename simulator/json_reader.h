#pragma once

#include <set>
#include <string>
#include <vector>

#include "simulator/archive.h"
#include "simulator/json_text.h"

namespace simulator {

/// Gives a machine the values that a JSON text has. What the text leaves out stays as it is. Throws JsonError
/// for a value of the wrong kind and for a key that no field took.
class JsonReader : public Archive {
 public:
  /// The root has to live as long as this reads from it.
  explicit JsonReader(const JsonValue& root) : way_{&root} {}

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
  using Kind = JsonValue::Kind;

  /// An optional value is given by being there; `null` says expressly that it is not.
  bool IsThere(bool is_there) override;
  std::size_t BeginList(std::size_t size) override;
  std::vector<std::string> Keys(std::vector<std::string> keys) override;
  void EndList() override {}
  void BeginObject() override;
  void EndObject() override;
  bool Enter(std::string_view key) override;
  void EnterElement(std::size_t index) override;
  void Leave() override { way_.pop_back(); }

  template <class Integer>
  void Number(Integer& number);

  const JsonValue& Current() const { return *way_.back(); }
  void Require(Kind kind, const char* what) const;

  std::vector<const JsonValue*> way_;  ///< from the root to the current value
  std::set<const JsonValue*> taken_;   ///< the values of objects that fields took
};

}  // namespace simulator
