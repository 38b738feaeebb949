#include "network/hosts_rule.h"

#include <algorithm>

namespace velmora::network {
namespace {

constexpr char kBlank = ' ';
constexpr char kCommentSign = '#';

}  // namespace

HostsRule::State HostsRule::After(State state, char c) noexcept {
  if (c == '\n') return State::kLeadingBlanks;
  if (state == State::kAfterCarriageReturn) return State::kChanged;
  switch (c) {
    case kBlank:
      return State::kLeadingBlanks;
    case '\r':
      return State::kAfterCarriageReturn;
    case kCommentSign:
      return State::kComment;
    default:
      return State::kChanged;
  }
}

bool HostsRule::Read(std::string_view bytes) noexcept {
  while (!bytes.empty() && state_ != State::kChanged) {
    if (state_ == State::kComment) {  // a comment may be long; nothing in it counts but its end
      bytes.remove_prefix(std::min(bytes.find('\n'), bytes.size()));
      if (bytes.empty()) break;
    }
    state_ = After(state_, bytes.front());
    bytes.remove_prefix(1);
  }
  return state_ == State::kChanged;
}

bool HostsRule::IsChanged() const noexcept {
  return state_ == State::kChanged || state_ == State::kAfterCarriageReturn;
}

}  // namespace velmora::network
