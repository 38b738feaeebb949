#include "platform/os/text.h"

#include <span>
#include <string_view>

#include "platform/os/last_error.h"
#include "platform/unicode.h"

namespace velmora::os {

int MultiByteToWideChar(unsigned int /*code_page*/, unsigned int /*flags*/, const char* narrow,
                        int narrow_size, wchar_t* wide, int wide_capacity) {
  if (narrow == nullptr || narrow_size <= 0 || wide == nullptr || wide_capacity < 0) {
    SetLastError(kErrorInvalidParameter);
    return 0;
  }
  const auto written = unicode::PutWideFromUtf8({narrow, static_cast<std::size_t>(narrow_size)},
                                                {wide, static_cast<std::size_t>(wide_capacity)});
  if (!written) {
    SetLastError(kErrorInsufficientBuffer);
    return 0;
  }
  return static_cast<int>(*written);
}

}  // namespace velmora::os
