/// The os contract about text and errors. The simulated system's narrow text is UTF-8.
#include "platform/os/text.h"

#include "platform/os/last_error.h"
#include "platform/unicode.h"
#include "simulator/session.h"

namespace velmora::os {
namespace {

thread_local std::uint32_t last_error = 0;

}  // namespace

std::uint32_t LastError() noexcept { return last_error; }
void SetLastError(std::uint32_t error) noexcept { last_error = error; }

int MultiByteToWideChar(unsigned int code_page, unsigned int flags, const char* narrow, int narrow_size,
                        wchar_t* wide, int wide_capacity) {
  const simulator::Entered call("MultiByteToWideChar", code_page, flags, narrow_size, wide_capacity);
  if (call.fault != simulator::Fault::kNone || narrow_size <= 0 || wide_capacity < 0) {
    SetLastError(kErrorInvalidParameter);
    return 0;
  }
  const auto written = unicode::PutWideFromUtf8({narrow, static_cast<std::size_t>(narrow_size)},
                                                {wide, static_cast<std::size_t>(wide_capacity)});
  if (!written) SetLastError(kErrorInsufficientBuffer);
  return static_cast<int>(written.value_or(0));
}

}  // namespace velmora::os
