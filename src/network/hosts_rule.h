#pragma once

#include <string_view>

namespace velmora::network {

/// Tells whether a hosts file has been changed, reading it piece by piece: whether some line has, after its
/// leading blanks, a first character other than "#". Only the space is a blank, so a tab counts as such a
/// character. Lines end in a line feed, with a carriage return before it or not.
class HostsRule {
 public:
  /// Reads the next bytes of the file. True as soon as the file is known to be changed, and from then on.
  bool Read(std::string_view bytes) noexcept;

  /// The answer at the end of the file.
  bool IsChanged() const noexcept;

 private:
  enum class State {
    kLeadingBlanks,
    kAfterCarriageReturn,  ///< which is part of the line's end, or else the first character
    kComment,
    kChanged,
  };

  /// What comes after `c` in a line of which no comment has begun.
  static State After(State state, char c) noexcept;

  State state_ = State::kLeadingBlanks;
};

}  // namespace velmora::network
