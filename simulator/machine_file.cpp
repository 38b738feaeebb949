#include "simulator/machine_file.h"

#include <concepts>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <type_traits>
#include <variant>
#include <vector>

#include "simulator/json_lines.h"

namespace simulator {
namespace {

// Keys are written in the order of the field lists, which is the order in which people think of a machine.
using Json = nlohmann::ordered_json;

/// What one machine file is read with: its name and the lines of its values, for errors.
class Source {
 public:
  Source(std::string file, JsonLines lines) : file_(std::move(file)), lines_(std::move(lines)) {}

  [[noreturn]] void Fail(const std::string& path, const std::string& what) const {
    const auto line = lines_.find(path);
    throw MachineFileError(file_ + ":" + std::to_string(line == lines_.end() ? 1 : line->second) + ": " +
                           (path.empty() ? "/" : path) + ": " + what);
  }

 private:
  std::string file_;
  JsonLines lines_;
};

template <class Value>
void Read(const Source& source, const Json& json, const std::string& path, Value& value);

std::string PathOf(const std::string& path, std::string_view key) {
  std::string result;
  result.reserve(path.size() + 1 + key.size());
  return result.append(path).append("/").append(key);
}

/// Reads the fields of one object; afterwards `RefuseUnknown` names a key that no field took. What is the
/// same for fields of every type is no template: there are hundreds.
class Reader {
 public:
  Reader(const Source& source, const Json& json, std::string path)
      : source_(source), json_(json), path_(std::move(path)) {
    if (!json.is_object()) source.Fail(path_, "must be an object");
  }

  template <class Value>
  void Field(const char* key, Value& value) {
    if (const Json* found = Find(key)) Read(source_, *found, PathOf(path_, key), value);
  }

  void RefuseUnknown() const {
    for (const auto& [key, value] : json_.items()) {
      if (!known_.contains(key)) source_.Fail(PathOf(path_, key), "there is no such field");
    }
  }

 private:
  const Json* Find(const char* key) {
    known_.insert(key);
    const auto found = json_.find(key);
    return found != json_.end() ? &*found : nullptr;
  }

  const Source& source_;
  const Json& json_;
  std::string path_;
  std::set<std::string> known_;
};

void ReadPlain(const Source& source, const Json& json, const std::string& path, std::string& text) {
  if (!json.is_string()) source.Fail(path, "must be a text");
  text = json.get<std::string>();
}

[[maybe_unused]] void ReadPlain(const Source& source, const Json& json, const std::string& path, bool& flag) {
  if (!json.is_boolean()) source.Fail(path, "must be true or false");
  flag = json.get<bool>();
}

template <std::integral Number>
  requires(!std::same_as<Number, bool>)
void ReadPlain(const Source& source, const Json& json, const std::string& path, Number& number) {
  using Limits = std::numeric_limits<Number>;
  const bool fits = json.is_number_unsigned()
                        ? json.get<std::uint64_t>() <= static_cast<std::uint64_t>(Limits::max())
                        : json.is_number_integer() && std::is_signed_v<Number> &&
                              json.get<std::int64_t>() >= static_cast<std::int64_t>(Limits::min());
  if (!fits) {
    source.Fail(path, "must be a whole number from " + std::to_string(Limits::min()) + " to " +
                          std::to_string(Limits::max()));
  }
  number = json.get<Number>();
}

template <class Object>
  requires std::is_class_v<Object>
void ReadPlain(const Source& source, const Json& json, const std::string& path, Object& object) {
  Reader reader(source, json, path);
  Fields(reader, object);
  reader.RefuseUnknown();
}

template <class Element>
void ReadPlain(const Source& source, const Json& json, const std::string& path, std::vector<Element>& list) {
  if (!json.is_array()) source.Fail(path, "must be a list");
  list.clear();
  for (std::size_t i = 0; i < json.size(); ++i) {
    Read(source, json[i], PathOf(path, std::to_string(i)), list.emplace_back());
  }
}

/// What hexadecimal digit a character is; -1 for one that is none.
int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

void ReadPlain(const Source& source, const Json& json, const std::string& path, Bytes& bytes) {
  std::string text;
  ReadPlain(source, json, path, text);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == ' ') continue;
    const int high = HexDigit(text[i]);
    const int low = i + 1 < text.size() ? HexDigit(text[i + 1]) : -1;
    if (high < 0 || low < 0) source.Fail(path, "must be pairs of hexadecimal digits");
    bytes.data.push_back(static_cast<std::uint8_t>(high * 16 + low));
    ++i;
  }
}

void ReadPlain(const Source& source, const Json& json, const std::string& path, WmiValue& value) {
  if (json.is_string()) {
    value = json.get<std::string>();
  } else if (json.is_number_unsigned()) {
    value = json.get<std::uint64_t>();
  } else {
    source.Fail(path, "must be a text or a whole number");
  }
}

/// An object whose keys are names of the user's own.
template <class Element>
void ReadPlain(const Source& source, const Json& json, const std::string& path,
               std::map<std::string, Element>& elements) {
  if (!json.is_object()) source.Fail(path, "must be an object");
  elements.clear();
  for (const auto& [key, value] : json.items()) Read(source, value, PathOf(path, key), elements[key]);
}

/// An optional value is given by being there; `null` says expressly that it is not.
template <class Value>
void ReadPlain(const Source& source, const Json& json, const std::string& path, std::optional<Value>& value) {
  if (json.is_null()) {
    value.reset();
  } else {
    Read(source, json, path, value.emplace());
  }
}

template <class Value>
void Read(const Source& source, const Json& json, const std::string& path, Value& value) {
  ReadPlain(source, json, path, value);
}

template <class Value>
Json Write(const Value& value);
template <class Element>
Json Write(const std::vector<Element>& list);
template <class Element>
Json Write(const std::map<std::string, Element>& elements);
Json Write(const WmiValue& value);
Json Write(const Bytes& bytes);

/// Writes the fields of one object.
class Writer {
 public:
  template <class Value>
  void Field(const char* key, const Value& value) {
    if constexpr (requires { value.has_value(); }) {
      if (value) json_[key] = Write(*value);
    } else {
      json_[key] = Write(value);
    }
  }
  Json Take() { return std::move(json_); }

 private:
  Json json_ = Json::object();
};

template <class Value>
Json Write(const Value& value) {
  if constexpr (
      requires { Json(value); } &&
      !requires { Fields(std::declval<Writer&>(), const_cast<Value&>(value)); }) {
    return Json(value);
  } else {
    Writer writer;
    Value copy = value;  // the field lists name members for reading, too
    Fields(writer, copy);
    return writer.Take();
  }
}

template <class Element>
Json Write(const std::vector<Element>& list) {
  Json json = Json::array();
  for (const auto& element : list) json.push_back(Write(element));
  return json;
}

template <class Element>
Json Write(const std::map<std::string, Element>& elements) {
  Json json = Json::object();
  for (const auto& [key, element] : elements) json[key] = Write(element);
  return json;
}

Json Write(const WmiValue& value) {
  return std::visit([](const auto& held) { return Json(held); }, value);
}

Json Write(const Bytes& bytes) { return Json(HexText(bytes)); }

/// A machine from a file is whole: what the file does not name, the machine does not have.
Machine Whole() { return EmptyMachine(); }

}  // namespace

Machine ParseMachine(std::string_view json, const std::string& file) {
  try {
    const Source source(file, FindJsonLines(json));
    Machine machine = Whole();
    Read(source, Json::parse(json), "", machine);
    return machine;
  } catch (const JsonSyntaxError& error) {
    throw MachineFileError(file + ":" + std::to_string(error.line) + ": " +
                           (error.path.empty() ? "/" : error.path) + ": " + error.what());
  }
}

Machine ReadMachine(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string text;
  try {
    if (!stream) throw std::ios_base::failure("not there");
    text.assign(std::istreambuf_iterator<char>(stream), {});  // of a folder, the first read throws
  } catch (const std::ios_base::failure&) {
    throw MachineFileError(file.string() + ":1: /: cannot be read");
  }
  return ParseMachine(text, file.string());
}

std::string WriteMachine(const Machine& machine) {
  try {
    return Write(machine).dump(2) + "\n";
  } catch (const Json::exception& error) {
    throw MachineFileError(std::string("the machine cannot be written: ") + error.what());
  }
}

}  // namespace simulator
