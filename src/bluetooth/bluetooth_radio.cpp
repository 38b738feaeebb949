/// Whether the adapter's radio finds anything.
#include "platform/os/bluetooth_radio.h"

#include "platform/guard.h"
#include "platform/logging.h"
#include "velmora/bluetooth.h"

namespace os = velmora::os;

namespace {

/// The first radio, opened. Closing gives the radio back before the search that found it.
class FirstRadio {
 public:
  FirstRadio()
      : find_(os::BluetoothFindFirstRadio({.size = sizeof(os::BluetoothFindRadioParameters)}, radio_)) {}
  FirstRadio(const FirstRadio&) = delete;
  FirstRadio& operator=(const FirstRadio&) = delete;
  ~FirstRadio() {
    if (radio_ != nullptr) os::CloseHandle(radio_);
    if (find_ != nullptr) os::BluetoothFindRadioClose(find_);
  }

  bool IsFound() const { return find_ != nullptr; }
  os::Handle Get() const { return radio_; }

 private:
  os::Handle radio_ = nullptr;
  os::Handle find_;
};

/// Whether a radio tells about itself: one that does not is not asked to search.
bool Answers(os::Handle radio) {
  os::BluetoothRadioInfo info{.size = sizeof info};
  return os::BluetoothGetRadioInfo(radio, info) == 0;
}

/// Whether the radio finds a remote device of any kind, near or known.
bool FindsDevice(os::Handle radio) {
  const os::BluetoothSearchParameters everything{.size = sizeof everything,
                                                 .return_authenticated = 1,
                                                 .return_remembered = 1,
                                                 .return_unknown = 1,
                                                 .return_connected = 1,
                                                 .issue_inquiry = 1,
                                                 .timeout_multiplier = 2,
                                                 .radio = radio};
  os::BluetoothDeviceInfo device{.size = sizeof device};
  const os::Handle find = os::BluetoothFindFirstDevice(everything, device);
  if (find == nullptr) return false;
  os::BluetoothFindDeviceClose(find);
  return true;
}

}  // namespace

bool CBluetooth::IsFindBtDevice() {
  const bool is_found = velmora::Answer(false, [] {
    const FirstRadio radio;
    return radio.IsFound() && Answers(radio.Get()) && FindsDevice(radio.Get());
  });
  velmora::LogDebugNarrow([](auto& line) { line << "CBluetooth::IsFindBtDevice"; });
  return is_found;
}
