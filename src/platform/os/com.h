/// What Velmora requires of COM. A result below 0 is a failure.
#pragma once

#include <cstdint>

#include "platform/ostrine/guid.h"

namespace velmora::os {

using ComResult = std::int32_t;
inline constexpr ComResult kComOk = 0;
inline constexpr ComResult kComChangedMode =
    static_cast<ComResult>(0x80010106U);  ///< thread is in another apartment
inline constexpr ComResult kComNotImplemented = static_cast<ComResult>(0x80004001U);
inline constexpr ComResult kComNoInterface = static_cast<ComResult>(0x80004002U);
inline constexpr ComResult kComFail = static_cast<ComResult>(0x80004005U);
inline constexpr ComResult kComClassNotRegistered = static_cast<ComResult>(0x80040154U);

constexpr bool ComSucceeded(ComResult result) { return result >= 0; }

/// An interface of an object; released once with ComRelease.
using ComObject = void*;

/// Enters the thread into an apartment; `CoInitialize` and flag 2 mean a single-threaded one. Callers make
/// one CoUninitialize for each, whatever came back: an implementation pairs them, so that the one for a
/// failed initialise does nothing.
ComResult CoInitialize();
ComResult CoInitializeEx(std::uint32_t flags);
void CoUninitialize();

/// Makes an object of `class_id` in `context` (23: wherever the class runs) and gives its interface
/// `interface_id`. On failure `object` is null; also success may leave it null.
ComResult CoCreateInstance(const GUID& class_id, std::uint32_t context, const GUID& interface_id,
                           ComObject& object);

/// Gives another interface of an object.
ComResult ComQueryInterface(ComObject object, const GUID& interface_id, ComObject& result);

/// Gives an interface back; null is allowed.
void ComRelease(ComObject object);

/// Sets the process's locale for all categories to `name`; it stays in force.
void SetProcessLocale(const wchar_t* name);

}  // namespace velmora::os
