#pragma once

#include <cstdint>
#include <string>

#include "platform/ostrine/connection_part.h"
#include "velmora/export.h"

#pragma GCC visibility push(default)

/// One connection to a WMI namespace. Made on the stack for one query and destroyed before the operation
/// returns.
///
/// An implementation owes: nothing thrown to the caller; COM initialised inside where it is needed, in
/// balance, whatever apartment the calling thread is in; a wait that ends, so that a hung service gives the
/// empty answer; a malformed query answered with the empty answer.
///
/// Copies share the connection of the object they were copied from; the last one to go releases it. All
/// objects of one connection belong to one thread.
class CWMI {
 public:
  /// Connects to `name_space`: "ROOT\CIMV2" for the Win32 classes, "ROOT\WMI" for the firmware's methods. An
  /// object whose connection failed, as for an unknown namespace, gives empty answers.
  explicit CWMI(std::wstring name_space);
  VELMORA_API CWMI(const CWMI& other);
  VELMORA_API CWMI& operator=(const CWMI& other);
  ~CWMI();

  /// `property` of the first object that `query` yields, as text; numbers and flags in their text form. Empty
  /// for no object, an empty property, or any failure.
  std::wstring SelectStr(const std::wstring& query, const std::wstring& property);

  /// The same for a property that is an unsigned number; 0 on any failure.
  unsigned int SelectUInt(const std::wstring& query, const std::wstring& property);

  /// Calls the firmware's method in "ROOT\WMI" with the word `input` and copies the method's output bytes, at
  /// most `output_size`, to `output`; callers pass 256 zeroed bytes. True on success; otherwise false, and
  /// the thread's last error tells why.
  bool GetOutPutUInt(std::uint64_t input, unsigned char* output, unsigned int output_size);

 private:
  ConnectionPart* connection_[3] = {nullptr, nullptr, nullptr};
  std::wstring name_space_;
  std::uint64_t state_ = 0;  ///< the implementation's own
};

#pragma GCC visibility pop

static_assert(sizeof(CWMI) == 3 * sizeof(void*) + sizeof(std::wstring) + sizeof(std::uint64_t));
