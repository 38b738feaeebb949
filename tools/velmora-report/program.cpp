#include "velmora-report/program.h"
#include "velmora-report/access_points_section.h"

#include <exception>
#include <span>

#include "velmora-report/commands.h"
#include "velmora-report/devices_section.h"
#include "velmora-report/json_output.h"
#include "velmora-report/options.h"
#include "velmora-report/repair.h"
#include "velmora-report/sections.h"
#include "velmora-report/services_section.h"
#include "velmora-report/system.h"
#include "velmora-report/text_output.h"

namespace report {
namespace {

ExitStatus Output(std::string_view text) {
  if (WriteOutput(text)) return kDone;
  WriteError("velmora-report: the output could not be written\n");
  return kFailed;
}

ExitStatus OutputReport(const Report& report, bool json) {
  return Output(json ? WriteJson(report) : WriteText(report));
}

int RunOneRepair(const Options& options) {
  const RepairOutcome outcome = RunRepair(options.repair);
  const ExitStatus written = OutputReport({outcome.section}, options.json);
  return written == kDone ? outcome.status : written;
}

int RunCommand(const Options& options) {
  const Command& command = FindCommand(options.command);
  if (!options.machine.empty()) {
    if (command.takes_machine_files)
      return RunOnMachine(VELMORA_SIMULATED_PROGRAM, options.machine, options.others);
    throw UsageError("\"" + options.command[0] + " " + options.command[1] + "\" is for this machine only");
  }
  const CommandOutcome outcome = command.run(std::span(options.command).subspan(2));
  const ExitStatus written = OutputReport({outcome.section}, options.json);
  return written == kDone ? outcome.status : written;
}

int RunOptions(const Options& options) {
  if (options.action == Options::Action::kHelp) {
    return Output(std::string(kHelp) + RepairHelp() + CommandHelp());
  }
  if (options.action == Options::Action::kVersion) return Output("velmora-report " VELMORA_VERSION "\n");
  if (options.action == Options::Action::kCommand) return RunCommand(options);
  if (!options.machine.empty())
    return RunOnMachine(VELMORA_SIMULATED_PROGRAM, options.machine, options.others);
  if (options.action == Options::Action::kRepair) return RunOneRepair(options);
  Report report = options.action == Options::Action::kDevices ? Report{DevicesSection()} : ReadMachine();
  if (!options.services.empty()) report.push_back(ServicesSection(options.services));
  if (!options.processes.empty()) report.push_back(ProcessesSection(options.processes));
  if (!options.networks.empty()) report.push_back(AccessPointsSection(options.networks));
  return OutputReport(report, options.json);
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
