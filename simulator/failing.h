/// How simulated calls report failure through the last error.
#pragma once

#include "platform/os/last_error.h"
#include "simulator/session.h"

namespace simulator {

/// The error that a call fails with when a test makes it fail.
inline constexpr Error kInjectedError = velmora::os::kErrorGeneralFailure;

/// Sets the last error and gives false, or true for no error.
inline bool Succeed(Error error) {
  if (error != 0) velmora::os::SetLastError(error);
  return error == 0;
}

/// Sets the last error and gives a null handle.
inline void* Refuse(Error error) {
  velmora::os::SetLastError(error);
  return nullptr;
}

/// Whether a test has an opening fail: with an error, or by giving nothing and leaving the last error alone.
inline bool IsRefused(const Entered& call) {
  if (call.Fails()) velmora::os::SetLastError(kInjectedError);
  return call.Fails() || call.fault == Fault::kEmpty;
}

/// Reports that `what` is not scripted, and gives the error with which the call then fails.
inline Error Unscripted(Session& session, std::string_view function, std::string_view what) {
  session.ReportUnscripted(function, what);
  return velmora::os::kErrorNotSupported;
}

}  // namespace simulator
