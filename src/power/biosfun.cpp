#include "velmora/biosfun.h"

#include <cstdint>
#include <optional>
#include <source_location>
#include <string_view>

#include "platform/guard.h"
#include "platform/halquery.h"
#include "platform/logging.h"
#include "platform/os/last_error.h"
#include "platform/ostrine/wmi.h"
#include "power/firmware_command.h"

using velmora::LogDebug;
using velmora::Within;

namespace {

constexpr std::string_view kGetBiosSwitch = "CBiosFun::GetBiosSwitch";
constexpr std::string_view kGetItemCode = "CBiosFun::GetItemCodeByDeviceType";

/// The code by which the firmware knows the switch of a kind of device.
std::optional<unsigned char> ItemCode(stDEVICE_DRIVER_TYPE kind) {
  switch (kind) {
    case emDEVICE_AUDIO:
      return 0x24;
    case emDEVICE_WIRELESS:
      return 0x25;
    case emDEVICE_BLUETOOTH:
      return 0x26;
    case emDEVICE_FINGERPRINT:
      return 0x27;
    default:
      return std::nullopt;
  }
}

/// Whether the machine's processor is of a kind whose firmware has switches.
bool ProcessorHasSwitches() {
  constexpr std::uint32_t kIntel = 1;
  constexpr std::uint32_t kAmd = 2;
  const std::uint32_t kind = velmora::hal::ProcessorKind();
  return kind == kIntel || kind == kAmd;
}

/// Asks the firmware for one switch; false when it does not answer or says that it has none. The lines it
/// logs are those of `place`.
bool ReadSwitch(unsigned char item_code, bool& on, const std::source_location& place) {
  CWMI firmware(velmora::firmware::kNameSpace);
  velmora::firmware::Reply reply{};
  const bool is_answered = firmware.GetOutPutUInt(velmora::firmware::SwitchCommand(item_code), reply.data(),
                                                  static_cast<unsigned int>(reply.size()));
  const std::uint32_t error = velmora::os::LastError();
  if (!is_answered) {
    LogDebug([&](auto& line) { line << "GetOutPutUInt Fail, err=" << error << Within(kGetBiosSwitch); },
             place);
    return false;
  }
  LogDebug(
      [&](auto& line) {
        line << "pOUT bit0=" << reply[0] << ",bit1" << reply[1] << ", err=" << error
             << Within(kGetBiosSwitch);
      },
      place);
  if (!velmora::firmware::IsValid(reply)) return false;
  on = velmora::firmware::DecodeSwitch(reply);
  return true;
}

}  // namespace

CBiosFun::CBiosFun() = default;
CBiosFun::~CBiosFun() = default;

bool CBiosFun::GetBiosSwitch(bool& on, stDEVICE_DRIVER_TYPE kind) {
  on = true;
  if (!ProcessorHasSwitches()) return false;
  unsigned char item_code = 0;
  bool is_read = false;
  const bool is_supported = GetItemCodeByDeviceType(item_code, kind);
  // Logged here and not where the code is found, as every line of the operation names GetBiosSwitch as its
  // place.
  LogDebug([&](auto& line) {
    line << "enmType=" << kind << ",byItemcode=" << item_code << ", bRet=" << is_supported
         << Within(kGetItemCode);
  });
  if (is_supported) {
    const auto place = std::source_location::current();
    is_read = velmora::Answer(false, [&] { return ReadSwitch(item_code, on, place); });
  } else {
    LogDebug([&](auto& line) { line << "device not support" << Within(kGetBiosSwitch); });
  }
  LogDebug([&](auto& line) {
    line << "enmType=" << kind << ",byItemcode=" << item_code << Within(kGetBiosSwitch);
  });
  return is_read;
}

bool CBiosFun::GetItemCodeByDeviceType(unsigned char& code, stDEVICE_DRIVER_TYPE kind) {
  const auto found = ItemCode(kind);
  if (found) code = *found;
  return found.has_value();
}
