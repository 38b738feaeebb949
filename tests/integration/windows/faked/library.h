/// A made-up system library that the test keeps loaded to look into.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

namespace faked {

/// The state that the library exports, and a check that nobody else keeps the library loaded afterwards.
template <class State>
class Library {
 public:
  explicit Library(const wchar_t* name)
      : name_(name), module_(LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
    if (auto* const get =
            reinterpret_cast<State* (*)()>(reinterpret_cast<void*>(GetProcAddress(module_, "State")))) {
      state_ = get();
      *state_ = State{};
    } else {
      ADD_FAILURE() << "this is the system's own library, not the made-up one";
    }
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() {
    FreeLibrary(module_);
    EXPECT_EQ(GetModuleHandleW(name_), nullptr) << "the library was not given back";
  }

  State* operator->() const { return state_; }
  explicit operator bool() const { return state_ != nullptr; }

 private:
  const wchar_t* name_;
  HMODULE module_;
  State* state_ = nullptr;
};

}  // namespace faked
