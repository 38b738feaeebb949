/// Where the machine's files stand.
#pragma once

namespace ostrine {

/// The folder that every reader begins at: "/". The definition is weak, so that a program which links the
/// library's objects can put a tree of its own in its place.
const char* SystemRoot() noexcept;

}  // namespace ostrine
