#include "velmora-report/service_command.h"

#include <velmora/services.h>

#include <utility>

#include "velmora-report/options.h"
#include "velmora-report/repair_arguments.h"
#include "velmora-report/utf8.h"

namespace report {
namespace {

/// The one word that is meant. Throws UsageError.
std::string NameIn(std::span<const std::string> arguments, const char* command) {
  const RepairArguments read(arguments, {}, 1);
  if (read.Words().empty() || read.Words().front().empty()) {
    throw UsageError(std::string(command) + " needs a name");
  }
  return read.Words().front();
}

Section ChangeSection(const char* action, const std::string& name, const std::wstring& before) {
  return {.key = "service",
          .title = "Service",
          .rows = {{"action", "Action", std::string(action)},
                   {"name", "Name", name},
                   {"state_before", "State before", TextValue(before)}}};
}

CommandOutcome Finish(Section section, const std::wstring& name, bool is_done, std::string verdict) {
  section.rows.push_back({"state_after", "State after", TextValue(GetServiceState(name))});
  section.rows.push_back({"done", "Done", is_done});
  section.verdict = std::move(verdict);
  return {std::move(section), is_done ? kDone : kFailed};
}

CommandOutcome Start(std::span<const std::string> arguments) {
  const std::string text = NameIn(arguments, "service start");
  const std::wstring name = FromUtf8(text);
  Section section = ChangeSection("start", text, GetServiceState(name));
  const bool is_started = StartServiceByName(name);
  const bool runs = IsServiceRunning(name);
  std::string verdict = is_started ? "The start was accepted, but the service does not run."
                                   : "The service could not be started; the log tells why.";
  if (is_started && runs) verdict = "The service runs.";
  return Finish(std::move(section), name, is_started && runs, std::move(verdict));
}

CommandOutcome Stop(std::span<const std::string> arguments) {
  const std::string text = NameIn(arguments, "service stop");
  const std::wstring name = FromUtf8(text);
  Section section = ChangeSection("stop", text, GetServiceState(name));
  StopServiceByName(name);
  const std::wstring after = GetServiceState(name);
  std::string verdict = "The service has not stopped.";
  if (after.empty()) verdict = "There is no such service, or its state is not told.";
  if (after == L"Stopped") verdict = "The service is stopped.";
  return Finish(std::move(section), name, after == L"Stopped", std::move(verdict));
}

}  // namespace

constexpr Command kServiceStart{
    .group = "service", .name = "start", .usage = "NAME", .summary = "start the service", .run = Start};
constexpr Command kServiceStop{
    .group = "service", .name = "stop", .usage = "NAME", .summary = "stop the service", .run = Stop};

}  // namespace report
