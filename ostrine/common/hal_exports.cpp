// The library's face: five functions with C linkage over the table of device classes. A class is added with
// its own files and one row here.
#include <array>

#include "ostrine/common/audio.h"
#include "ostrine/common/baseboard.h"
#include "ostrine/common/device_class.h"
#include "ostrine/common/disk.h"
#include "ostrine/common/failing_driver.h"
#include "ostrine/common/memory.h"
#include "ostrine/common/processor.h"
#include "ostrine/common/video.h"
#include "platform/ostrine/hal.h"

// The contract's header says nothing about who exports; here the names are made visible, in a library whose
// other names are hidden. Windows has a list instead, windows/ostrine.def.
#ifndef _WIN32
extern "C" {
[[gnu::visibility("default")]] decltype(HalInit) HalInit;
[[gnu::visibility("default")]] decltype(HalQueryInformation) HalQueryInformation;
[[gnu::visibility("default")]] decltype(HalSetInformation) HalSetInformation;
[[gnu::visibility("default")]] decltype(HalOpenDevice) HalOpenDevice;
[[gnu::visibility("default")]] decltype(HalCloseDevice) HalCloseDevice;
}
#endif

namespace {

constexpr std::array kRows{
    ostrine::DeviceClass{.number = 0, .init = ostrine::NothingToPrepare, .query = ostrine::QueryProcessor},
    ostrine::DeviceClass{.number = 4, .init = ostrine::NothingToPrepare, .query = ostrine::QueryBaseboard},
    ostrine::DeviceClass{.number = 5, .init = ostrine::PrepareAudio, .query = ostrine::QueryAudio},
    ostrine::DeviceClass{.number = 6, .init = ostrine::PrepareVideo, .query = ostrine::QueryVideo},
    ostrine::DeviceClass{.number = 7,
                         .init = ostrine::PrepareDisks,
                         .query = ostrine::QueryDisk,
                         .open = ostrine::OpenDisk,
                         .close = ostrine::CloseDisk},
    ostrine::DeviceClass{.number = 13, .init = ostrine::PrepareMemory, .query = ostrine::QueryMemory},
    ostrine::DeviceClass{
        .number = 20, .init = ostrine::PrepareFailingDrivers, .query = ostrine::QueryFailingDriver},
};

constexpr ostrine::DeviceClasses kClasses(kRows);

}  // namespace

int HalInit(unsigned int device_class, void** table) { return kClasses.Init(device_class, table); }

int HalQueryInformation(unsigned int device_class, void* device, unsigned int information_id, void* buffer,
                        unsigned int buffer_size, unsigned int* returned_size) {
  return kClasses.Query(device_class, device, information_id, buffer, buffer_size, returned_size);
}

int HalSetInformation(unsigned int device_class, void* device, unsigned int information_id, void* buffer,
                      unsigned int buffer_size, unsigned int* returned_size) {
  return kClasses.Set(device_class, device, information_id, buffer, buffer_size, returned_size);
}

int HalOpenDevice(unsigned int device_class, void* device_record) {
  return kClasses.Open(device_class, device_record);
}

int HalCloseDevice(unsigned int device_class, void* device_record) {
  return kClasses.Close(device_class, device_record);
}
