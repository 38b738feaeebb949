#include "simulator/json_lines.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

namespace simulator {
namespace {

using Json = nlohmann::json;

/// How far the parser has read.
struct Progress {
  int line = 1;
  bool at_line_start = false;  ///< the last character that was read ended a line
};

/// Reads characters and tells, through a record that all copies share, how far the text was read.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, Progress* progress) : at_(at), progress_(progress) {}
  const char& operator*() const { return *at_; }
  CountingIterator& operator++() {
    progress_->at_line_start = *at_ == '\n';
    if (progress_->at_line_start) ++progress_->line;
    ++at_;
    return *this;
  }
  bool operator==(const CountingIterator& other) const { return at_ == other.at_; }
  bool operator!=(const CountingIterator& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  Progress* progress_;
};

/// Follows the parser and notes the line at which each value was met.
class LineRecorder : public nlohmann::json_sax<Json> {
 public:
  LineRecorder(const Progress& progress, JsonLines& lines) : progress_(progress), lines_(lines) {}

  bool null() override { return Value(); }
  bool boolean(bool) override { return Value(); }
  bool number_integer(number_integer_t) override { return Number(); }
  bool number_unsigned(number_unsigned_t) override { return Number(); }
  bool number_float(number_float_t, const string_t&) override { return Number(); }
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
    throw JsonSyntaxError(progress_.line, {}, std::string("is not JSON: ") + error.what());
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
  void Record(const std::string& path, int line) {
    if (!lines_.emplace(path, line).second) throw JsonSyntaxError(line, path, "is given twice");
  }
  bool Value() {
    Record(Path(), progress_.line);
    return true;
  }
  /// A number ends only where another character was read, which may have been the end of its line.
  bool Number() {
    Record(Path(), progress_.line - (progress_.at_line_start ? 1 : 0));
    return true;
  }
  bool Begin() {
    const std::string path = Path();
    Record(path, progress_.line);
    if (levels_.size() == kDeepest) throw JsonSyntaxError(progress_.line, path, "is nested too deeply");
    levels_.push_back({.path = path});
    return true;
  }
  bool End() {
    levels_.pop_back();
    return true;
  }

  static constexpr std::size_t kDeepest = 32;

  const Progress& progress_;
  JsonLines& lines_;
  std::vector<Level> levels_;
};

}  // namespace

JsonLines FindJsonLines(std::string_view json) {
  Progress progress;
  JsonLines lines;
  LineRecorder recorder(progress, lines);
  Json::sax_parse(CountingIterator(json.data(), &progress),
                  CountingIterator(json.data() + json.size(), &progress), &recorder);
  return lines;
}

}  // namespace simulator
