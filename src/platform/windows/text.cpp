#include "platform/os/text.h"

#include <windows.h>

namespace velmora::os {

int MultiByteToWideChar(unsigned int code_page, unsigned int flags, const char* narrow, int narrow_size,
                        wchar_t* wide, int wide_capacity) {
  return ::MultiByteToWideChar(code_page, flags, narrow, narrow_size, wide, wide_capacity);
}

}  // namespace velmora::os
