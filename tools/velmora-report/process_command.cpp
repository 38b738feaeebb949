#include "velmora-report/process_command.h"

#include <velmora/services.h>

#include "velmora-report/options.h"
#include "velmora-report/repair_arguments.h"
#include "velmora-report/utf8.h"

namespace report {
namespace {

CommandOutcome End(std::span<const std::string> arguments) {
  const RepairArguments read(arguments, {}, 1);
  if (read.Words().empty() || read.Words().front().empty()) throw UsageError("process end needs a name");
  const std::wstring name = FromUtf8(read.Words().front());
  const bool was_running = IsProcessRunning(name);
  const bool is_ended = was_running && KillProcByName(name);
  std::string verdict = "There is no such process.";
  if (was_running) verdict = is_ended ? "A process was told to end." : "The process could not be ended.";
  return {{.key = "process",
           .title = "Process",
           .verdict = std::move(verdict),
           .rows = {{"action", "Action", std::string("end")},
                    {"name", "Name", read.Words().front()},
                    {"running_before", "Ran before", was_running},
                    {"running_after", "One runs still", IsProcessRunning(name)},
                    {"done", "Done", is_ended}}},
          is_ended ? kDone : kFailed};
}

}  // namespace

constexpr Command kProcessEnd{.group = "process",
                              .name = "end",
                              .usage = "NAME",
                              .summary = "end the first process of this program",
                              .run = End};

}  // namespace report
