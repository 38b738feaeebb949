#pragma once

#include "platform/os/com.h"
#include "platform/owned.h"

namespace velmora::network {

/// An interface of a COM object, given back once.
using ComPointer = Owned<os::ComObject, os::ComRelease>;

/// Takes back what initialising COM on the thread did, whatever came of it. Made right after, and before any
/// object.
class ComScope {
 public:
  explicit ComScope(os::ComResult result) : result_(result) {}
  ComScope(const ComScope&) = delete;
  ComScope& operator=(const ComScope&) = delete;
  ~ComScope() { os::CoUninitialize(); }

  os::ComResult Result() const { return result_; }

 private:
  os::ComResult result_;
};

}  // namespace velmora::network
