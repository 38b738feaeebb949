#include "velmora-report/services_section.h"

#include <velmora/services.h>

#include <utility>

#include "velmora-report/utf8.h"

namespace report {
namespace {

/// "2 of 3 services run: a, b."
std::string RunningVerdict(std::uint64_t running, std::size_t asked, const std::string& things,
                           const std::string& others) {
  std::string verdict = std::to_string(running) + " of " + std::to_string(asked) + " " + things + " run";
  return verdict + (others.empty() ? "." : "; not running: " + others + ".");
}

void AppendListed(const std::string& name, std::string& names) {
  names += (names.empty() ? "" : ", ") + name;
}

}  // namespace

Section ServicesSection(const std::vector<std::string>& names) {
  List list{.key = "services", .item_title = "Service"};
  std::uint64_t running = 0;
  std::string others;
  for (const std::string& name : names) {
    const std::wstring wide_name = FromUtf8(name);
    const bool runs = IsServiceRunning(wide_name);
    list.items.push_back({{"name", "Name", name},
                          {"exists", "Exists under exactly this name", IsServiceExist(wide_name)},
                          {"state", "State", TextValue(GetServiceState(wide_name))},
                          {"running", "Runs", runs}});
    running += runs ? 1 : 0;
    if (!runs) AppendListed(name, others);
  }
  return {.key = "services",
          .title = "Services",
          .verdict = RunningVerdict(running, names.size(), "services", others),
          .rows = {{"running_count", "Services that run", running},
                   {"push_notification_service", "Push notifications", TextValue(GetWpnUserServiceExName())}},
          .lists = {std::move(list)}};
}

Section ProcessesSection(const std::vector<std::string>& names) {
  List list{.key = "processes", .item_title = "Process"};
  std::uint64_t running = 0;
  std::string others;
  for (const std::string& name : names) {
    const bool runs = IsProcessRunning(FromUtf8(name));
    list.items.push_back({{"name", "Name", name}, {"running", "Runs", runs}});
    running += runs ? 1 : 0;
    if (!runs) AppendListed(name, others);
  }
  return {.key = "processes",
          .title = "Processes",
          .verdict = RunningVerdict(running, names.size(), "programs", others),
          .rows = {{"running_count", "Programs that run", running},
                   {"wmi_sink_running", "WMI's own sink runs", IsProc_unsecapp_Exist()}},
          .lists = {std::move(list)}};
}

}  // namespace report
