#include "platform/ostrine/wmi.h"

#include <windows.h>

#include <wbemcli.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "ostrine/common/wql.h"
#include "ostrine/common/wql_text.h"
#include "ostrine/windows/apartment.h"
#include "ostrine/windows/com_pointer.h"
#include "ostrine/windows/firmware_call.h"
#include "ostrine/windows/guard.h"
#include "ostrine/windows/wmi_error.h"
#include "ostrine/windows/wmi_service.h"
#include "ostrine/windows/wmi_value.h"

// The connection's words hold the thread's part in COM, the namespace and the locator, in this order; the
// last word of state is the result of connecting.

namespace {

enum Word { kApartment, kServices, kLocator };

/// A COM interface begins with the same three functions as ConnectionPart, so it may stand in for one.
ConnectionPart* AsPart(IUnknown* object) { return reinterpret_cast<ConnectionPart*>(object); }

IWbemServices* Services(ConnectionPart* word) { return reinterpret_cast<IWbemServices*>(word); }

/// Whether the query may be sent: only what is certainly one, and asks for `property`, for not every service
/// survives another text. A zero would end the text early, within a literal as a rule.
bool MayBeSent(const std::wstring& text, const std::wstring& property) {
  constexpr std::size_t kLongestQuery = 65536;
  if (text.size() > kLongestQuery || text.find(L'\0') != std::wstring::npos) return false;
  const auto query = ostrine::ParseWql(text);
  return query && ostrine::EqualIgnoringCase(query->property, property);
}

/// `property` of the first row of `query`; false if there is none.
bool Select(IWbemServices* services, const std::wstring& query, const std::wstring& property,
            ostrine::ComValue& value, CIMTYPE& type) {
  if (services == nullptr || !MayBeSent(query, property)) return false;
  const ostrine::Deadline deadline;
  ostrine::ComPointer<IEnumWbemClassObject> rows;
  ostrine::ComPointer<IWbemClassObject> row;
  HRESULT result = ostrine::RunQuery(*services, query, rows);
  if (SUCCEEDED(result)) result = ostrine::NextObject(*rows.Get(), deadline, row);
  if (SUCCEEDED(result)) result = row->Get(property.c_str(), 0, value.Receive(), &type, nullptr);
  return SUCCEEDED(result);
}

/// The firmware's reply, from its method or from what else the system knows.
HRESULT AskFirmware(IWbemServices& services, std::uint64_t input, std::vector<std::uint8_t>& reply) {
  const HRESULT result = ostrine::CallFirmware(services, input, reply);
  return ostrine::IsAbsent(result) ? ostrine::AnswerFromThermalZones(services, input, reply) : result;
}

}  // namespace

CWMI::CWMI(std::wstring name_space) : name_space_(std::move(name_space)) {
  HRESULT result = S_OK;
  connection_[kApartment] = ostrine::Apartment::Enter(result);
  if (connection_[kApartment] != nullptr && ostrine::Apartment::MayUseCom(result)) {
    ostrine::ComPointer<IWbemLocator> locator;
    ostrine::ComPointer<IWbemServices> services;
    result = ostrine::ConnectWmi(name_space_, locator, services);
    if (SUCCEEDED(result)) {
      connection_[kServices] = AsPart(services.Detach());
      connection_[kLocator] = AsPart(locator.Detach());
    }
  }
  state_ = static_cast<std::uint32_t>(result);
}

CWMI::~CWMI() {
  // The objects go before the thread leaves COM.
  for (const Word word : {kServices, kLocator, kApartment}) {
    if (connection_[word] != nullptr) connection_[word]->Release();
  }
}

std::wstring CWMI::SelectStr(const std::wstring& query, const std::wstring& property) {
  return ostrine::Guarded(std::wstring(), [&] {
    ostrine::ComValue value;
    CIMTYPE type = CIM_EMPTY;
    if (!Select(Services(connection_[kServices]), query, property, value, type)) return std::wstring();
    return ostrine::WmiText(value.Get(), type);
  });
}

unsigned int CWMI::SelectUInt(const std::wstring& query, const std::wstring& property) {
  return ostrine::Guarded(0u, [&] {
    ostrine::ComValue value;
    CIMTYPE type = CIM_EMPTY;
    if (!Select(Services(connection_[kServices]), query, property, value, type)) return 0u;
    return ostrine::WmiNumber(value.Get(), type);
  });
}

bool CWMI::GetOutPutUInt(std::uint64_t input, unsigned char* output, unsigned int output_size) {
  IWbemServices* services = Services(connection_[kServices]);
  const DWORD error = ostrine::Guarded(static_cast<DWORD>(ERROR_NOT_ENOUGH_MEMORY), [&]() -> DWORD {
    if (output == nullptr && output_size != 0) return ERROR_INVALID_PARAMETER;
    if (services == nullptr) return ostrine::WmiError(static_cast<HRESULT>(state_));
    std::vector<std::uint8_t> reply;
    const HRESULT result = AskFirmware(*services, input, reply);
    if (FAILED(result)) return ostrine::WmiError(result);
    std::copy_n(reply.begin(), std::min<std::size_t>(reply.size(), output_size), output);
    return ERROR_SUCCESS;
  });
  if (error != ERROR_SUCCESS) SetLastError(error);
  return error == ERROR_SUCCESS;
}
