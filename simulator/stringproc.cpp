/// The text conversion of the hardware-abstraction contract. The simulated system's narrow text is UTF-8.
#include "platform/ostrine/stringproc.h"

#include "platform/unicode.h"
#include "simulator/session.h"
#include "simulator/spoiled.h"

std::wstring StringProc::StringToWString(const std::string& text) {
  const simulator::Entered call("StringToWString", text);
  if (call.fault != simulator::Fault::kNone) return simulator::SpoiledText(call.fault);
  return velmora::unicode::WideFromUtf8(text);
}
