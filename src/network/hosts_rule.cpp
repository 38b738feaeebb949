#include "network/hosts_rule.h"

namespace velmora::network {
namespace {

constexpr char kBlank = ' ';
constexpr char kCommentSign = '#';

}  // namespace

bool HostsRule::Read(std::string_view bytes) noexcept {
  while (!bytes.empty() && state_ != State::kChanged) {
    if (state_ == State::kComment) {  // a comment may be long; nothing in it counts but its end
      const auto end = bytes.find('\n');
      if (end == std::string_view::npos) return false;
      state_ = State::kLeadingBlanks;
      bytes.remove_prefix(end + 1);
      continue;
    }
    const char c = bytes.front();
    bytes.remove_prefix(1);
    if (c == '\n') {
      state_ = State::kLeadingBlanks;
    } else if (state_ == State::kAfterCarriageReturn) {
      state_ = State::kChanged;
    } else if (c == '\r') {
      state_ = State::kAfterCarriageReturn;
    } else if (c == kCommentSign) {
      state_ = State::kComment;
    } else if (c != kBlank) {
      state_ = State::kChanged;
    }
  }
  return state_ == State::kChanged;
}

bool HostsRule::IsChanged() const noexcept {
  return state_ == State::kChanged || state_ == State::kAfterCarriageReturn;
}

}  // namespace velmora::network
