/// Owners of what COM hands out: an interface, a text, a value. Each gives back what it holds exactly once.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <limits>
#include <string_view>
#include <utility>

namespace ostrine {

/// One reference to an object. Empty when a call that was to fill it failed, or succeeded with nothing.
template <class Interface>
class ComPointer {
 public:
  ComPointer() = default;
  ComPointer(const ComPointer&) = delete;
  ComPointer& operator=(const ComPointer&) = delete;
  ComPointer(ComPointer&& other) noexcept : object_(other.Detach()) {}
  ComPointer& operator=(ComPointer&& other) noexcept {
    ComPointer old(std::move(*this));
    object_ = other.Detach();
    return *this;
  }
  ~ComPointer() {
    if (object_ != nullptr) object_->Release();
  }

  explicit operator bool() const noexcept { return object_ != nullptr; }
  Interface* operator->() const noexcept { return object_; }
  Interface* Get() const noexcept { return object_; }

  /// Where a call puts the interface that it hands out. What was held is given back first.
  Interface** Receive() noexcept {
    ComPointer old(std::move(*this));
    return &object_;
  }
  void** ReceiveAny() noexcept { return reinterpret_cast<void**>(Receive()); }

  /// Hands the reference over to the caller.
  [[nodiscard]] Interface* Detach() noexcept { return std::exchange(object_, nullptr); }

 private:
  Interface* object_ = nullptr;
};

/// A text as COM passes it. Empty for want of memory, and for a text too long to be one.
class ComText {
 public:
  explicit ComText(std::wstring_view text) noexcept
      : text_(text.size() <= std::numeric_limits<UINT>::max() / sizeof(wchar_t)
                  ? SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))
                  : nullptr) {}
  ComText(const ComText&) = delete;
  ComText& operator=(const ComText&) = delete;
  ~ComText() { SysFreeString(text_); }

  explicit operator bool() const noexcept { return text_ != nullptr; }
  BSTR Get() const noexcept { return text_; }

 private:
  BSTR text_;
};

/// A value as COM passes it, empty at first.
class ComValue {
 public:
  ComValue() noexcept { VariantInit(&value_); }
  ComValue(const ComValue&) = delete;
  ComValue& operator=(const ComValue&) = delete;
  ~ComValue() { VariantClear(&value_); }

  const VARIANT& Get() const noexcept { return value_; }
  VARIANT* Receive() noexcept {
    VariantClear(&value_);
    return &value_;
  }

 private:
  VARIANT value_;
};

}  // namespace ostrine
