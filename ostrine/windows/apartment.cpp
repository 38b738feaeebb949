#include "ostrine/windows/apartment.h"

#include <objbase.h>

#include <new>

namespace ostrine {

Apartment* Apartment::Enter(HRESULT& result) noexcept {
  result = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  auto* apartment = new (std::nothrow) Apartment(SUCCEEDED(result));
  if (apartment == nullptr) {
    if (SUCCEEDED(result)) CoUninitialize();
    result = E_OUTOFMEMORY;
  }
  return apartment;
}

Apartment::~Apartment() {
  // Only the thread that entered can leave; on another thread it would end that thread's own part in COM.
  if (entered_ && thread_ == GetCurrentThreadId()) CoUninitialize();
}

long Apartment::QueryInterface(const GUID&, void** object) {
  *object = nullptr;
  return E_NOINTERFACE;
}

unsigned long Apartment::AddRef() { return ++owners_; }

unsigned long Apartment::Release() {
  const unsigned long owners = --owners_;
  if (owners == 0) delete this;
  return owners;
}

}  // namespace ostrine
