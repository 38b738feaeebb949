#include "velmora-report/commands.h"

#include <algorithm>
#include <iterator>

#include "velmora-report/files_command.h"
#include "velmora-report/options.h"
#include "velmora-report/process_command.h"
#include "velmora-report/service_command.h"

namespace report {
namespace {

const Command* const kCommands[] = {
    &kServiceStart, &kServiceStop, &kProcessEnd, &kFilesList, &kFilesPrune,
};

/// "service start, service stop"
std::string CommandNames(std::string_view group) {
  std::string names;
  for (const Command* const command : kCommands) {
    if (command->group != group) continue;
    names += (names.empty() ? "" : ", ") + std::string(group) + " " + std::string(command->name);
  }
  return names;
}

}  // namespace

bool IsCommandGroup(std::string_view word) {
  return std::ranges::any_of(kCommands, [&](const Command* command) { return command->group == word; });
}

const Command& FindCommand(std::span<const std::string> words) {
  const std::string& group = words.front();
  if (words.size() < 2) throw UsageError(group + " needs to know what: " + CommandNames(group));
  const auto* const found = std::ranges::find_if(kCommands, [&](const Command* command) {
    return command->group == group && command->name == words[1];
  });
  if (found == std::end(kCommands)) {
    throw UsageError("there is no command \"" + group + " " + words[1] + "\", only " + CommandNames(group));
  }
  return **found;
}

std::string CommandHelp() {
  std::string help = "\nCommands, which act on this machine or on the one of a machine file:\n\n";
  for (const Command* const command : kCommands) {
    help += "  " + std::string(command->group) + " " + std::string(command->name) + " " +
            std::string(command->usage) + "\n                  " + std::string(command->summary) + "\n";
  }
  return help;
}

}  // namespace report
