/// What the program does beside reporting: each command is a few words, as in "service stop NAME".
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "velmora-report/exit_status.h"
#include "velmora-report/report.h"

namespace report {

/// What came of a command.
struct CommandOutcome {
  Section section;
  ExitStatus status = kDone;
};

/// One command. The table of them stands in commands.cpp, one line each.
struct Command {
  std::string_view group;  ///< the first word
  std::string_view name;   ///< the second
  std::string_view usage;  ///< what follows
  std::string_view summary;
  bool takes_machine_files = true;
  /// Does it with the arguments behind the two words. Throws UsageError.
  CommandOutcome (*run)(std::span<const std::string> arguments) = nullptr;
};

/// Whether a command begins with the word.
bool IsCommandGroup(std::string_view word);

/// The command that the first two words name. Throws UsageError when there is none.
const Command& FindCommand(std::span<const std::string> words);

/// What --help says about commands.
std::string CommandHelp();

}  // namespace report
