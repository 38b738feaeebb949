#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// COM on the calling thread. File key `com`. Results are the system's 32-bit codes without sign.
struct Com {
  std::uint32_t initialize_result = 0;  ///< 2147549446 (0x80010106) when the thread is in the other apartment

  bool operator==(const Com&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Com& com) {
  archive.Field("initialize_result", com.initialize_result);
}

/// What the network list manager knows. File key `network_list`.
struct NetworkList {
  std::uint32_t create_result = 0;  ///< unless 0 the manager cannot be made
  bool is_null = false;             ///< making it succeeds and gives none
  bool connected = false;
  std::uint32_t connected_result = 0;
  bool internet = false;
  std::uint32_t internet_result = 0;

  bool operator==(const NetworkList&) const = default;
};

template <class Archive>
void Fields(Archive& archive, NetworkList& list) {
  archive.Field("create_result", list.create_result);
  archive.Field("is_null", list.is_null);
  archive.Field("connected", list.connected);
  archive.Field("connected_result", list.connected_result);
  archive.Field("internet", list.internet);
  archive.Field("internet_result", list.internet_result);
}

/// One rule of the firewall.
struct FirewallRule {
  std::string grouping;
  std::int32_t direction = 1;  ///< 1 in, 2 out
  bool enabled = true;
  std::int32_t action = 1;         ///< 0 block, 1 allow
  bool has_rule_interface = true;  ///< false: it has no interface for rules

  bool operator==(const FirewallRule&) const = default;
};

template <class Archive>
void Fields(Archive& archive, FirewallRule& rule) {
  archive.Field("grouping", rule.grouping);
  archive.Field("direction", rule.direction);
  archive.Field("enabled", rule.enabled);
  archive.Field("action", rule.action);
  archive.Field("has_rule_interface", rule.has_rule_interface);
}

/// The firewall policy. File key `firewall`.
struct Firewall {
  std::uint32_t create_result = 0;  ///< unless 0 the policy cannot be made
  bool is_null = false;             ///< making it succeeds and gives none
  bool public_profile_enabled = false;
  std::vector<FirewallRule> rules;

  bool operator==(const Firewall&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Firewall& firewall) {
  archive.Field("create_result", firewall.create_result);
  archive.Field("is_null", firewall.is_null);
  archive.Field("public_profile_enabled", firewall.public_profile_enabled);
  archive.Field("rules", firewall.rules);
}

}  // namespace simulator
