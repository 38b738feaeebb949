/// What Velmora requires of the firewall policy, an object made by CoCreateInstance.
#pragma once

#include <string>

#include "platform/os/com.h"
#include "platform/os/network_list.h"

namespace velmora::os {

/// Whether the firewall is on for `profile` (4: public).
ComResult FirewallIsEnabled(ComObject policy, std::int32_t profile, VariantBool& enabled);

/// The policy's rules as an enumerator, and its next rule as an object (not yet its rule interface). A result
/// other than 0, or a null rule, ends the walk.
ComResult FirewallRules(ComObject policy, ComObject& enumerator);
ComResult FirewallNextRule(ComObject enumerator, ComObject& rule);

/// Facts of a rule, by its rule interface.
ComResult FirewallRuleDirection(ComObject rule, std::int32_t& direction);  ///< 1 in, 2 out
ComResult FirewallRuleGrouping(ComObject rule, std::wstring& grouping);
ComResult FirewallRuleEnabled(ComObject rule, VariantBool& enabled);
ComResult FirewallRuleAction(ComObject rule, std::int32_t& action);  ///< 0 block, 1 allow

}  // namespace velmora::os
