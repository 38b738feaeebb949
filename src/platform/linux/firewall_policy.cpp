/// The firewall policy. Whether the firewall is on can be told; its rules are in no form that callers know,
/// so that there is no enumerator, and no rule to be asked.
#include "platform/os/firewall_policy.h"

#include "platform/linux/com_object.h"
#include "platform/linux/firewall.h"
#include "platform/linux/system_bus.h"

namespace velmora::os {
namespace {

constexpr auto kBadPointer = static_cast<ComResult>(0x80004003U);
constexpr std::int32_t kAnyProfile = 7;  ///< domain, private and public: one firewall stands for all here

}  // namespace

ComResult FirewallIsEnabled(ComObject policy, std::int32_t profile, VariantBool& enabled) {
  const auto* object = ObjectOf<FirewallPolicyObject>(policy);
  if (object == nullptr) return kBadPointer;
  if (profile <= 0 || (profile & ~kAnyProfile) != 0) return kComNotImplemented;
  const Bus bus = ConnectToSystemBus();
  const auto is_on = IsFirewallOn(object->Root(), bus.get());
  if (!is_on) return kComFail;
  enabled = *is_on ? kVariantTrue : VariantBool{0};
  return kComOk;
}

ComResult FirewallRules(ComObject policy, ComObject& enumerator) {
  enumerator = nullptr;
  return ObjectOf<FirewallPolicyObject>(policy) != nullptr ? kComNotImplemented : kBadPointer;
}

ComResult FirewallNextRule(ComObject /*enumerator*/, ComObject& rule) {
  rule = nullptr;
  return kBadPointer;
}

ComResult FirewallRuleDirection(ComObject /*rule*/, std::int32_t& /*direction*/) { return kBadPointer; }
ComResult FirewallRuleGrouping(ComObject /*rule*/, std::wstring& /*grouping*/) { return kBadPointer; }
ComResult FirewallRuleEnabled(ComObject /*rule*/, VariantBool& /*enabled*/) { return kBadPointer; }
ComResult FirewallRuleAction(ComObject /*rule*/, std::int32_t& /*action*/) { return kBadPointer; }

}  // namespace velmora::os
