/// What Velmora requires of the operating system about text.
#pragma once

namespace velmora::os {

inline constexpr unsigned int kNarrowCodePage = 0;  ///< the system's own narrow code page

/// Converts `narrow_size` bytes of `narrow` from `code_page` into `wide`, which has room for `wide_capacity`
/// characters, and returns the number of characters written. No terminating zero is added unless `narrow` has
/// one.
///
/// An implementation owes: bytes that the code page cannot read become its substitutes (U+FFFD for UTF-8) and
/// are no error; 0 with the last error 122 when `wide` is too small, 0 with the last error 87 when
/// `narrow_size` is not above 0. Without a Windows code page the system's narrow text is UTF-8.
int MultiByteToWideChar(unsigned int code_page, unsigned int flags, const char* narrow, int narrow_size,
                        wchar_t* wide, int wide_capacity);

}  // namespace velmora::os
