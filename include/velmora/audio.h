#pragma once

#include <cstdint>
#include <string>

#include "velmora/export.h"

/// Where the driver of the audio device comes from.
enum enmDRIVER_SOURCE_INFO : std::int32_t {
  /// The INF file is there and has a name that the system gives to packages it did not ship, but could not be
  /// opened (or memory ran out while it was looked at).
  DRIVER_SOURCE_OPEN_FAILED = -1,
  DRIVER_SOURCE_MAKER = 0,         ///< a package of the machine's maker, or one that names no Realtek models
  DRIVER_SOURCE_OTHER_VENDOR = 1,  ///< a package for the same codec that is not the machine maker's
  DRIVER_SOURCE_INBOX = 2,         ///< the driver that ships with the system
  DRIVER_SOURCE_NO_INF = 3,        ///< no audio device, no INF name, or no such INF file
};

/// The machine's audio device: identity, state, and where its driver comes from.
///
/// The device is the first one of the setup class Media whose hardware ID holds Realtek's vendor number,
/// "VEN_10EC"; on a machine whose processor kind is CPU_TYPE_ARM the first one of the class, whatever it is.
///
/// Source: the system's device information; the processor's kind and the audio device class (5) of the
/// hardware-abstraction library; INF files below "C:\Windows\INF\". Every call looks the device up again and
/// nothing is kept. Failure: a text is empty, a flag false, nothing throws; other failure values are told
/// with the operation. By index the library serves exactly one device: index 0 is that one. Log: two
/// operations write debug lines, which is told with them. Threads: an object is used by one thread at a time;
/// separate objects are independent. Copies: each object owns a block of its own from the
/// hardware-abstraction library, so a copy takes one anew.
class VELMORA_API CAudioCard {
 public:
  /// Opens the audio device class and reads how many devices it has.
  CAudioCard();
  CAudioCard(const CAudioCard& other);
  CAudioCard& operator=(const CAudioCard& other);
  ~CAudioCard();

  /// Writes the hardware ID of the audio device, such as
  /// "HDAUDIO\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA22D6&REV_1000", to `hardware_id` and returns true. Without
  /// a device false is returned and `hardware_id` is untouched.
  bool GetAudioHardId(std::wstring& hardware_id);

  /// 1 when there is an audio device, else 0.
  unsigned int GetAudioCardNumbers();

  /// Name of the device, such as "Realtek(R) Audio".
  std::wstring GetAudioCardName();
  std::wstring GetAudioCardNameByIndex(int index);

  /// Manufacturer of the device as its driver gives it.
  std::wstring GetAudioCardManufacturer();
  std::wstring GetAudioCardManufacturerByIndex(int index);

  /// Version of the driver, such as "6.0.9257.1"; on Linux that of the kernel module or the kernel.
  std::wstring GetDriverVersion();
  std::wstring GetDriverVersionByIndex(int index);

  /// The device's problem code: 0 when it works, 22 when it is disabled. 0xFFFFFFFF without a device. By
  /// index, 0 for any index but 0.
  unsigned int GetAudioErrorCode();
  unsigned int GetAudioErrorCodeByIndex(int index);

  /// Writes the name of the driver's INF file, such as "oem8.inf" (empty where drivers have none, as on
  /// Linux), to `inf_name` and returns true. Without a device false is returned and `inf_name` is untouched.
  /// Writes a debug line.
  bool GetAudioDriverInf(std::wstring& inf_name);

  /// Where the driver comes from. For DRIVER_SOURCE_OTHER_VENDOR the line of the INF file that gives it away
  /// is written to `fail_line`, as it stands there up to its line end, in the file's own bytes and at most
  /// 65536 of them; for any other result `fail_line` is untouched.
  ///
  /// An INF file whose name holds "oem", in either letter case, is read: in its first unbroken run of lines
  /// that hold "AUDIO\FUNC_01&VEN_10EC" each line must hold "SUBSYS_7B2D", the mark of the machine's maker.
  /// Later runs do not count. Bytes are compared, so a UTF-16 file has no such lines. An INF name that is not
  /// the bare name of a file stands for no file. Writes a debug line.
  enmDRIVER_SOURCE_INFO Check3rdAudioDriver(std::string& fail_line);

 private:
  void* audio_block_ = nullptr;
  std::uint32_t audio_device_count_ = 0;
};
