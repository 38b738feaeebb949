#include "velmora-report/options.h"

#include <cstddef>

#include "velmora-report/commands.h"

namespace report {

constexpr std::string_view kHelp =
    R"(Usage: velmora-report [--json] [--machine FILE] [--service NAME] [--process NAME]
       velmora-report [--json] [--machine FILE] COMMAND

Tells what hardware this machine has and how it is doing.

  --service NAME  tell of the service too; may be given several times
  --process NAME  tell whether the program runs too; may be given several times
  --json          write JSON instead of text; what is not reported is null
  --machine FILE  tell of the simulated machine in FILE (JSON) instead of this one
  --help          show this text
  --version       show the version

Exit status: 0 done; 1 the report could not be written, or a command failed;
2 the options or the machine file are not usable.
)";

namespace {

/// The names that the option has gathered; null for another option.
std::vector<std::string>* NamesOf(Options& options, const std::string& argument) {
  if (argument == "--service") return &options.services;
  return argument == "--process" ? &options.processes : nullptr;
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
    if (argument == "--json") {
      options.json = true;
    } else if (options.action == Options::Action::kCommand) {
      options.command.push_back(argument);
    } else if (IsCommandGroup(argument)) {
      options.action = Options::Action::kCommand;
      options.command.push_back(argument);
    } else if (auto* const names = NamesOf(options, argument)) {
      options.others.push_back(argument);
      if (i + 1 == arguments.size() || arguments[i + 1].empty()) throw UsageError(argument + " needs a name");
      names->push_back(arguments[++i]);
      options.others.push_back(arguments[i]);
      continue;
    } else if (argument == "--help") {
      options.action = Options::Action::kHelp;
    } else if (argument == "--version") {
      options.action = Options::Action::kVersion;
    } else {
      throw UsageError("unknown option \"" + argument + "\"");
    }
    options.others.push_back(argument);
  }
  return options;
}

}  // namespace report
