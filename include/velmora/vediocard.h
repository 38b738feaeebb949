#pragma once

#include <string>

#include "velmora/export.h"

/// The machine's video cards, the internal (integrated) and the independent (discrete) one, and its display.
///
/// Source: the hardware-abstraction library, device class 6. Every call asks again, so resolution and refresh
/// rate follow display changes; asking never wakes a card that sleeps.
/// Names: each card's values have two names. "Used" is another name of "Internal", "UnUsed" of "Independent";
/// both always answer the same. (The mixed spellings Video and Vedio are part of the interface.)
/// Failure: a text is empty, a number 0, as for a card that the machine does not have; nothing throws,
/// nothing is logged. Threads: an object is used by one thread at a time; separate objects are independent.
/// Copies: each object owns a card table of its own, so a copy takes one anew.
class VELMORA_API CVediocard {
 public:
  /// Takes the card table.
  CVediocard();
  CVediocard(const CVediocard& other);
  CVediocard& operator=(const CVediocard& other);
  ~CVediocard();

  /// Number of video cards; virtual adapters do not count.
  unsigned long GetVideoCardNumber();

  /// Name of the card, such as "Intel(R) Iris(R) Xe Graphics".
  std::wstring GetInternalVideoCardName();
  std::wstring GetUsedVideoCardName();
  std::wstring GetIndependentVideoCardName();
  std::wstring GetUnUsedVideoCardName();

  /// Status in one word: "OK" for a card that works, "Error" for one with an error code.
  std::wstring GetInternalVideoCardStatus();
  std::wstring GetUsedVideoCardStatus();
  std::wstring GetIndependentVideoCardStatus();
  std::wstring GetUnUsedVideoCardStatus();

  /// Version of the driver, such as "30.0.101.1404"; on Linux that of the kernel module or the kernel.
  std::wstring GetInternalVideoCardDriverVersion();
  std::wstring GetUsedVideoCardDriverVersion();
  std::wstring GetIndependentVideoCardDriverVersion();
  std::wstring GetUnUsedVideoCardDriverVersion();

  /// Date of the driver as year-month-day, such as "2022-02-14".
  std::wstring GetInternalVideoCardDriverDate();
  std::wstring GetUsedVideoCardDriverDate();
  std::wstring GetIndependentVideoCardDriverDate();
  std::wstring GetUnUsedVideoCardDriverDate();

  /// The card's own memory in MiB.
  unsigned long GetInternalVedioCardMemorySize();
  unsigned long GetUsedVedioCardMemorySize();
  unsigned long GetIndependentVedioCardMemorySize();
  unsigned long GetUnUsedVedioCardMemorySize();

  /// The card's problem code; 0 when it works, and also when it could not be asked.
  unsigned long GetInternalVedioCardErrorCode();
  unsigned long GetIndependentVedioCardErrorCode();

  /// Current mode of the display, such as "1920 x 1080".
  std::wstring GetDisplayResolution();

  /// Its width and height in pixels.
  unsigned long GetHorizontalResolution();
  unsigned long GetVerticalResolution();

  /// Its refresh rate in Hz.
  unsigned long GetRefreshRate();

  /// Name of the monitor as the monitor itself gives it.
  std::wstring GetMonitorCaption();

  /// Colour depth in bits per pixel.
  unsigned long GetBitPerPixel();

 private:
  void* card_table_ = nullptr;
};
