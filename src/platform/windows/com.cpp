#include "platform/os/com.h"

#include <windows.h>

#include <objbase.h>

#include <clocale>

namespace velmora::os {
namespace {

static_assert(kComOk == S_OK && kComChangedMode == RPC_E_CHANGED_MODE && kComNotImplemented == E_NOTIMPL &&
              kComNoInterface == E_NOINTERFACE && kComFail == E_FAIL &&
              kComClassNotRegistered == REGDB_E_CLASSNOTREG);

/// Enters the thread once more into the apartment in which it is already. COM only counts such entries, so
/// the CoUninitialize that follows a failed initialise takes back this one, and not one of the host's.
/// Nothing has to be remembered for it. A thread that is in no apartment of its own needs none: there
/// CoUninitialize finds nothing to take back.
void EnterOnceMore() {
  APTTYPE type{};
  APTTYPEQUALIFIER qualifier{};
  if (FAILED(CoGetApartmentType(&type, &qualifier))) return;
  if (type == APTTYPE_STA || type == APTTYPE_MAINSTA) {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  } else if (type == APTTYPE_MTA && qualifier != APTTYPEQUALIFIER_IMPLICIT_MTA) {
    ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  }
}

IUnknown* System(ComObject object) { return static_cast<IUnknown*>(object); }

}  // namespace

ComResult CoInitialize() { return CoInitializeEx(COINIT_APARTMENTTHREADED); }

ComResult CoInitializeEx(std::uint32_t flags) {
  const HRESULT result = ::CoInitializeEx(nullptr, flags);
  if (FAILED(result)) EnterOnceMore();
  return result;
}

void CoUninitialize() { ::CoUninitialize(); }

ComResult CoCreateInstance(const GUID& class_id, std::uint32_t context, const GUID& interface_id,
                           ComObject& object) {
  object = nullptr;
  return ::CoCreateInstance(class_id, nullptr, context, interface_id, &object);
}

ComResult ComQueryInterface(ComObject object, const GUID& interface_id, ComObject& result) {
  result = nullptr;
  return System(object)->QueryInterface(interface_id, &result);
}

void ComRelease(ComObject object) {
  if (object != nullptr) System(object)->Release();
}

void SetProcessLocale(const wchar_t* name) { _wsetlocale(LC_ALL, name); }

}  // namespace velmora::os
