#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "simulator/sections/common.h"
#include "simulator/sections/wmi.h"

namespace simulator {

/// Carries a machine's values from or to somewhere else, one after another: `archive.Value(machine)`.
///
/// A machine has hundreds of fields of dozens of types, and the compiler takes its time over all that is a
/// template. So this class breaks every type down into the few kinds of values that a file has, and archives
/// deal with those only.
class Archive {
 public:
  Archive() = default;
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;
  virtual ~Archive() = default;

  /// One line of a list `Fields`.
  template <class Type>
  void Field(const char* key, Type& value) {
    if (!Enter(key)) return;
    Value(value);
    Leave();
  }

  virtual void Value(std::string& text) = 0;
  virtual void Value(bool& flag) = 0;
  virtual void Value(std::uint8_t& number) = 0;
  virtual void Value(std::uint32_t& number) = 0;
  virtual void Value(std::uint64_t& number) = 0;
  virtual void Value(std::int32_t& number) = 0;
  virtual void Value(std::int64_t& number) = 0;
  virtual void Value(Bytes& bytes) = 0;
  virtual void Value(WmiValue& value) = 0;

  template <class Object>
    requires std::is_class_v<Object>
  void Value(Object& object) {
    BeginObject();
    Fields(*this, object);
    EndObject();
  }

  template <class Type>
  void Value(std::optional<Type>& value) {
    if (!IsThere(value.has_value())) {
      value.reset();
    } else {
      Value(value ? *value : value.emplace());
    }
  }

  template <class Element>
  void Value(std::vector<Element>& list) {
    const std::size_t size = BeginList(list.size());
    if (size != list.size()) list = std::vector<Element>(size);
    for (std::size_t i = 0; i < list.size(); ++i) {
      EnterElement(i);
      Value(list[i]);
      Leave();
    }
    EndList();
  }

  /// An object whose keys are names of the user's own.
  template <class Element>
  void Value(std::map<std::string, Element>& elements) {
    BeginObject();
    std::vector<std::string> names;
    names.reserve(elements.size());
    for (const auto& element : elements) names.push_back(element.first);
    for (const std::string& name : Keys(std::move(names))) {
      Enter(name);
      Value(elements[name]);
      Leave();
    }
    EndObject();
  }

 private:
  // Each takes what the machine has and gives what it shall have.
  virtual bool IsThere(bool is_there) = 0;
  virtual std::size_t BeginList(std::size_t size) = 0;
  virtual std::vector<std::string> Keys(std::vector<std::string> keys) = 0;

  virtual void EndList() = 0;
  virtual void BeginObject() = 0;
  virtual void EndObject() = 0;

  /// Whether there is anything to do for the object's value of that key; if so it becomes the current one.
  virtual bool Enter(std::string_view key) = 0;
  /// That element of the list becomes the current value.
  virtual void EnterElement(std::size_t index) = 0;
  /// What holds the current value becomes the current one.
  virtual void Leave() = 0;
};

}  // namespace simulator
