#pragma once

namespace velmora::os {

/// The folder at which the tree of the system's hardware begins, for the operations that change something in
/// it: "/". The definition is weak, so that a test that links the library's objects puts a tree of its own in
/// its place, and no rescan reaches the machine that the test runs on.
const char* HardwareRoot() noexcept;

}  // namespace velmora::os
