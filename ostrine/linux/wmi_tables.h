/// The WMI classes that are answered here, as tables over the files below a root folder.
///
///     Win32_Process          Caption, Name, ProcessId, ExecutablePath
///     Win32_Service          Name, DisplayName, State
///     Win32_NetworkAdapter   Name, Description, MACAddress, GUID, AdapterType, NetConnectionID, PNPDeviceID
///     Win32_VideoController  Name, Caption, AdapterDACType, DriverVersion, PNPDeviceID
///     Win32_PnPSignedDriver  DeviceName, FriendlyName, HardWareID, DeviceID, DeviceClass, Manufacturer,
///                            DriverVersion
///
/// Names of adapters and cards are those that device information gives: adapters go by their friendly names,
/// cards by their descriptions. A table is read when a query visits it.
#pragma once

#include <optional>
#include <string_view>

#include "ostrine/common/wql.h"
#include "ostrine/linux/sysfs.h"

namespace ostrine {

/// The table of a class, whose name is taken in either case; none for a class that is not answered.
std::optional<WqlTable> FindTable(const Path& root, std::wstring_view class_name);

/// Caption is the file name of the program, or, for one that the caller may not look at and for the kernel's
/// own threads, the short name that the kernel keeps. In the order of process numbers; what has ended and
/// waits to be collected is no process any more.
void VisitProcesses(const Path& root, const WqlVisitor& visit);

/// Name is that of the unit without ".service"; State is Running, Stopped, Start Pending, Stop Pending or
/// Paused. Units that are loaded first, then those that are only installed. No rows without the service
/// manager's answer.
void VisitServices(const Path& root, const WqlVisitor& visit);

/// The interfaces of the Net class's devices. GUID is derived from the interface's name; AdapterType is
/// "Ethernet 802.3", "Wireless" or "Wide Area Network (WAN)"; NetConnectionID is the interface's name.
void VisitNetworkAdapters(const Path& root, const WqlVisitor& visit);

/// The Display class's devices. AdapterDACType is "Internal" for an adapter that is part of the processor or
/// chipset or that the machine has booted on; the driver's name for any other.
void VisitVideoControllers(const Path& root, const WqlVisitor& visit);

/// The devices that have a driver. DeviceClass is the name of the setup class, in capitals.
void VisitDrivers(const Path& root, const WqlVisitor& visit);

}  // namespace ostrine
