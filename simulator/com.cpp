/// COM of the simulated system: apartments, and the two classes that the library makes objects of.
#include "platform/os/com.h"

#include <optional>
#include <variant>

#include "simulator/com_objects.h"
#include "simulator/guid_text.h"

using simulator::Closing;
using simulator::Entered;
using simulator::Fault;
using simulator::Hex;
using simulator::Session;

namespace velmora::os {
namespace {

constexpr GUID kNetworkListManagerClass{
    0xDCB00C01, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr GUID kNetworkListManagerInterface{
    0xDCB00000, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr GUID kFirewallPolicyClass{
    0xE2B3C97F, 0x6AE1, 0x41AC, {0x81, 0x7A, 0xF6, 0xF9, 0x21, 0x66, 0xD7, 0xDD}};
constexpr GUID kFirewallPolicyInterface{
    0x98325047, 0xC671, 0x4174, {0x8D, 0x81, 0xDE, 0xFC, 0xD3, 0xF0, 0x31, 0x86}};
constexpr GUID kFirewallRuleInterface{
    0xAF230D27, 0xBABA, 0x4E42, {0xAC, 0xED, 0xF5, 0x24, 0xF2, 0x2C, 0xFC, 0xE2}};
constexpr GUID kUnknownInterface{
    0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr auto kNotInitialized = static_cast<ComResult>(0x800401F0U);

struct Apartment {};

/// Enters the thread into an apartment. One CoUninitialize is owed whatever comes back.
ComResult Initialize(Entered& call, const char* function) {
  call.session.Open("CoUninitialize", Apartment{});
  if (call.fault != Fault::kNone) return call.Fails() ? kComFail : kComOk;
  const auto& com = call.session.machine.com;
  if (!com) call.session.ReportUnscripted(function, "COM");
  return com ? simulator::ResultOf(com->initialize_result) : kComFail;
}

/// Makes what `script` describes, if `interface_id` is its interface or the one that all have.
template <class Script, class Object>
ComResult Create(Session& session, const Script& script, const GUID& own_interface, const GUID& interface_id,
                 Object made, ComObject& object) {
  if (!script) {
    session.ReportUnscripted("CoCreateInstance", "the class");
    return kComClassNotRegistered;
  }
  if (script->create_result != 0) return simulator::ResultOf(script->create_result);
  const bool is_unknown = simulator::IsSame(kUnknownInterface, interface_id);
  if (!is_unknown && !simulator::IsSame(own_interface, interface_id)) return kComNoInterface;
  if (script->is_null) return kComOk;
  object = is_unknown ? simulator::OpenObject(session, simulator::UnknownObject{made})
                      : simulator::OpenObject(session, made);
  return kComOk;
}

/// The interface that an object has of its own; nothing for a rule without one.
struct OwnInterface {
  const simulator::Machine& machine;

  std::optional<GUID> operator()(simulator::NetworkListManager) const { return kNetworkListManagerInterface; }
  std::optional<GUID> operator()(simulator::FirewallPolicy) const { return kFirewallPolicyInterface; }
  std::optional<GUID> operator()(simulator::FirewallRuleInterface rule) const {
    const auto& rules = machine.firewall->rules;
    const bool is_rule = rule.index < rules.size() && rules[rule.index].has_rule_interface;
    return is_rule ? std::optional(kFirewallRuleInterface) : std::nullopt;
  }
};

}  // namespace

ComResult CoInitialize() {
  Entered call("CoInitialize");
  return Initialize(call, "CoInitialize");
}

ComResult CoInitializeEx(std::uint32_t flags) {
  Entered call("CoInitializeEx", flags);
  return Initialize(call, "CoInitializeEx");
}

void CoUninitialize() {
  const Closing call("CoUninitialize");
  call.session.CloseNewest("CoUninitialize");
}

ComResult CoCreateInstance(const GUID& class_id, std::uint32_t context, const GUID& interface_id,
                           ComObject& object) {
  Entered call("CoCreateInstance", class_id, context, interface_id);
  object = nullptr;
  if (call.fault == Fault::kEmpty) return kComOk;
  if (call.fault != Fault::kNone) return kComFail;
  if (call.session.CountOpen("CoUninitialize") == 0) return kNotInitialized;
  const auto& machine = call.session.machine;
  if (simulator::IsSame(class_id, kNetworkListManagerClass)) {
    return Create(call.session, machine.network_list, kNetworkListManagerInterface, interface_id,
                  simulator::NetworkListManager{}, object);
  }
  if (simulator::IsSame(class_id, kFirewallPolicyClass)) {
    return Create(call.session, machine.firewall, kFirewallPolicyInterface, interface_id,
                  simulator::FirewallPolicy{}, object);
  }
  return kComClassNotRegistered;
}

ComResult ComQueryInterface(ComObject object, const GUID& interface_id, ComObject& result) {
  Entered call("ComQueryInterface", interface_id);
  result = nullptr;
  if (call.fault == Fault::kEmpty) return kComOk;
  if (call.fault != Fault::kNone) return kComNoInterface;
  const auto* found = call.session.Find<simulator::UnknownObject>(object, "ComQueryInterface");
  if (found == nullptr) return simulator::kBadPointer;
  const auto own = std::visit(OwnInterface{call.session.machine}, found->own);
  if (!own || !simulator::IsSame(*own, interface_id)) return kComNoInterface;
  result =
      std::visit([&](const auto& made) { return simulator::OpenObject(call.session, made); }, found->own);
  return kComOk;
}

void ComRelease(ComObject object) {
  const Closing call("ComRelease");
  if (object != nullptr) call.session.Close(object, "ComRelease");
}

void SetProcessLocale(const wchar_t* name) { const Entered call("SetProcessLocale", name); }

}  // namespace velmora::os
