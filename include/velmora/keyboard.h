#pragma once

#include <string>

#include "velmora/export.h"

/// The machine's keyboard.
///
/// Source: the system's device information, setup class Keyboard, in which built-in and external keyboards
/// stand side by side. Every call looks again and nothing is kept. Failure: the text is empty; nothing
/// throws. Threads: an object is used by one thread at a time; separate objects are independent. Copies: an
/// object holds nothing, so a copy is simply another object.
class VELMORA_API CKeyBoard {
 public:
  CKeyBoard();
  ~CKeyBoard();

  CKeyBoard(const CKeyBoard&) = default;
  CKeyBoard& operator=(const CKeyBoard&) = default;

  /// Display name of the keyboard: of the first built-in one (whose hardware ID holds "ACPI\" in either
  /// letter case) that has a display name, else of the first keyboard of all, and then also an empty one.
  /// Writes a debug line.
  std::wstring GetKeyBoardName();
};
