/// A whole machine as a plain value, from which the simulator answers both platform contracts.
///
/// A section that is absent has not been scripted: a call that would need it fails the test by name. A
/// machine that comes from a file is whole, so there a missing section means that the machine has no such
/// thing.
///
/// Each section stands in a file of its own with a list `Fields` of the keys by which a machine file holds
/// its members. One list serves reading, writing and filling: an archive has a member `Field(key, member)`
/// that does the one thing it is for.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/sections/adapters.h"
#include "simulator/sections/baseboard.h"
#include "simulator/sections/battery.h"
#include "simulator/sections/bluetooth.h"
#include "simulator/sections/com.h"
#include "simulator/sections/control_devices.h"
#include "simulator/sections/cpu.h"
#include "simulator/sections/devices.h"
#include "simulator/sections/disk.h"
#include "simulator/sections/files.h"
#include "simulator/sections/internet.h"
#include "simulator/sections/memory.h"
#include "simulator/sections/processes.h"
#include "simulator/sections/registry.h"
#include "simulator/sections/services.h"
#include "simulator/sections/system_status.h"
#include "simulator/sections/vediocard.h"
#include "simulator/sections/wifi.h"
#include "simulator/sections/wmi.h"

namespace simulator {

struct Machine {
  std::string name;  ///< what kind of machine this is, for people
  std::optional<Baseboard> baseboard;
  std::optional<Cpu> cpu;
  std::optional<std::vector<MemoryModule>> memory_modules;
  std::optional<std::vector<Disk>> disks;
  std::optional<Video> video;
  std::optional<Batteries> battery;
  std::optional<std::vector<Device>> devices;
  std::optional<Wmi> wmi;
  std::optional<std::vector<FirmwareAnswer>> firmware;
  std::optional<std::vector<Service>> services;
  std::optional<std::vector<Process>> processes;
  std::optional<Bluetooth> bluetooth;
  std::optional<std::vector<ControlDevice>> control_devices;
  std::optional<Adapters> adapters;
  std::optional<Wifi> wifi;
  std::optional<Internet> internet;
  std::optional<Com> com;
  std::optional<NetworkList> network_list;
  std::optional<Firewall> firewall;
  std::optional<Registry> registry;
  std::optional<Power> power;
  std::optional<MemoryLoad> memory_status;
  std::optional<std::vector<File>> files;
  std::optional<Clock> clock;

  bool operator==(const Machine&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Machine& machine) {
  archive.Field("name", machine.name);
  archive.Field("baseboard", machine.baseboard);
  archive.Field("cpu", machine.cpu);
  archive.Field("memory", machine.memory_modules);
  archive.Field("disk", machine.disks);
  archive.Field("vediocard", machine.video);
  archive.Field("battery", machine.battery);
  archive.Field("devices", machine.devices);
  archive.Field("wmi", machine.wmi);
  archive.Field("firmware", machine.firmware);
  archive.Field("services", machine.services);
  archive.Field("processes", machine.processes);
  archive.Field("bluetooth", machine.bluetooth);
  archive.Field("control_devices", machine.control_devices);
  archive.Field("adapters", machine.adapters);
  archive.Field("wifi", machine.wifi);
  archive.Field("internet", machine.internet);
  archive.Field("com", machine.com);
  archive.Field("network_list", machine.network_list);
  archive.Field("firewall", machine.firewall);
  archive.Field("registry", machine.registry);
  archive.Field("power", machine.power);
  archive.Field("memory_status", machine.memory_status);
  archive.Field("files", machine.files);
  archive.Field("clock", machine.clock);
}

/// A machine of which nothing is scripted: any call fails the test by name.
Machine BlankMachine();

/// A machine that has nothing: every call is answered with its failure or with nothing.
Machine EmptyMachine();

}  // namespace simulator
