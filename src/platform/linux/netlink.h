/// Questions to the kernel over netlink, with an end to every wait.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/descriptor.h"
#include "platform/linux/netlink_message.h"

namespace velmora::os {

/// Whom questions are put to: the kernel, or in tests what stands for it.
class Netlink {
 public:
  Netlink() = default;
  Netlink(const Netlink&) = delete;
  Netlink& operator=(const Netlink&) = delete;
  virtual ~Netlink() = default;

  /// The messages of the answer, one behind the other; nothing, with errno, on failure.
  virtual std::optional<std::vector<std::uint8_t>> Ask(const NetlinkRequest& request) = 0;
};

/// The kernel, asked over a socket of the object's own. Takes no privilege.
class NetlinkSocket : public Netlink {
 public:
  /// `protocol`: NETLINK_ROUTE, NETLINK_GENERIC. When the socket cannot be made, every question fails.
  explicit NetlinkSocket(int protocol) noexcept;

  std::optional<std::vector<std::uint8_t>> Ask(const NetlinkRequest& request) override;

 private:
  enum class Progress { kMore, kDone, kFailed };
  struct Answer {
    std::vector<std::uint8_t> messages;
    bool has_changed = false;  ///< the list changed while it was told
    bool is_cut = false;       ///< a part of it did not fit
  };

  Progress Collect(std::uint32_t sequence, Answer& answer);
  std::optional<std::size_t> Receive();

  Descriptor socket_;
  int error_ = 0;  ///< why there is no socket
  std::size_t room_;
  std::unique_ptr<std::uint8_t[]> datagram_;  ///< the latest, once something was asked; `room_` bytes
  std::uint32_t sequence_ = 0;
};

}  // namespace velmora::os
