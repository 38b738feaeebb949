/// The repairs that the program offers. Each tells what it would do, and does it when the caller confirms it
/// with --yes.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "velmora-report/exit_status.h"
#include "velmora-report/repair_arguments.h"
#include "velmora-report/report.h"

namespace report {

/// What came of a repair.
struct RepairOutcome {
  Section section;  ///< what there is to tell, under the key "repair"
  ExitStatus status = kDone;
};

/// One repair. The table of them stands in repair.cpp, one line each.
struct RepairVerb {
  std::string_view name;
  std::string_view usage;    ///< what follows the name
  std::string_view summary;  ///< what it does, in a few words
  std::span<const std::string_view> options;
  std::size_t most_words = 0;
  RepairOutcome (*run)(const RepairArguments& arguments) = nullptr;
};

/// Runs the repair that the first of `arguments` names with the others. Throws UsageError.
RepairOutcome RunRepair(std::span<const std::string> arguments);

/// What --help says about repairs.
std::string RepairHelp();

}  // namespace report
