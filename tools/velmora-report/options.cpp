#include "velmora-report/options.h"

#include <algorithm>
#include <cstddef>

namespace report {

constexpr std::string_view kHelp =
    R"(Usage: velmora-report [--json] [--machine FILE] [--devices]
       velmora-report [--json] [--machine FILE] repair WHAT [OPTION...]

Tells what hardware this machine has and how it is doing, and repairs it.

  --devices       tell of all devices, class by class, instead
  --json          write JSON instead of text; what is not reported is null
  --machine FILE  tell of the simulated machine in FILE (JSON) instead of this one
  --help          show this text
  --version       show the version

Exit status: 0 done; 1 the report could not be written, or a repair failed;
2 the options or the machine file are not usable; 3 a repair was refused.
)";

Options ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--machine") {
      if (i + 1 == arguments.size() || arguments[i + 1].empty()) throw UsageError("--machine needs a file");
      options.machine = arguments[++i];
      continue;
    }
    if (argument == "--json") {
      options.json = true;
    } else if (options.action == Options::Action::kRepair) {
      options.repair.push_back(argument);
    } else if (argument == "repair") {
      options.action = Options::Action::kRepair;
    } else if (argument == "--devices") {
      options.action = Options::Action::kDevices;
    } else if (argument == "--help") {
      options.action = Options::Action::kHelp;
    } else if (argument == "--version") {
      options.action = Options::Action::kVersion;
    } else {
      throw UsageError("unknown option \"" + argument + "\"");
    }
    options.others.push_back(argument);
  }
  // Who asks for help in the middle of a repair wants to read, and nothing done.
  if (std::ranges::count(options.repair, "--help") > 0) options.action = Options::Action::kHelp;
  return options;
}

}  // namespace report
