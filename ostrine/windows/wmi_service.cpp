#include "ostrine/windows/wmi_service.h"

#include <objbase.h>

#include <string_view>

#include "ostrine/windows/wmi_error.h"

namespace ostrine {
namespace {

/// Whether this is a namespace's name on this machine: WMI takes an empty one for its default namespace, and
/// one that begins with a backslash for another machine's.
bool IsLocalNamespace(std::wstring_view name) {
  return !name.empty() && name.front() != L'\\' && name.back() != L'\\' && name.front() != L'/' &&
         name.back() != L'/' && name.find(L'\0') == std::wstring_view::npos;
}

template <class Interface>
HRESULT Received(HRESULT result, const ComPointer<Interface>& object) {
  return SUCCEEDED(result) && !object ? Wmi(WBEM_E_FAILED) : result;
}

/// Lets WMI act as the calling user. Set on the one proxy, because how the whole process secures its calls is
/// the host's choice. An object in this very process has no proxy and needs none.
HRESULT Secure(IUnknown* proxy) {
  const HRESULT result =
      CoSetProxyBlanket(proxy, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                        RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
  return result == E_NOINTERFACE ? S_OK : result;
}

/// Waits for the object of a call that returned at once. A service that does not know such calls has given
/// the object already.
HRESULT AwaitObject(HRESULT result, ComPointer<IWbemCallResult>& call, const Deadline& deadline,
                    ComPointer<IWbemClassObject>& object) {
  if (SUCCEEDED(result) && call) {
    result = Secure(call.Get());
    if (SUCCEEDED(result)) result = call->GetResultObject(deadline.Left(), object.Receive());
    if (result == Wmi(WBEM_S_TIMEDOUT)) return Wmi(WBEM_E_TIMED_OUT);
  }
  return Received(result, object);
}

}  // namespace

long Deadline::Left() const noexcept {
  const ULONGLONG passed = GetTickCount64() - start_;
  return passed < kWait ? kWait - static_cast<long>(passed) : 0;
}

HRESULT ConnectWmi(const std::wstring& name_space, ComPointer<IWbemLocator>& locator,
                   ComPointer<IWbemServices>& services) {
  if (!IsLocalNamespace(name_space)) return Wmi(WBEM_E_INVALID_NAMESPACE);
  const ComText path(name_space);
  if (!path) return E_OUTOFMEMORY;
  HRESULT result = Received(CoCreateInstance(__uuidof(WbemLocator), nullptr, CLSCTX_INPROC_SERVER,
                                             __uuidof(IWbemLocator), locator.ReceiveAny()),
                            locator);
  if (FAILED(result)) return result;
  result =
      Received(locator->ConnectServer(path.Get(), nullptr, nullptr, nullptr, WBEM_FLAG_CONNECT_USE_MAX_WAIT,
                                      nullptr, nullptr, services.Receive()),
               services);
  return SUCCEEDED(result) ? Secure(services.Get()) : result;
}

HRESULT RunQuery(IWbemServices& services, const std::wstring& query, ComPointer<IEnumWbemClassObject>& rows) {
  const ComText language(L"WQL");
  const ComText text(query);
  if (!language || !text) return E_OUTOFMEMORY;
  const HRESULT result = Received(
      services.ExecQuery(language.Get(), text.Get(), WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY,
                         nullptr, rows.Receive()),
      rows);
  return SUCCEEDED(result) ? Secure(rows.Get()) : result;
}

HRESULT ListInstances(IWbemServices& services, const wchar_t* class_name,
                      ComPointer<IEnumWbemClassObject>& rows) {
  const ComText name(class_name);
  if (!name) return E_OUTOFMEMORY;
  const HRESULT result =
      Received(services.CreateInstanceEnum(name.Get(), WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY,
                                           nullptr, rows.Receive()),
               rows);
  return SUCCEEDED(result) ? Secure(rows.Get()) : result;
}

HRESULT NextObject(IEnumWbemClassObject& rows, const Deadline& deadline,
                   ComPointer<IWbemClassObject>& object) {
  ULONG count = 0;
  const HRESULT result = rows.Next(deadline.Left(), 1, object.Receive(), &count);
  if (result == Wmi(WBEM_S_TIMEDOUT)) return Wmi(WBEM_E_TIMED_OUT);
  if (result == Wmi(WBEM_S_FALSE)) return Wmi(WBEM_E_NOT_FOUND);
  return Received(result, object);
}

HRESULT GetClass(IWbemServices& services, const wchar_t* class_name, const Deadline& deadline,
                 ComPointer<IWbemClassObject>& definition) {
  const ComText name(class_name);
  if (!name) return E_OUTOFMEMORY;
  ComPointer<IWbemCallResult> call;
  const HRESULT result = services.GetObject(name.Get(), WBEM_FLAG_RETURN_IMMEDIATELY, nullptr,
                                            definition.Receive(), call.Receive());
  return AwaitObject(result, call, deadline, definition);
}

HRESULT CallMethod(IWbemServices& services, const ComText& path, const wchar_t* method,
                   IWbemClassObject& arguments, const Deadline& deadline,
                   ComPointer<IWbemClassObject>& result_object) {
  const ComText name(method);
  if (!path || !name) return E_OUTOFMEMORY;
  ComPointer<IWbemCallResult> call;
  const HRESULT result = services.ExecMethod(path.Get(), name.Get(), WBEM_FLAG_RETURN_IMMEDIATELY, nullptr,
                                             &arguments, result_object.Receive(), call.Receive());
  return AwaitObject(result, call, deadline, result_object);
}

}  // namespace ostrine
