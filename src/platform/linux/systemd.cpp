#include "platform/linux/systemd.h"

#include <cstdlib>
#include <string_view>
#include <vector>

#include "platform/case_folding.h"
#include "platform/os/last_error.h"
#include "platform/unicode.h"

namespace velmora::os {
namespace {

constexpr const char* kSystemd = "org.freedesktop.systemd1";
constexpr const char* kManagerPath = "/org/freedesktop/systemd1";
constexpr const char* kManager = "org.freedesktop.systemd1.Manager";
constexpr const char* kUnitInterface = "org.freedesktop.systemd1.Unit";

std::uint32_t ErrorNumber(const BusError& error) noexcept {
  if (error.IsRefusal()) return kErrorAccessDenied;
  if (error.IsTimeout()) return kErrorServiceRequestTimeout;
  if (error.Is("org.freedesktop.systemd1.NoSuchUnit")) return kErrorServiceDoesNotExist;
  if (error.Is("org.freedesktop.systemd1.UnitMasked")) return kErrorServiceDisabled;
  // A unit that only others may start or stop.
  if (error.Is("org.freedesktop.systemd1.OnlyByDependency")) return kErrorInvalidServiceControl;
  return kErrorGeneralFailure;
}

/// A list of texts that the library allocates.
class TextList {
 public:
  TextList() = default;
  TextList(const TextList&) = delete;
  TextList& operator=(const TextList&) = delete;
  ~TextList() {
    for (char** text = texts_; text != nullptr && *text != nullptr; ++text) std::free(*text);
    std::free(texts_);
  }
  char*** Out() noexcept { return &texts_; }
  std::vector<std::string> Copy() const {
    std::vector<std::string> copy;
    for (char** text = texts_; text != nullptr && *text != nullptr; ++text) copy.emplace_back(*text);
    return copy;
  }

 private:
  char** texts_ = nullptr;
};

/// Calls a method of the manager with texts and gives the reply; null with `error` on failure.
template <class... Texts>
BusMessage CallManager(SystemBus* bus, const char* method, BusError& error, const char* types,
                       Texts... texts) noexcept {
  return bus->Call({kSystemd, kManagerPath, kManager}, method, error, types, texts...);
}

/// The path of the unit's object, which the manager loads for the purpose.
std::uint32_t LoadUnit(SystemBus* bus, const std::string& unit, std::string& path) {
  BusError error;
  const BusMessage reply = CallManager(bus, "LoadUnit", error, "s", unit.c_str());
  const char* text = nullptr;
  if (reply.Read("o", &text) > 0) {
    path = text;
    return 0;
  }
  // A name that cannot be a unit's is refused with other words than one that is none.
  return error.Is(SD_BUS_ERROR_INVALID_ARGS) ? kErrorServiceDoesNotExist : ErrorNumber(error);
}

/// Looks through a list of entries that begin with a unit's name or file for `wanted` in any letter case.
std::optional<std::string> FindInList(SystemBus* bus, const char* method, const char* entry,
                                      std::wstring_view wanted) {
  BusError error;
  const BusMessage reply = CallManager(bus, method, error, "");
  const std::string array_entry = "(" + std::string(entry) + ")";
  if (reply.Enter('a', array_entry.c_str()) < 0) return std::nullopt;
  while (reply.Enter('r', entry) > 0) {
    const char* text = nullptr;
    if (reply.Read("s", &text) <= 0) return std::nullopt;
    const std::string_view path = text;
    const std::string_view name = path.substr(path.rfind('/') + 1);  // all of it when there is no slash
    if (EqualIgnoringCase(unicode::WideFromUtf8(name), wanted)) return std::string(name);
    if (reply.Skip(entry + 1) < 0 || reply.Exit() < 0) return std::nullopt;
  }
  return std::nullopt;
}

std::uint32_t ChangeUnit(SystemBus* bus, const char* method, const std::string& unit) noexcept {
  BusError error;
  const BusMessage reply = CallManager(bus, method, error, "ss", unit.c_str(), "replace");
  return reply ? 0 : ErrorNumber(error);
}

}  // namespace

bool HasServiceManager(SystemBus* bus) noexcept { return IsOnBus(bus, kSystemd); }

std::uint32_t ReadUnit(SystemBus* bus, const std::string& unit, UnitFacts& facts) {
  std::string path;
  if (const std::uint32_t error = LoadUnit(bus, unit, path)) return error;
  const BusObject object{kSystemd, path.c_str(), kUnitInterface};
  const auto load_state = ReadBusText(bus, object, "LoadState");
  if (!load_state) return kErrorGeneralFailure;
  if (*load_state == "not-found") return kErrorServiceDoesNotExist;
  const auto active_state = ReadBusText(bus, object, "ActiveState");
  if (!active_state) return kErrorGeneralFailure;
  facts.load_state = *load_state;
  facts.active_state = *active_state;
  facts.freezer_state = ReadBusText(bus, object, "FreezerState").value_or("");
  facts.can_stop = ReadBusFlag(bus, object, "CanStop").value_or(true);
  return 0;
}

std::uint32_t FindUnit(SystemBus* bus, std::string& unit) {
  UnitFacts facts;
  const std::uint32_t error = ReadUnit(bus, unit, facts);
  if (error != kErrorServiceDoesNotExist) return error;
  const std::wstring wanted = unicode::WideFromUtf8(unit);
  auto found = FindInList(bus, "ListUnitFiles", "ss", wanted);
  if (!found) found = FindInList(bus, "ListUnits", "ssssssouso", wanted);
  if (!found) return error;
  unit = *found;
  return ReadUnit(bus, unit, facts);
}

bool HasRunningDependents(SystemBus* bus, const std::string& unit) {
  std::string path;
  if (LoadUnit(bus, unit, path) != 0) return false;
  for (const char* property : {"RequiredBy", "RequisiteOf", "BoundBy"}) {
    BusError error;
    TextList names;
    if (bus->Library().bus_get_property_strv(bus->Get(), kSystemd, path.c_str(), kUnitInterface, property,
                                             error.Out(bus->Library()), names.Out()) < 0) {
      continue;
    }
    for (const std::string& name : names.Copy()) {
      UnitFacts facts;
      const bool is_service = name.ends_with(".service");
      if (!is_service || ReadUnit(bus, name, facts) != 0) continue;
      if (StatusOf(facts).current_state != kServiceStopped) return true;
    }
  }
  return false;
}

std::uint32_t StartUnit(SystemBus* bus, const std::string& unit) noexcept {
  return ChangeUnit(bus, "StartUnit", unit);
}
std::uint32_t StopUnit(SystemBus* bus, const std::string& unit) noexcept {
  return ChangeUnit(bus, "StopUnit", unit);
}

}  // namespace velmora::os
