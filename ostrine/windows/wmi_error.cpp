#include "ostrine/windows/wmi_error.h"

namespace ostrine {

bool IsAbsent(HRESULT result) noexcept {
  switch (result) {
    case Wmi(WBEM_E_NOT_FOUND):
    case Wmi(WBEM_E_INVALID_CLASS):
    case Wmi(WBEM_E_INVALID_NAMESPACE):
    case Wmi(WBEM_E_INVALID_METHOD):
    case Wmi(WBEM_E_METHOD_NOT_IMPLEMENTED):
    case Wmi(WBEM_E_NOT_SUPPORTED):
    case Wmi(WBEM_E_PROVIDER_NOT_CAPABLE):
      return true;
    default:
      return false;
  }
}

DWORD WmiError(HRESULT result) noexcept {
  if (IsAbsent(result)) return ERROR_NOT_SUPPORTED;
  switch (result) {
    case Wmi(WBEM_E_ACCESS_DENIED):
      return ERROR_ACCESS_DENIED;
    case Wmi(WBEM_E_OUT_OF_MEMORY):
    case E_OUTOFMEMORY:
      return ERROR_NOT_ENOUGH_MEMORY;
    case Wmi(WBEM_E_INVALID_PARAMETER):
      return ERROR_INVALID_PARAMETER;
    case Wmi(WBEM_E_TIMED_OUT):
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
