/// The network list manager and the firewall policy of a machine.
#include "platform/os/network_list.h"

#include "platform/os/firewall_policy.h"
#include "platform/unicode.h"
#include "simulator/com_objects.h"
#include "simulator/spoiled.h"

using simulator::Entered;
using simulator::Fault;
using simulator::FirewallRule;

namespace velmora::os {
namespace {

constexpr ComResult kComFalse = 1;  ///< the end of a walk

VariantBool Variant(bool value) { return value ? kVariantTrue : VariantBool{0}; }

/// One flag of the network list: written when its result is a success.
ComResult Answer(Entered& call, ComObject manager, const char* function, bool simulator::NetworkList::* flag,
                 std::uint32_t simulator::NetworkList::* result, VariantBool& connected) {
  if (call.fault == Fault::kEmpty) return kComOk;
  if (call.fault != Fault::kNone) return kComFail;
  if (call.session.Find<simulator::NetworkListManager>(manager, function) == nullptr) {
    return simulator::kBadPointer;
  }
  const auto& list = *call.session.machine.network_list;
  if (list.*result == 0) connected = Variant(list.*flag);
  return simulator::ResultOf(list.*result);
}

/// The rule behind a rule interface; null, and the result in `result`, when there is nothing to read.
const FirewallRule* FindRule(Entered& call, ComObject rule, const char* function, ComResult& result) {
  result = call.Fails() ? kComFail : kComOk;
  if (call.fault == Fault::kFail || call.fault == Fault::kEmpty) return nullptr;
  const auto* opened = call.session.Find<simulator::FirewallRuleInterface>(rule, function);
  const auto& rules = call.session.machine.firewall->rules;
  if (opened != nullptr && opened->index < rules.size()) return &rules[opened->index];
  result = simulator::kBadPointer;
  return nullptr;
}

}  // namespace

ComResult NetworkListIsConnected(ComObject manager, VariantBool& connected) {
  Entered call("NetworkListIsConnected");
  return Answer(call, manager, "NetworkListIsConnected", &simulator::NetworkList::connected,
                &simulator::NetworkList::connected_result, connected);
}

ComResult NetworkListIsConnectedToInternet(ComObject manager, VariantBool& connected) {
  Entered call("NetworkListIsConnectedToInternet");
  return Answer(call, manager, "NetworkListIsConnectedToInternet", &simulator::NetworkList::internet,
                &simulator::NetworkList::internet_result, connected);
}

ComResult FirewallIsEnabled(ComObject policy, std::int32_t profile, VariantBool& enabled) {
  Entered call("FirewallIsEnabled", profile);
  if (call.fault == Fault::kEmpty) return kComOk;
  if (call.fault != Fault::kNone) return kComFail;
  if (call.session.Find<simulator::FirewallPolicy>(policy, "FirewallIsEnabled") == nullptr) {
    return simulator::kBadPointer;
  }
  constexpr std::int32_t kPublicProfile = 4;
  if (profile != kPublicProfile) return kComNotImplemented;
  enabled = Variant(call.session.machine.firewall->public_profile_enabled);
  return kComOk;
}

ComResult FirewallRules(ComObject policy, ComObject& enumerator) {
  Entered call("FirewallRules");
  enumerator = nullptr;
  if (call.fault == Fault::kEmpty) return kComOk;
  if (call.fault != Fault::kNone) return kComFail;
  if (call.session.Find<simulator::FirewallPolicy>(policy, "FirewallRules") == nullptr) {
    return simulator::kBadPointer;
  }
  enumerator = simulator::OpenObject(call.session, simulator::FirewallRuleWalk{});
  return kComOk;
}

ComResult FirewallNextRule(ComObject enumerator, ComObject& rule) {
  Entered call("FirewallNextRule");
  rule = nullptr;
  if (call.fault == Fault::kEmpty) return kComOk;
  if (call.fault != Fault::kNone) return kComFail;
  auto* walk = call.session.Find<simulator::FirewallRuleWalk>(enumerator, "FirewallNextRule");
  if (walk == nullptr) return simulator::kBadPointer;
  if (walk->next >= call.session.machine.firewall->rules.size()) return kComFalse;
  rule = simulator::OpenObject(call.session,
                               simulator::UnknownObject{simulator::FirewallRuleInterface{walk->next++}});
  return kComOk;
}

ComResult FirewallRuleDirection(ComObject rule, std::int32_t& direction) {
  Entered call("FirewallRuleDirection");
  ComResult result = kComOk;
  if (const auto* found = FindRule(call, rule, "FirewallRuleDirection", result)) direction = found->direction;
  return result;
}

ComResult FirewallRuleGrouping(ComObject rule, std::wstring& grouping) {
  Entered call("FirewallRuleGrouping");
  ComResult result = kComOk;
  const auto* found = FindRule(call, rule, "FirewallRuleGrouping", result);
  if (found == nullptr) return result;
  grouping = call.fault == Fault::kUnterminated ? simulator::SpoiledText(call.fault)
                                                : unicode::WideFromUtf8(found->grouping);
  return kComOk;
}

ComResult FirewallRuleEnabled(ComObject rule, VariantBool& enabled) {
  Entered call("FirewallRuleEnabled");
  ComResult result = kComOk;
  if (const auto* found = FindRule(call, rule, "FirewallRuleEnabled", result))
    enabled = Variant(found->enabled);
  return result;
}

ComResult FirewallRuleAction(ComObject rule, std::int32_t& action) {
  Entered call("FirewallRuleAction");
  ComResult result = kComOk;
  if (const auto* found = FindRule(call, rule, "FirewallRuleAction", result)) action = found->action;
  return result;
}

}  // namespace velmora::os
