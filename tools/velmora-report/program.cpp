#include "velmora-report/program.h"

#include <exception>

#include "velmora-report/json_output.h"
#include "velmora-report/options.h"
#include "velmora-report/sections.h"
#include "velmora-report/system.h"
#include "velmora-report/text_output.h"

namespace report {
namespace {

enum ExitStatus { kDone = 0, kFailed = 1, kUnusable = 2 };

int Output(std::string_view text) {
  if (WriteOutput(text)) return kDone;
  WriteError("velmora-report: the output could not be written\n");
  return kFailed;
}

int RunOptions(const Options& options) {
  switch (options.action) {
    case Options::Action::kHelp:
      return Output(kHelp);
    case Options::Action::kVersion:
      return Output("velmora-report " VELMORA_VERSION "\n");
    case Options::Action::kReport:
      break;
  }
  if (!options.machine.empty())
    return RunOnMachine(VELMORA_SIMULATED_PROGRAM, options.machine, options.others);
  const Report report = ReadMachine();
  return Output(options.json ? WriteJson(report) : WriteText(report));
}

}  // namespace

int Run(const std::vector<std::string>& arguments) noexcept {
  try {
    return RunOptions(ParseOptions(arguments));
  } catch (const UsageError& error) {
    WriteError(std::string("velmora-report: ") + error.what() + "; --help tells what there is\n");
    return kUnusable;
  } catch (const std::exception& error) {
    WriteError(std::string("velmora-report: ") + error.what() + "\n");
    return kFailed;
  }
}

}  // namespace report
