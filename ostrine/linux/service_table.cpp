#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "ostrine/linux/bus_connection.h"
#include "ostrine/linux/wmi_tables.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

using velmora::unicode::WideFromUtf8;

constexpr std::string_view kSuffix = ".service";

BusMessage Ask(const BusConnection& bus, const char* method) {
  BusMessage call = bus.NewCall(
      {"org.freedesktop.systemd1", "/org/freedesktop/systemd1", "org.freedesktop.systemd1.Manager", method});
  if (!call || sd_bus_message_append(call.get(), "asas", 0, 1, "*.service") < 0) return {};
  return bus.Call(call);
}

const wchar_t* StateWord(std::string_view active, std::string_view sub) {
  if (sub == "frozen") return L"Paused";
  if (active == "active" || active == "reloading" || active == "refreshing") return L"Running";
  if (active == "activating") return L"Start Pending";
  if (active == "deactivating") return L"Stop Pending";
  return L"Stopped";
}

struct Service {
  std::string_view unit;
  std::string_view description;
  const wchar_t* state;
};

/// Shows the visitor a service; whether it wants more.
bool Show(const Service& service, const WqlVisitor& visit) {
  if (!service.unit.ends_with(kSuffix)) return true;
  const std::string_view name = service.unit.substr(0, service.unit.size() - kSuffix.size());
  const std::wstring wide_name = WideFromUtf8(name);
  return visit([&](std::wstring_view property) {
    const WqlRecord record{
        {L"Name", wide_name},
        {L"DisplayName", service.description.empty() ? wide_name : WideFromUtf8(service.description)},
        {L"State", std::wstring(service.state)},
    };
    return FindProperty(record, property);
  });
}

/// Shows the units that are loaded and collects their names; whether the visitor wants more.
bool ShowLoadedUnits(sd_bus_message* reply, std::set<std::string, std::less<>>& shown,
                     const WqlVisitor& visit) {
  constexpr const char* kUnit = "(ssssssouso)";
  if (sd_bus_message_enter_container(reply, 'a', kUnit) < 0) return true;
  for (;;) {
    const char* unit = nullptr;
    const char* description = nullptr;
    const char* load = nullptr;
    const char* active = nullptr;
    const char* sub = nullptr;
    const char* following = nullptr;
    const char* path = nullptr;
    const char* job_type = nullptr;
    const char* job_path = nullptr;
    std::uint32_t job = 0;
    if (sd_bus_message_read(reply, kUnit, &unit, &description, &load, &active, &sub, &following, &path, &job,
                            &job_type, &job_path) <= 0) {
      return true;
    }
    if (std::string_view(load) == "not-found") continue;  // others only mention it
    shown.emplace(unit);
    if (!Show({unit, description, StateWord(active, sub)}, visit)) return false;
  }
}

/// Shows the units that are installed but not loaded; patterns for units and second names are not services.
void ShowInstalledUnits(sd_bus_message* reply, const std::set<std::string, std::less<>>& shown,
                        const WqlVisitor& visit) {
  constexpr const char* kUnitFile = "(ss)";
  if (sd_bus_message_enter_container(reply, 'a', kUnitFile) < 0) return;
  const char* path = nullptr;
  const char* state = nullptr;
  while (sd_bus_message_read(reply, kUnitFile, &path, &state) > 0) {
    std::string_view unit(path);
    unit.remove_prefix(unit.find_last_of('/') + 1);
    const bool is_pattern = unit.find("@.") != std::string_view::npos;
    if (is_pattern || std::string_view(state) == "alias" || shown.contains(unit)) continue;
    if (!Show({unit, {}, L"Stopped"}, visit)) return;
  }
}

}  // namespace

void VisitServices(const Path& root, const WqlVisitor& visit) {
  const BusConnection bus(root);
  const BusMessage loaded = Ask(bus, "ListUnitsByPatterns");
  std::set<std::string, std::less<>> shown;
  if (!loaded || !ShowLoadedUnits(loaded.get(), shown, visit)) return;
  const BusMessage installed = Ask(bus, "ListUnitFilesByPatterns");
  if (installed) ShowInstalledUnits(installed.get(), shown, visit);
}

}  // namespace ostrine
