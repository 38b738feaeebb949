#include "network/firewall_probe.h"

#include <cstdint>
#include <string>

#include "network/com_apartment.h"
#include "platform/guard.h"
#include "platform/os/firewall_policy.h"

namespace velmora::network {
namespace {

constexpr GUID kPolicyClass{0xE2B3C97F, 0x6AE1, 0x41AC, {0x81, 0x7A, 0xF6, 0xF9, 0x21, 0x66, 0xD7, 0xDD}};
constexpr GUID kPolicy{0x98325047, 0xC671, 0x4174, {0x8D, 0x81, 0xDE, 0xFC, 0xD3, 0xF0, 0x31, 0x86}};
constexpr GUID kRule{0xAF230D27, 0xBABA, 0x4E42, {0xAC, 0xED, 0xF5, 0x24, 0xF2, 0x2C, 0xFC, 0xE2}};
constexpr std::uint32_t kSingleThreaded = 2;
constexpr std::uint32_t kInProcess = 1;
constexpr std::int32_t kPublicProfile = 4;
constexpr std::int32_t kOutbound = 2;
constexpr std::int32_t kBlock = 0;
constexpr std::int32_t kAllow = 1;

bool IsOutboundCoreRule(os::ComObject rule) {
  std::int32_t direction = 0;
  std::wstring grouping;
  return os::ComSucceeded(os::FirewallRuleDirection(rule, direction)) && direction == kOutbound &&
         os::ComSucceeded(os::FirewallRuleGrouping(rule, grouping)) && grouping == L"@FirewallAPI.dll,-25000";
}

/// Whether the rule is one that blocks.
bool IsBlocking(os::ComObject rule) {
  if (!IsOutboundCoreRule(rule)) return false;
  os::VariantBool enabled = 0;
  std::int32_t action = kAllow;
  return os::ComSucceeded(os::FirewallRuleEnabled(rule, enabled)) && enabled == os::kVariantTrue &&
         os::ComSucceeded(os::FirewallRuleAction(rule, action)) && action == kBlock;
}

bool IsEnabled(os::ComObject policy) {
  os::VariantBool enabled = 0;
  return os::ComSucceeded(os::FirewallIsEnabled(policy, kPublicProfile, enabled)) &&
         enabled == os::kVariantTrue;
}

/// Walks the rules up to the first that blocks.
void WalkRules(os::ComObject policy) {
  ComPointer enumerator;
  if (!os::ComSucceeded(os::FirewallRules(policy, enumerator.Receive())) || !enumerator) return;
  bool is_found = false;
  while (!is_found) {
    ComPointer object;
    if (os::FirewallNextRule(enumerator.Get(), object.Receive()) != os::kComOk || !object) return;
    ComPointer rule;
    if (!os::ComSucceeded(os::ComQueryInterface(object.Get(), kRule, rule.Receive())) || !rule) continue;
    is_found = IsBlocking(rule.Get());
  }
}

void Probe() {
  const ComScope scope(os::CoInitializeEx(kSingleThreaded));
  if (!os::ComSucceeded(scope.Result()) && scope.Result() != os::kComChangedMode) return;
  os::SetProcessLocale(L"chs");
  ComPointer policy;
  if (!os::ComSucceeded(os::CoCreateInstance(kPolicyClass, kInProcess, kPolicy, policy.Receive()))) return;
  if (policy && IsEnabled(policy.Get())) WalkRules(policy.Get());
}

}  // namespace

void ProbeFirewall() noexcept { Attempt(Probe); }

}  // namespace velmora::network
