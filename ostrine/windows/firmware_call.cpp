#include "ostrine/windows/firmware_call.h"

#include <string>

#include "ostrine/common/firmware_reply.h"
#include "ostrine/windows/com_pointer.h"
#include "ostrine/windows/firmware_method.h"
#include "ostrine/windows/thermal_zone.h"
#include "ostrine/windows/wmi_error.h"
#include "ostrine/windows/wmi_service.h"
#include "ostrine/windows/wmi_value.h"

namespace ostrine {
namespace {

namespace method = firmware_method;

constexpr HRESULT kInvalidData = HRESULT_FROM_WIN32(ERROR_INVALID_DATA);

/// The method's arguments for the command word, made after the class's own description of them.
HRESULT MakeArguments(IWbemClassObject& definition, std::uint64_t input,
                      ComPointer<IWbemClassObject>& arguments) {
  ComPointer<IWbemClassObject> description;
  HRESULT result = definition.GetMethod(method::kMethod, 0, description.Receive(), nullptr);
  if (FAILED(result)) return result;
  if (!description) return Wmi(WBEM_E_INVALID_METHOD);  // there is a method of this name, without arguments
  result = description->SpawnInstance(0, arguments.Receive());
  if (FAILED(result)) return result;
  if (!arguments) return Wmi(WBEM_E_FAILED);

  const ComText digits(std::to_wstring(input));  // as WMI passes every 64-bit number
  if (!digits) return E_OUTOFMEMORY;
  VARIANT word{};  // owns nothing: the text is lent
  word.vt = VT_BSTR;
  word.bstrVal = digits.Get();
  return arguments->Put(method::kInput, 0, &word, 0);
}

/// The path of the first instance of the firmware's class.
HRESULT FindInstance(IWbemServices& services, const Deadline& deadline, std::wstring& path) {
  ComPointer<IEnumWbemClassObject> instances;
  ComPointer<IWbemClassObject> instance;
  HRESULT result = ListInstances(services, method::kClass, instances);
  if (SUCCEEDED(result)) result = NextObject(*instances.Get(), deadline, instance);
  if (FAILED(result)) return result;
  ComValue value;
  CIMTYPE type = CIM_EMPTY;
  result = instance->Get(L"__RELPATH", 0, value.Receive(), &type, nullptr);
  if (FAILED(result)) return result;
  path = WmiText(value.Get(), type);
  return path.empty() ? Wmi(WBEM_E_NOT_FOUND) : S_OK;
}

/// The zone with this number, in WMI's order.
HRESULT FindZone(IWbemServices& services, std::uint64_t number, ComPointer<IWbemClassObject>& zone) {
  const Deadline deadline;
  ComPointer<IEnumWbemClassObject> zones;
  HRESULT result = ListInstances(services, method::kThermalZones, zones);
  for (std::uint64_t i = 0; SUCCEEDED(result) && i <= number; ++i) {
    result = NextObject(*zones.Get(), deadline, zone);
  }
  return result;
}

}  // namespace

HRESULT CallFirmware(IWbemServices& services, std::uint64_t input, std::vector<std::uint8_t>& reply) {
  const Deadline deadline;
  // The class is looked up first, although the call would tell its absence too: a service that has no such
  // class at all need not survive a call to it.
  ComPointer<IWbemClassObject> definition;
  ComPointer<IWbemClassObject> arguments;
  std::wstring path;
  HRESULT result = GetClass(services, method::kClass, deadline, definition);
  if (SUCCEEDED(result)) result = MakeArguments(*definition.Get(), input, arguments);
  if (SUCCEEDED(result)) result = FindInstance(services, deadline, path);
  if (FAILED(result)) return result;

  ComPointer<IWbemClassObject> answer;
  result = CallMethod(services, ComText(path), method::kMethod, *arguments.Get(), deadline, answer);
  if (FAILED(result)) return result;
  ComValue bytes;
  result = answer->Get(method::kOutput, 0, bytes.Receive(), nullptr, nullptr);
  if (FAILED(result)) return result;
  reply = WmiBytes(bytes.Get());
  return reply.empty() ? kInvalidData : S_OK;
}

HRESULT AnswerFromThermalZones(IWbemServices& services, std::uint64_t input,
                               std::vector<std::uint8_t>& reply) {
  constexpr std::uint64_t kMostZones = 64;
  const FirmwareCommand command = SplitCommand(input);
  if (command.function != FirmwareFunction::kTemperature || command.selector >= kMostZones) {
    return Wmi(WBEM_E_NOT_SUPPORTED);
  }
  ComPointer<IWbemClassObject> zone;
  HRESULT result = FindZone(services, command.selector, zone);
  if (FAILED(result)) return result;
  ComValue value;
  CIMTYPE type = CIM_EMPTY;
  result = zone->Get(method::kZoneTemperature, 0, value.Receive(), &type, nullptr);
  if (FAILED(result)) return result;
  const auto temperature = ThermalZoneTemperature(WmiNumber(value.Get(), type));
  const auto bytes = temperature ? TemperatureReply(*temperature) : std::nullopt;
  if (!bytes) return kInvalidData;
  reply.assign(bytes->begin(), bytes->end());
  return S_OK;
}

}  // namespace ostrine
