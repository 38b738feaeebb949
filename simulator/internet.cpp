/// The internet settings of a machine.
#include "platform/os/internet_settings.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/unicode.h"
#include "simulator/failing.h"

using simulator::Entered;
using simulator::Fault;
using simulator::Succeed;

namespace velmora::os {
namespace {

constexpr std::uint32_t kProxyOption = 38;

/// INTERNET_PROXY_INFO, 24 bytes, with the proxy's name behind it.
struct ProxyInfo {
  std::uint32_t access_type;
  std::uint32_t padding;
  const void* proxy;
  const void* bypass;
};

/// The answer as it lies at `place`, or would where that is null.
std::string AnswerFor(const simulator::Internet& internet, const char* place) {
  if (internet.proxy_answer) {
    return {internet.proxy_answer->data.begin(), internet.proxy_answer->data.end()};
  }
  const std::u16string name = unicode::Utf16FromUtf8(internet.proxy);
  const std::size_t name_size = (name.size() + 1) * sizeof(char16_t);
  ProxyInfo info{.access_type = internet.access_type};
  if (!name.empty() && place != nullptr) info.proxy = place + sizeof info;
  std::string bytes(sizeof info + name_size, '\0');
  std::memcpy(bytes.data(), &info, sizeof info);
  std::memcpy(bytes.data() + sizeof info, name.c_str(), name_size);
  return bytes;
}

}  // namespace

bool InternetQueryOptionW(std::uint32_t option, void* buffer, std::uint32_t& size) {
  Entered call("InternetQueryOptionW", option, static_cast<const void*>(buffer), size);
  if (call.Fails()) return Succeed(simulator::kInjectedError);
  if (call.fault == Fault::kEmpty) {
    size = 0;
    return true;
  }
  const auto& internet = call.session.machine.internet;
  if (!internet)
    return Succeed(simulator::Unscripted(call.session, "InternetQueryOptionW", "internet settings"));
  if (option != kProxyOption) return Succeed(kErrorNotSupported);
  if (internet->proxy_error != 0) return Succeed(internet->proxy_error);
  auto* place = static_cast<char*>(buffer);
  std::string answer = AnswerFor(*internet, place);
  const std::uint32_t room = size;
  size = static_cast<std::uint32_t>(answer.size());
  if (buffer == nullptr || room < answer.size()) return Succeed(kErrorInsufficientBuffer);
  if (call.fault == Fault::kUnterminated) answer.assign(room, 'A');
  std::ranges::copy(answer, place);
  return true;
}

int InternetGetConnectedState(std::uint32_t& flags, std::uint32_t reserved) {
  Entered call("InternetGetConnectedState", reserved);
  if (call.fault == Fault::kEmpty) return 1;
  if (call.fault != Fault::kNone) return Succeed(simulator::kInjectedError) ? 1 : 0;
  const auto& internet = call.session.machine.internet;
  if (!internet) {
    call.session.ReportUnscripted("InternetGetConnectedState", "internet settings");
    return 0;
  }
  flags = internet->connection_flags;
  return internet->connected ? 1 : 0;
}

}  // namespace velmora::os
