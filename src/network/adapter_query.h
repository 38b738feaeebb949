/// What WMI is asked about a network adapter.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora::network {

/// One property of an adapter that is found by its name.
struct AdapterQuestion {
  std::wstring_view query;  ///< up to the name and its opening quote
  const wchar_t* property;
};

inline constexpr AdapterQuestion kAskMacAddress{
    L"SELECT MACAddress FROM Win32_NetworkAdapter WHERE MACAddress IS NOT NULL and Name='", L"MACAddress"};
inline constexpr AdapterQuestion kAskGuid{L"SELECT GUID FROM Win32_NetworkAdapter WHERE Name='", L"GUID"};
inline constexpr AdapterQuestion kAskType{L"SELECT AdapterType FROM Win32_NetworkAdapter WHERE Name='",
                                          L"AdapterType"};

/// The whole query for the adapter of that name. Nothing for a name with a quote in it, which would end the
/// name early and change what is asked.
std::optional<std::wstring> QueryFor(const AdapterQuestion& question, std::wstring_view name);

}  // namespace velmora::network
