#include "simulator/json_text.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
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

/// Follows the parser and puts the values together, each with the line at which it was met.
class JsonBuilder : public nlohmann::json_sax<Json> {
 public:
  explicit JsonBuilder(const Progress& progress) : progress_(progress) {}

  JsonValue Take() { return std::move(root_); }

  bool null() override {
    Add(Kind::kNull, progress_.line);
    return true;
  }
  bool boolean(bool flag) override {
    Add(Kind::kFlag, progress_.line).flag = flag;
    return true;
  }
  bool number_integer(number_integer_t number) override {
    Add(Kind::kNegative, NumberLine()).negative = number;
    return true;
  }
  bool number_unsigned(number_unsigned_t number) override {
    Add(Kind::kNatural, NumberLine()).natural = number;
    return true;
  }
  bool number_float(number_float_t, const string_t&) override {
    Add(Kind::kFraction, NumberLine());
    return true;
  }
  bool string(string_t& text) override {
    Add(Kind::kText, progress_.line).text = std::move(text);
    return true;
  }
  bool binary(binary_t&) override { return false; }  // JSON has none
  bool key(string_t& name) override {
    key_ = std::move(name);
    return true;
  }
  bool start_object(std::size_t) override { return Open(Kind::kObject); }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t) override { return Open(Kind::kList); }
  bool end_array() override { return Close(); }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
    throw JsonError(progress_.line, {}, std::string("is not JSON: ") + error.what());
  }

 private:
  using Kind = JsonValue::Kind;

  /// A number ends only where another character was read, which may have been the end of its line.
  int NumberLine() const { return progress_.line - (progress_.at_line_start ? 1 : 0); }

  JsonValue& Add(Kind kind, int line) {
    JsonValue& added = open_.empty() ? root_ : AddTo(*open_.back());
    added.kind = kind;
    added.line = line;
    if (!open_.empty() && IsTwice(added, *open_.back())) throw JsonError(added, "is given twice");
    return added;
  }
  JsonValue& AddTo(JsonValue& parent) {
    const std::string step = parent.kind == Kind::kList ? std::to_string(parent.values.size()) : key_;
    JsonValue& added = parent.values.emplace_back();
    added.path = parent.path + "/" + step;
    if (parent.kind == Kind::kObject) added.key = key_;
    return added;
  }
  /// Whether the newest value of a parent has the key of another.
  static bool IsTwice(const JsonValue& newest, const JsonValue& parent) {
    return parent.kind == Kind::kObject &&
           std::any_of(parent.values.begin(), parent.values.end() - 1,
                       [&](const JsonValue& other) { return other.key == newest.key; });
  }
  bool Open(Kind kind) {
    JsonValue& opened = Add(kind, progress_.line);
    if (open_.size() == kDeepest) throw JsonError(opened, "is nested too deeply");
    open_.push_back(&opened);  // which stays where it is until it is closed
    return true;
  }
  bool Close() {
    open_.pop_back();
    return true;
  }

  static constexpr std::size_t kDeepest = 32;

  const Progress& progress_;
  JsonValue root_;
  std::vector<JsonValue*> open_;  ///< the lists and objects around what is read now
  std::string key_;               ///< of the value that comes next
};

}  // namespace

JsonValue ParseJson(std::string_view json) {
  Progress progress;
  JsonBuilder builder(progress);
  Json::sax_parse(CountingIterator(json.data(), &progress),
                  CountingIterator(json.data() + json.size(), &progress), &builder);
  return builder.Take();
}

std::string JsonQuoted(const std::string& text) {
  try {
    return Json(text).dump();
  } catch (const Json::exception& error) {
    throw std::invalid_argument(error.what());
  }
}

}  // namespace simulator
