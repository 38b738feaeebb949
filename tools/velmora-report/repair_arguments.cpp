#include "velmora-report/repair_arguments.h"

#include <algorithm>

#include "velmora-report/options.h"

namespace report {

RepairArguments::RepairArguments(std::span<const std::string> arguments,
                                 std::span<const std::string_view> options, std::size_t most_words) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--yes") {
      is_confirmed_ = true;
    } else if (std::ranges::count(options, argument) > 0) {
      if (i + 1 == arguments.size()) throw UsageError(argument + " needs a value");
      if (!values_.emplace(argument, arguments[++i]).second) throw UsageError(argument + " is given twice");
    } else if (argument.starts_with("--") || words_.size() == most_words) {
      throw UsageError("unknown option \"" + argument + "\"");
    } else {
      words_.push_back(argument);
    }
  }
}

const std::string& RepairArguments::Required(std::string_view option) const {
  const auto found = values_.find(option);
  if (found == values_.end() || found->second.empty()) throw UsageError(std::string(option) + " is needed");
  return found->second;
}

std::string RepairArguments::Optional(std::string_view option) const {
  const auto found = values_.find(option);
  return found == values_.end() ? std::string() : found->second;
}

}  // namespace report
