#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace report {

/// What the caller wrote behind the name of a repair.
class RepairArguments {
 public:
  /// Reads options of `options`, each of which has a value, "--yes", and up to `most_words` words that belong
  /// to no option. Throws UsageError for anything else, and for an option that is given twice.
  RepairArguments(std::span<const std::string> arguments, std::span<const std::string_view> options,
                  std::size_t most_words);

  /// Whether the repair is to be done, and not only told of.
  bool IsConfirmed() const { return is_confirmed_; }

  /// The value of an option. Throws UsageError when it was not given, or is empty.
  const std::string& Required(std::string_view option) const;

  /// The value of an option; empty when it was not given.
  std::string Optional(std::string_view option) const;

  const std::vector<std::string>& Words() const { return words_; }

 private:
  std::map<std::string, std::string, std::less<>> values_;
  std::vector<std::string> words_;
  bool is_confirmed_ = false;
};

}  // namespace report
