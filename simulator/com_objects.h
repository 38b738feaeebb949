/// What COM objects of the simulated system stand for. Each interface that was handed out is a handle of its
/// own, which ComRelease closes.
#pragma once

#include <cstddef>
#include <variant>

#include "platform/os/com.h"
#include "simulator/session.h"

namespace simulator {

struct NetworkListManager {};
struct FirewallPolicy {};
struct FirewallRuleWalk {
  std::size_t next = 0;
};
struct FirewallRuleInterface {
  std::size_t index;
};

/// An object by the interface that all have, from which only ComQueryInterface leads to its own.
struct UnknownObject {
  std::variant<NetworkListManager, FirewallPolicy, FirewallRuleInterface> own;
};

template <class Object>
velmora::os::ComObject OpenObject(Session& session, Object object) {
  return session.Open("ComRelease", object);
}

/// A scripted result code.
inline velmora::os::ComResult ResultOf(std::uint32_t code) {
  return static_cast<velmora::os::ComResult>(code);
}

/// What the interface of another object gives for a call: a pointer that is none of it.
inline constexpr velmora::os::ComResult kBadPointer = static_cast<velmora::os::ComResult>(0x80004003U);

}  // namespace simulator
