#include "velmora-report/repair.h"

#include <algorithm>
#include <iterator>

#include "velmora-report/options.h"
#include "velmora-report/repair_bluetooth.h"
#include "velmora-report/repair_driver.h"

namespace report {
namespace {

const RepairVerb* const kVerbs[] = {
    &kResetVerb,
    &kUninstallVerb,
    &kRescanVerb,
    &kBluetoothVerb,
};

std::string RepairNames() {
  std::string names;
  for (const RepairVerb* const verb : kVerbs) names += (names.empty() ? "" : ", ") + std::string(verb->name);
  return names;
}

}  // namespace

RepairOutcome RunRepair(std::span<const std::string> arguments) {
  if (arguments.empty()) throw UsageError("repair needs to know what: " + RepairNames());
  const auto* const found = std::ranges::find(kVerbs, arguments.front(), &RepairVerb::name);
  if (found == std::end(kVerbs))
    throw UsageError("there is no repair \"" + arguments.front() + "\", only " + RepairNames());
  const RepairVerb& verb = **found;
  return verb.run(RepairArguments(arguments.subspan(1), verb.options, verb.most_words));
}

std::string RepairHelp() {
  std::string help = "\nRepairs. Each only tells what it would do, unless --yes is given.\n\n";
  for (const RepairVerb* const verb : kVerbs) {
    const std::string usage = verb->usage.empty() ? "" : " " + std::string(verb->usage);
    help += "  repair " + std::string(verb->name) + usage + "\n                  " +
            std::string(verb->summary) + "\n";
  }
  return help;
}

}  // namespace report
