#include "ostrine/windows/wmi_error.h"

#include <wbemcli.h>

namespace ostrine {

bool IsAbsent(HRESULT result) noexcept {
  switch (static_cast<unsigned long>(result)) {
    case static_cast<unsigned long>(WBEM_E_NOT_FOUND):
    case static_cast<unsigned long>(WBEM_E_INVALID_CLASS):
    case static_cast<unsigned long>(WBEM_E_INVALID_NAMESPACE):
    case static_cast<unsigned long>(WBEM_E_INVALID_METHOD):
    case static_cast<unsigned long>(WBEM_E_METHOD_NOT_IMPLEMENTED):
    case static_cast<unsigned long>(WBEM_E_NOT_SUPPORTED):
    case static_cast<unsigned long>(WBEM_E_PROVIDER_NOT_CAPABLE):
      return true;
    default:
      return false;
  }
}

DWORD WmiError(HRESULT result) noexcept {
  if (IsAbsent(result)) return ERROR_NOT_SUPPORTED;
  switch (static_cast<unsigned long>(result)) {
    case static_cast<unsigned long>(WBEM_E_ACCESS_DENIED):
      return ERROR_ACCESS_DENIED;
    case static_cast<unsigned long>(WBEM_E_OUT_OF_MEMORY):
    case static_cast<unsigned long>(E_OUTOFMEMORY):
      return ERROR_NOT_ENOUGH_MEMORY;
    case static_cast<unsigned long>(WBEM_E_INVALID_PARAMETER):
      return ERROR_INVALID_PARAMETER;
    case static_cast<unsigned long>(WBEM_E_TIMED_OUT):
      return ERROR_TIMEOUT;
    default:
      break;
  }
  if (FAILED(result) && HRESULT_FACILITY(result) == FACILITY_WIN32 && HRESULT_CODE(result) != 0) {
    return static_cast<DWORD>(HRESULT_CODE(result));
  }
  return ERROR_GEN_FAILURE;
}

}  // namespace ostrine
