/// The calling thread's part in COM, shared by everything that needs it.
#pragma once

#include <windows.h>

#include <atomic>

#include "platform/ostrine/connection_part.h"

namespace ostrine {

/// Enters the thread into COM when made and leaves it when its last owner goes. A thread that is in an
/// apartment already stays there: COM counts the entries, and one that is in the other kind of apartment is
/// neither changed nor left.
class Apartment final : public ConnectionPart {
 public:
  /// A new one with one owner, or null for want of memory. `result` is COM's answer; the thread may use COM
  /// when `MayUseCom(result)`.
  static Apartment* Enter(HRESULT& result) noexcept;
  static bool MayUseCom(HRESULT result) noexcept { return SUCCEEDED(result) || result == RPC_E_CHANGED_MODE; }

  long QueryInterface(const GUID& interface_id, void** object) override;
  unsigned long AddRef() override;
  unsigned long Release() override;

 private:
  explicit Apartment(bool entered) noexcept : entered_(entered) {}
  ~Apartment();

  std::atomic<unsigned long> owners_{1};
  DWORD thread_ = GetCurrentThreadId();
  bool entered_;
};

}  // namespace ostrine
