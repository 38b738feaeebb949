/// The query families: the only code that touches the buffers of the hardware-abstraction contract.
///
/// Every function zeroes its buffer, asks once and turns the answer into a plain value. A failed query gives
/// the empty text, 0 or false, and never anything that the failed call left in the buffer. A returned size is
/// not believed; every buffer is bounded, also one that comes back without a zero. Nothing here throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>

#include "platform/ostrine/device_record.h"

namespace velmora::hal {

/// Prepares a class that has no table; false when the abstraction library refuses.
bool Prepare(DeviceClass device_class) noexcept;

/// Prepares a class that has a table and stores the table, which is then the caller's, in `table`. False when
/// the abstraction library refuses; the table is null then, and also when the library made none.
bool PrepareTable(DeviceClass device_class, void*& table) noexcept;

/// The same with the abstraction library's own result, for whoever tells one success from another; 0 when it
/// fails.
int PrepareTableResult(DeviceClass device_class, void*& table) noexcept;

/// The count of entries that stands in the head of a table of failing drivers; 0 for null, and for a count
/// that no signed number holds.
std::int32_t FailingDriverCount(const void* table) noexcept;

/// The place of entry `index` in a table of failing drivers that has that many.
void* FailingDriverEntry(void* table, std::int32_t index) noexcept;

/// Releases a table that PrepareTable gave and forgets it; null is allowed.
void ReleaseTable(void*& table) noexcept;

/// Reads narrow text of at most 259 bytes, widened from the system's narrow code page and cut at its first
/// zero, into `text`. False, and an empty `text`, when the query fails.
bool ReadNarrowText(DeviceClass device_class, std::uint32_t information_id, void* device,
                    std::wstring& text) noexcept;

/// The same as a value; empty when the query fails.
std::wstring NarrowText(DeviceClass device_class, std::uint32_t information_id,
                        void* device = nullptr) noexcept;

/// The same for the one text of at most 49 bytes, the processor's name.
std::wstring ShortNarrowText(DeviceClass device_class, std::uint32_t information_id) noexcept;

/// The bytes of a narrow text as they are, cut at the first zero; empty when the query fails.
std::string NarrowBytes(DeviceClass device_class, std::uint32_t information_id, void* device) noexcept;

/// Wide text of at most 259 UTF-16 units, cut at its first zero; a lone surrogate becomes U+FFFD.
std::wstring WideText(DeviceClass device_class, std::uint32_t information_id, void* device) noexcept;

/// Reads a 4-byte or an 8-byte number. False, and 0 in `number`, when the query fails.
bool ReadNumber(DeviceClass device_class, std::uint32_t information_id, void* device,
                std::uint32_t& number) noexcept;
bool ReadNumber(DeviceClass device_class, std::uint32_t information_id, void* device,
                std::uint64_t& number) noexcept;

/// A 4-byte number as a value; 0 when the query fails.
std::uint32_t Number(DeviceClass device_class, std::uint32_t information_id, void* device = nullptr) noexcept;

/// The kind of processor, as CCpu::GetCputype gives it, for rules that change with it. Prepares the
/// processor's class itself, so that it works before any CCpu exists; 0 when the query fails.
std::uint32_t ProcessorKind() noexcept;

/// What QueryResult and SetResult stand on.
int QueryBytes(DeviceClass device_class, std::uint32_t information_id, std::span<std::byte> buffer) noexcept;
int SetBytes(DeviceClass device_class, std::uint32_t information_id, std::span<std::byte> buffer) noexcept;

/// Lets a query of the class fill `object` as it stands, a trivial one that is not zeroed first, and returns
/// the query's own result.
template <class Object>
  requires std::is_trivially_copyable_v<Object>
int QueryResult(DeviceClass device_class, std::uint32_t information_id, Object& object) noexcept {
  return QueryBytes(device_class, information_id, std::as_writable_bytes(std::span(&object, 1)));
}

/// Hands the bytes of `object` over as `information_id` of the class and returns the call's own result.
template <class Object>
  requires std::is_trivially_copyable_v<Object>
int SetResult(DeviceClass device_class, std::uint32_t information_id, Object& object) noexcept {
  return SetBytes(device_class, information_id, std::as_writable_bytes(std::span(&object, 1)));
}

// Questions to one numbered device: it is opened, asked and closed again, whether the question succeeded or
// not. A device that does not open is not closed; the answer is then the failure value.

/// Wide text of device `number`, as WideText.
std::wstring WideTextOf(DeviceClass device_class, std::uint32_t number,
                        std::uint32_t information_id) noexcept;

/// An 8-byte number of device `number`; 0 on failure.
std::uint64_t LargeNumberOf(DeviceClass device_class, std::uint32_t number,
                            std::uint32_t information_id) noexcept;

/// Lets the query write 4 bytes straight into `value` and returns the query's own result, 0 when the device
/// does not open. `value` is not zeroed first and keeps whatever the query left in it.
int QueryInto(DeviceClass device_class, std::uint32_t number, std::uint32_t information_id,
              int& value) noexcept;

}  // namespace velmora::hal
