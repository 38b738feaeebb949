#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "velmora/devicekind.h"
#include "velmora/export.h"

/// One device whose driver fails, as it was when the list was made. Texts are in the system's narrow code
/// page, at most 259 bytes long, and empty where nobody tells.
struct stErrDriverInfo {
  std::string strCaption;       ///< name of the device
  std::string strDeviceID;      ///< instance ID: hardware and place
  std::string strClassGUID;     ///< setup class, as "{4d36e972-e325-11ce-bfc1-08002be10318}"
  std::string strService;       ///< driver service that the device is bound to
  std::string strStatus;        ///< state in one word, "Error" for a failing device
  std::string strManufacture;   ///< maker
  unsigned int uErrorCode = 0;  ///< configuration-manager problem code
};

/// The devices whose drivers fail, and the repairs of drivers.
///
/// Source: the list comes from the hardware-abstraction library, device class 20. It is asked for on first
/// use and kept for the object's life, and so is the failure to get it: after a repair, a new object tells
/// what is left. Repairs and problem codes name a device by its hardware ID and its kind, whose setup class
/// it must belong to; they always act on the machine as it is now. Failure: a text is empty, a number 0, a
/// repair's result other than 0; nothing throws. Threads: an object is used by one thread at a time; separate
/// objects are independent. Copies: a copy makes a list of its own on first use.
class VELMORA_API CDeviceDriver {
 public:
  /// Asks for nothing yet.
  CDeviceDriver();
  CDeviceDriver(const CDeviceDriver& other);
  CDeviceDriver& operator=(const CDeviceDriver& other);
  ~CDeviceDriver();

  /// Number of failing devices; 0 also when the list cannot be had.
  int GetErrDeviceDriverCount();

  /// The failing device at `index`, from 0; empty texts and code 0 for an index that none has.
  stErrDriverInfo GetErrDriverInfoByIndex(int index);

  /// Uninstalls the device, has the hardware rescanned and waits until the device works: up to ten rounds of
  /// a rescan, a second's wait and a look at the problem code, on the calling thread. 0 as soon as the code
  /// is 0; 0xFFFFFFFF when it is not after the last round, and for a kind other than wireless, Bluetooth,
  /// fingerprint, audio and display; else the system's error code, when the device cannot be uninstalled and
  /// nothing has been done.
  unsigned long ResetDeviceDriver(std::wstring hardware_id, stDEVICE_DRIVER_TYPE kind);

  /// Uninstalls the device, so that the next rescan installs it afresh. 0, or the system's error code;
  /// 0xFFFFFFFF for a kind other than those above and USB.
  unsigned long UnInstallDeviceDriver(std::wstring hardware_id, stDEVICE_DRIVER_TYPE kind);

  /// Configuration-manager problem code of the device: 0 when it works, 22 when it is switched off, 45 when
  /// it is not there; 0xFFFFFFFF for a kind that ResetDeviceDriver does not take.
  unsigned long GetDeviceDriverErrorCode(std::wstring hardware_id, stDEVICE_DRIVER_TYPE kind);

  /// Has the system look for hardware that it does not know, and returns before it has finished. A failure is
  /// logged only.
  void ScanForHardwareChange();

  /// Hardware IDs of the devices, of every class, that have no working driver.
  std::vector<std::wstring> GetUnkownHardId();  // (The spelling is part of the interface.)

 private:
  int Init();
  std::string GetCaptionByIndex(int index);
  std::string GetDeviceIdByIndex(int index);
  std::string GetClassGUIDByIndex(int index);
  std::string GetServiceByIndex(int index);
  std::string GetStatusByIndex(int index);
  std::string GetManufactureByIndex(int index);
  unsigned int GetErrorCodeByIndex(int index);

  void* list_ = nullptr;
  std::int32_t count_ = 0;
  std::int32_t init_result_ = 0;  ///< 0: not asked for yet; 1: the list is there
};
