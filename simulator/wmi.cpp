/// CWMI over a machine's tables and its firmware.
#include "platform/ostrine/wmi.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "ostrine/common/wql.h"
#include "platform/case_folding.h"
#include "platform/os/last_error.h"
#include "simulator/session.h"
#include "simulator/spoiled.h"
#include "simulator/wmi_tables.h"

using simulator::Entered;
using simulator::Fault;
using simulator::Hex;

namespace {

constexpr std::wstring_view kCimNamespace = L"ROOT\\CIMV2";
constexpr std::wstring_view kFirmwareNamespace = L"ROOT\\WMI";

/// The first value that a query on this connection yields; null for no object.
ostrine::WqlValue Select(Entered& call, const char* function, bool is_connected,
                         const std::wstring& name_space, const std::wstring& query,
                         const std::wstring& property) {
  if (!is_connected || !velmora::EqualIgnoringCase(name_space, kCimNamespace)) return {};
  auto parsed = ostrine::ParseWql(query);
  if (!parsed) return {};
  // An object has the properties that the query selected and no others.
  if (!velmora::EqualIgnoringCase(parsed->property, property)) return {};
  const auto table = simulator::MakeWmiTable(call.session.machine, parsed->class_name);
  if (!table) {
    call.session.ReportUnscripted(function, "WMI class " + simulator::Shown(parsed->class_name));
    return {};
  }
  return ostrine::SelectFirst(*parsed, simulator::VisitRows(*table));
}

/// Copies what the firmware answers; the error when it does not.
simulator::Error AskFirmware(Entered& call, std::uint64_t input, std::span<unsigned char> output) {
  const auto& firmware = call.session.machine.firmware;
  if (!firmware) {
    call.session.ReportUnscripted("GetOutPutUInt", "firmware");
    return velmora::os::kErrorNotSupported;
  }
  const auto found = std::ranges::find(*firmware, input, &simulator::FirmwareAnswer::input);
  if (found == firmware->end()) return velmora::os::kErrorNotSupported;
  if (found->error == 0) {
    const std::size_t size = std::min(output.size(), found->output.data.size());
    std::copy_n(found->output.data.begin(), size, output.begin());
  }
  return found->error;
}

}  // namespace

CWMI::CWMI(std::wstring name_space) : name_space_(std::move(name_space)) {
  Entered call("CWMI", name_space_);
  if (call.fault == Fault::kFail || call.fault == Fault::kEmpty) return;
  if (call.session.machine.wmi && call.session.machine.wmi->broken) return;
  const bool is_known = velmora::EqualIgnoringCase(name_space_, kCimNamespace) ||
                        velmora::EqualIgnoringCase(name_space_, kFirmwareNamespace);
  if (!is_known) return;
  // As the real ones: a locator, the services behind it, and no third part.
  for (int i = 0; i < 2; ++i) connection_[i] = simulator::OpenConnectionPart(call.session);
}

CWMI::~CWMI() {
  for (ConnectionPart* part : connection_) {
    if (part != nullptr) part->Release();
  }
}

std::wstring CWMI::SelectStr(const std::wstring& query, const std::wstring& property) {
  Entered call("SelectStr", query, property);
  if (call.fault != Fault::kNone) return simulator::SpoiledText(call.fault);
  return ostrine::TextOf(Select(call, "SelectStr", connection_[0] != nullptr, name_space_, query, property));
}

unsigned int CWMI::SelectUInt(const std::wstring& query, const std::wstring& property) {
  Entered call("SelectUInt", query, property);
  if (call.fault != Fault::kNone) return simulator::SpoiledNumber(call.fault);
  return ostrine::NumberOf(
      Select(call, "SelectUInt", connection_[0] != nullptr, name_space_, query, property));
}

bool CWMI::GetOutPutUInt(std::uint64_t input, unsigned char* output, unsigned int output_size) {
  Entered call("GetOutPutUInt", Hex{input}, output_size);
  const std::span bytes(output, output_size);
  if (call.fault == Fault::kUnterminated) std::ranges::fill(bytes, static_cast<unsigned char>('A'));
  simulator::Error error = call.Fails() ? velmora::os::kErrorGeneralFailure : 0;
  if (call.fault == Fault::kNone) {
    const bool can_ask =
        connection_[0] != nullptr && velmora::EqualIgnoringCase(name_space_, kFirmwareNamespace);
    error = can_ask ? AskFirmware(call, input, bytes) : velmora::os::kErrorNotSupported;
  }
  if (error != 0) velmora::os::SetLastError(error);
  return error == 0;
}
