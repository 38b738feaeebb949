#include "simulator/json_lines.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

namespace simulator {
namespace {

using Json = nlohmann::json;

/// Reads characters and tells, through a count that all copies share, how many lines were begun.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, int* line) : at_(at), line_(line) {}
  const char& operator*() const { return *at_; }
  CountingIterator& operator++() {
    if (*at_ == '\n') ++*line_;
    ++at_;
    return *this;
  }
  bool operator==(const CountingIterator& other) const { return at_ == other.at_; }
  bool operator!=(const CountingIterator& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  int* line_;
};

/// Follows the parser and notes the line at which each value was met.
class LineRecorder : public nlohmann::json_sax<Json> {
 public:
  LineRecorder(const int& line, JsonLines& lines) : line_(line), lines_(lines) {}

  bool null() override { return Value(); }
  bool boolean(bool) override { return Value(); }
  bool number_integer(number_integer_t) override { return Value(); }
  bool number_unsigned(number_unsigned_t) override { return Value(); }
  bool number_float(number_float_t, const string_t&) override { return Value(); }
  bool string(string_t&) override { return Value(); }
  bool binary(binary_t&) override { return Value(); }
  bool key(string_t& name) override {
    levels_.back().key = name;
    return true;
  }
  bool start_object(std::size_t) override { return Begin(); }
  bool end_object() override { return End(); }
  bool start_array(std::size_t) override {
    Begin();
    levels_.back().is_array = true;
    return true;
  }
  bool end_array() override { return End(); }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
    throw JsonSyntaxError(line_, error.what());
  }

 private:
  struct Level {
    std::string path;
    std::string key;
    bool is_array = false;
    int index = 0;
  };

  /// The pointer of the value that is met now.
  std::string Path() {
    if (levels_.empty()) return {};
    Level& level = levels_.back();
    return level.path + "/" + (level.is_array ? std::to_string(level.index++) : level.key);
  }
  bool Value() {
    lines_.emplace(Path(), line_);
    return true;
  }
  bool Begin() {
    const std::string path = Path();
    lines_.emplace(path, line_);
    levels_.push_back({.path = path});
    return true;
  }
  bool End() {
    levels_.pop_back();
    return true;
  }

  const int& line_;
  JsonLines& lines_;
  std::vector<Level> levels_;
};

}  // namespace

JsonLines FindJsonLines(std::string_view json) {
  int line = 1;
  JsonLines lines;
  LineRecorder recorder(line, lines);
  Json::sax_parse(CountingIterator(json.data(), &line), CountingIterator(json.data() + json.size(), &line),
                  &recorder);
  return lines;
}

}  // namespace simulator
