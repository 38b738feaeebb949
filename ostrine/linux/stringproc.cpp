#include "platform/ostrine/stringproc.h"

#include "ostrine/linux/guard.h"
#include "platform/unicode.h"

// Narrow text is UTF-8 here, whatever the process's locale says.
std::wstring StringProc::StringToWString(const std::string& text) {
  return ostrine::Guarded(std::wstring(), [&] { return velmora::unicode::WideFromUtf8(text); });
}
