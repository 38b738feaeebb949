#include "velmora-report/options.h"

#include <algorithm>
#include <cstddef>

#include "velmora-report/commands.h"

namespace report {

constexpr std::string_view kHelp =
    R"(Usage: velmora-report [--json] [--machine FILE] [--devices] [--service NAME] [--process NAME]
                      [--network NAME]
       velmora-report [--json] [--machine FILE] repair WHAT [OPTION...]
       velmora-report [--json] [--machine FILE] COMMAND

Tells what hardware this machine has and how it is doing, and repairs it.

  --devices       tell of all devices, class by class, instead
  --service NAME  tell of the service too; may be given several times
  --process NAME  tell whether the program runs too; may be given several times
  --network NAME  tell of the Wi-Fi network's access point too; may be given several times
  --json          write JSON instead of text; what is not reported is null
  --machine FILE  tell of the simulated machine in FILE (JSON) instead of this one
  --help          show this text
  --version       show the version

Exit status: 0 done; 1 the report could not be written, or a repair or command
failed; 2 the options or the machine file are not usable; 3 a repair was refused.
)";

namespace {

/// The names that the option has gathered; null for another option.
std::vector<std::string>* NamesOf(Options& options, const std::string& argument) {
  if (argument == "--service") return &options.services;
  if (argument == "--process") return &options.processes;
  return argument == "--network" ? &options.networks : nullptr;
}

/// The words of a repair or command that has begun; null while none has.
std::vector<std::string>* WordsOf(Options& options) {
  if (options.action == Options::Action::kRepair) return &options.repair;
  return options.action == Options::Action::kCommand ? &options.command : nullptr;
}

/// Reads an argument that has no value. Throws UsageError.
void ParseArgument(const std::string& argument, Options& options) {
  if (argument == "--json") {
    options.json = true;
  } else if (auto* const words = WordsOf(options)) {
    words->push_back(argument);
  } else if (argument == "repair") {
    options.action = Options::Action::kRepair;
  } else if (IsCommandGroup(argument)) {
    options.action = Options::Action::kCommand;
    options.command.push_back(argument);
  } else if (argument == "--devices") {
    options.action = Options::Action::kDevices;
  } else if (argument == "--help") {
    options.action = Options::Action::kHelp;
  } else if (argument == "--version") {
    options.action = Options::Action::kVersion;
  } else {
    throw UsageError("unknown option \"" + argument + "\"");
  }
}

}  // namespace

Options ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--machine") {
      if (i + 1 == arguments.size() || arguments[i + 1].empty()) throw UsageError("--machine needs a file");
      options.machine = arguments[++i];
      continue;
    }
    options.others.push_back(argument);
    auto* const names = WordsOf(options) == nullptr ? NamesOf(options, argument) : nullptr;
    if (names == nullptr) {
      ParseArgument(argument, options);
      continue;
    }
    if (i + 1 == arguments.size() || arguments[i + 1].empty()) throw UsageError(argument + " needs a name");
    names->push_back(arguments[++i]);
    options.others.push_back(arguments[i]);
  }
  // Who asks for help in the middle of a repair wants to read, and nothing done.
  if (std::ranges::count(options.repair, "--help") > 0) options.action = Options::Action::kHelp;
  return options;
}

}  // namespace report
