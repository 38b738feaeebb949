#include "platform/linux/netlink.h"

#include <linux/netlink.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>

namespace velmora::os {
namespace {

constexpr timeval kPatience{.tv_sec = 5, .tv_usec = 0};
/// No answer to what is asked here comes near it.
constexpr std::size_t kLongestAnswer = std::size_t{32} << 20;

/// The kernel puts no more into one datagram of a list.
constexpr std::size_t kRoom = 32768;

/// The error number that an end message carries; 0 for success.
int ErrorOf(Bytes payload) noexcept {
  const auto number = TakeRecord<int>(payload);
  return number && *number < 0 ? -*number : 0;
}

}  // namespace

NetlinkSocket::NetlinkSocket(int protocol) noexcept
    : socket_(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, protocol)), room_(kRoom) {
  sockaddr_nl own{};
  own.nl_family = AF_NETLINK;  // the kernel chooses the address
  const bool is_ready =
      socket_ && setsockopt(socket_.Number(), SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience) == 0 &&
      bind(socket_.Number(), reinterpret_cast<const sockaddr*>(&own), sizeof own) == 0;
  if (!is_ready) error_ = errno;
}

std::optional<std::vector<std::uint8_t>> NetlinkSocket::Ask(const NetlinkRequest& request) {
  if (error_ != 0) {
    errno = error_;
    return std::nullopt;
  }
  constexpr int kTries = 5;
  for (int i = 1;; ++i) {
    const auto bytes = request.Encode(++sequence_);
    if (send(socket_.Number(), bytes.data(), bytes.size(), 0) < 0) return std::nullopt;
    Answer answer;
    Progress progress = Progress::kMore;
    while (progress == Progress::kMore) progress = Collect(sequence_, answer);
    if (progress == Progress::kFailed) return std::nullopt;
    // A list that changed while it was told is asked for again; in the end it is better than none.
    const bool is_last = i == kTries;
    if (!answer.is_cut && (!answer.has_changed || is_last)) return std::move(answer.messages);
    if (answer.is_cut && is_last) {
      errno = EMSGSIZE;
      return std::nullopt;
    }
  }
}

/// The size of the next datagram from the kernel, which may be more than there is room for; nothing, with
/// errno, on failure.
std::optional<std::size_t> NetlinkSocket::Receive() {
  if (!datagram_) datagram_ = std::make_unique_for_overwrite<std::uint8_t[]>(room_);
  for (;;) {
    sockaddr_nl sender{};
    socklen_t sender_size = sizeof sender;
    const ssize_t size = recvfrom(socket_.Number(), datagram_.get(), room_, MSG_TRUNC,
                                  reinterpret_cast<sockaddr*>(&sender), &sender_size);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) {
      if (errno == EAGAIN) errno = ETIMEDOUT;
      return std::nullopt;
    }
    // Programs with the right to may write to the socket, too.
    if (sender_size == sizeof sender && sender.nl_pid == 0) return static_cast<std::size_t>(size);
  }
}

NetlinkSocket::Progress NetlinkSocket::Collect(std::uint32_t sequence, Answer& answer) {
  const auto size = Receive();
  if (!size) return Progress::kFailed;
  if (*size > room_) {
    // Asked again, with room for it.
    if (*size > kLongestAnswer) {
      errno = EFBIG;
      return Progress::kFailed;
    }
    room_ = *size;
    datagram_.reset();
    answer.is_cut = true;
    return Progress::kDone;
  }
  Bytes bytes(datagram_.get(), *size);
  while (const auto message = TakeMessage(bytes)) {
    if (message->sequence != sequence) continue;  // left over from a question that was given up
    if ((message->flags & NLM_F_DUMP_INTR) != 0) answer.has_changed = true;
    if (message->type == NLMSG_DONE || message->type == NLMSG_ERROR) {
      errno = ErrorOf(message->payload);
      return errno == 0 ? Progress::kDone : Progress::kFailed;
    }
    if (message->type < NLMSG_MIN_TYPE) continue;
    auto& messages = answer.messages;
    if (message->whole.size() > kLongestAnswer - messages.size()) {
      errno = EFBIG;
      return Progress::kFailed;
    }
    messages.insert(messages.end(), message->whole.begin(), message->whole.end());
    messages.resize((messages.size() + 3) & ~std::size_t{3});
  }
  return Progress::kMore;
}

}  // namespace velmora::os
