/// The steps of talking to WMI. Every wait ends, every result is looked at, and a success that brings nothing
/// counts as the failure WBEM_E_FAILED.
#pragma once

#include <windows.h>

#include <wbemcli.h>

#include <string>

#include "ostrine/windows/com_pointer.h"

namespace ostrine {

/// The moment up to which one operation may wait.
class Deadline {
 public:
  /// What an operation may take in all. The slowest tables, of signed drivers, take some ten seconds.
  static constexpr long kWait = 30'000;

  /// Milliseconds that are left, from kWait down to 0.
  long Left() const noexcept;

 private:
  ULONGLONG start_ = GetTickCount64();
};

/// Connects to `name_space`; up to the two minutes that WMI allows for it.
HRESULT ConnectWmi(const std::wstring& name_space, ComPointer<IWbemLocator>& locator,
                   ComPointer<IWbemServices>& services);

/// The rows of a query, and the instances of a class, taken one by one.
HRESULT RunQuery(IWbemServices& services, const std::wstring& query, ComPointer<IEnumWbemClassObject>& rows);
HRESULT ListInstances(IWbemServices& services, const wchar_t* class_name,
                      ComPointer<IEnumWbemClassObject>& rows);

/// The next object; WBEM_E_NOT_FOUND behind the last one.
HRESULT NextObject(IEnumWbemClassObject& rows, const Deadline& deadline,
                   ComPointer<IWbemClassObject>& object);

/// The definition of a class.
HRESULT GetClass(IWbemServices& services, const wchar_t* class_name, const Deadline& deadline,
                 ComPointer<IWbemClassObject>& definition);

/// Calls `method` of the object `path`; `result` receives what it puts out.
HRESULT CallMethod(IWbemServices& services, const ComText& path, const wchar_t* method,
                   IWbemClassObject& arguments, const Deadline& deadline,
                   ComPointer<IWbemClassObject>& result);

}  // namespace ostrine
