#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "ostrine/linux/bus_connection.h"
#include "ostrine/linux/wmi_tables.h"
#include "platform/case_folding.h"
#include "platform/ostrine/unit_state.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

using velmora::UnitState;
using velmora::UnitStateOf;
using velmora::unicode::WideFromUtf8;

constexpr std::string_view kServiceSuffix = ".service";

BusMessage Ask(const BusConnection& bus, const char* method) {
  BusMessage call = bus.NewCall(
      {"org.freedesktop.systemd1", "/org/freedesktop/systemd1", "org.freedesktop.systemd1.Manager", method});
  if (call.Append("asas", 0, 1, "*.service") < 0) return {};
  return bus.Call(call);
}

/// How the freezer holds the unit's processes; empty where it is not told.
std::string FreezerState(const BusConnection& bus, const char* path) {
  const BusMessage call =
      bus.NewCall({"org.freedesktop.systemd1", path, "org.freedesktop.DBus.Properties", "Get"});
  if (call.Append("ss", "org.freedesktop.systemd1.Unit", "FreezerState") < 0) return {};
  const BusMessage reply = bus.Call(call);
  const char* state = nullptr;
  return reply.Read("v", "s", &state) > 0 ? state : "";
}

const wchar_t* StateWord(UnitState state) {
  switch (state) {
    case UnitState::kRunning:
      return L"Running";
    case UnitState::kPaused:
      return L"Paused";
    case UnitState::kStartPending:
      return L"Start Pending";
    case UnitState::kStopPending:
      return L"Stop Pending";
    case UnitState::kStopped:
      break;
  }
  return L"Stopped";
}

struct Service {
  std::string_view unit;
  std::string_view description;
  std::string_view active_state;
  const char* path = nullptr;  ///< null for one that is not loaded
};

/// The freezer is asked about one service at a time, and only about those whose state a query wants.
std::wstring StateText(const BusConnection& bus, const Service& service) {
  UnitState state = UnitStateOf(service.active_state, {});
  if (state == UnitState::kRunning && service.path != nullptr) {
    state = UnitStateOf(service.active_state, FreezerState(bus, service.path));
  }
  return StateWord(state);
}

/// Shows the visitor a service; whether it wants more.
bool Show(const BusConnection& bus, const Service& service, const WqlVisitor& visit) {
  if (!service.unit.ends_with(kServiceSuffix)) return true;
  const std::string_view name = service.unit.substr(0, service.unit.size() - kServiceSuffix.size());
  const std::wstring wide_name = WideFromUtf8(name);
  return visit([&](std::wstring_view property) -> WqlValue {
    if (velmora::EqualIgnoringCase(property, L"State")) return StateText(bus, service);
    const WqlRecord record{
        {L"Name", wide_name},
        {L"DisplayName", service.description.empty() ? wide_name : WideFromUtf8(service.description)},
    };
    return FindProperty(record, property);
  });
}

/// Shows the units that are loaded and collects their names; whether the visitor wants more.
bool ShowLoadedUnits(const BusConnection& bus, const BusMessage& reply,
                     std::set<std::string, std::less<>>& shown, const WqlVisitor& visit) {
  constexpr const char* kUnit = "(ssssssouso)";
  if (reply.Enter('a', kUnit) < 0) return true;
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
    if (reply.Read(kUnit, &unit, &description, &load, &active, &sub, &following, &path, &job, &job_type,
                   &job_path) <= 0) {
      return true;
    }
    if (std::string_view(load) == "not-found") continue;  // others only mention it
    shown.emplace(unit);
    if (!Show(bus, {unit, description, active, path}, visit)) return false;
  }
}

/// Shows the units that are installed but not loaded; patterns for units and second names are not services.
void ShowInstalledUnits(const BusConnection& bus, const BusMessage& reply,
                        const std::set<std::string, std::less<>>& shown, const WqlVisitor& visit) {
  constexpr const char* kUnitFile = "(ss)";
  if (reply.Enter('a', kUnitFile) < 0) return;
  const char* path = nullptr;
  const char* state = nullptr;
  while (reply.Read(kUnitFile, &path, &state) > 0) {
    std::string_view unit(path);
    unit.remove_prefix(unit.find_last_of('/') + 1);
    const bool is_pattern = unit.find("@.") != std::string_view::npos;
    if (is_pattern || std::string_view(state) == "alias" || shown.contains(unit)) continue;
    if (!Show(bus, {.unit = unit, .active_state = "inactive"}, visit)) return;
  }
}

}  // namespace

void VisitServices(const Path& root, const WqlVisitor& visit) {
  const BusConnection bus(root);
  const BusMessage loaded = Ask(bus, "ListUnitsByPatterns");
  std::set<std::string, std::less<>> shown;
  if (!loaded || !ShowLoadedUnits(bus, loaded, shown, visit)) return;
  const BusMessage installed = Ask(bus, "ListUnitFilesByPatterns");
  if (installed) ShowInstalledUnits(bus, installed, shown, visit);
}

}  // namespace ostrine
