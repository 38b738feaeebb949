/// What Velmora requires of the hardware-abstraction library: five plain functions over numbered device
/// classes and numbered information records.
///
/// Every function returns nonzero for success and 0 for failure; whoever cares distinguishes further. No
/// exception may leave them: the functions have C linkage and stand at the edge of another shared library.
///
/// What crosses has one form on every system: narrow text is in the system's narrow code page (UTF-8 where
/// there is none), wide text is UTF-16 little-endian in a 520-byte buffer, numbers are little-endian, records
/// have the offsets of `device_record.h`.
#pragma once

extern "C" {

/// Prepares `device_class`; may be called again for a class that is prepared already.
///
/// `table` is null for a class without a table (processor, baseboard, battery). Otherwise it is the address
/// of a pointer that the caller has set to null and that receives the class's device table, allocated with
/// `malloc`; from then on the table is the caller's, who releases it with `free`. On failure it stays null.
int HalInit(unsigned int device_class, void** table);

/// Fills `buffer` with at most `buffer_size` bytes of `information_id` of the class (`device` null) or of one
/// device (`device` is its record, or its entry in the table that HalInit gave).
///
/// `returned_size` receives the number of bytes that the answer has; callers pass the address of a zeroed
/// count and never rely on it. On failure the buffer may have been written in part.
int HalQueryInformation(unsigned int device_class, void* device, unsigned int information_id, void* buffer,
                        unsigned int buffer_size, unsigned int* returned_size);

/// Writes `buffer_size` bytes of `buffer` as `information_id`; arguments as for HalQueryInformation.
int HalSetInformation(unsigned int device_class, void* device, unsigned int information_id, void* buffer,
                      unsigned int buffer_size, unsigned int* returned_size);

/// Opens the device whose number stands in the 16-byte `device_record` and fills the record's handle.
int HalOpenDevice(unsigned int device_class, void* device_record);

/// Closes what HalOpenDevice opened. Called once after every successful open.
int HalCloseDevice(unsigned int device_class, void* device_record);

}  // extern "C"
