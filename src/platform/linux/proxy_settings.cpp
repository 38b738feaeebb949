#include "platform/linux/proxy_settings.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "platform/linux/config_text.h"
#include "platform/linux/small_file.h"

namespace velmora::os {
namespace {

using Path = std::filesystem::path;

std::string InCapitals(std::string name) {
  for (char& c : name) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return name;
}

std::optional<std::string> Either(const Environment& environment, const std::string& name) {
  auto value = environment(name.c_str());
  return value ? value : environment(InCapitals(name).c_str());
}

/// Adds "scheme=value" unless there is no value.
void Append(std::string_view scheme, const std::string& value, std::string& list) {
  if (value.empty()) return;
  if (!list.empty()) list.push_back(' ');
  list.append(scheme).append("=").append(value);
}

/// What the variables say; nothing when none of them is set.
std::optional<ProxySettings> ReadVariables(const Environment& environment) {
  ProxySettings settings;
  bool is_any_set = false;
  for (const char* scheme : {"http", "https", "all"}) {
    const auto value = Either(environment, std::string(scheme) + "_proxy");
    is_any_set = is_any_set || value.has_value();
    Append(scheme, value.value_or(""), settings.proxy);
  }
  if (!is_any_set) return std::nullopt;
  if (!settings.proxy.empty()) settings.bypass = Either(environment, "no_proxy").value_or("");
  return settings;
}

/// The desktop's file of settings.
std::string ReadDesktop(const Path& root, const Environment& environment) {
  Path folder = environment("XDG_CONFIG_HOME").value_or("");
  if (!folder.is_absolute()) {
    const Path home = environment("HOME").value_or("");
    if (!home.is_absolute()) return {};
    folder = home / ".config";
  }
  return ReadSmallFile(root / folder.relative_path() / "kioslaverc").value_or("");
}

bool IsOnDesktop(const Environment& environment, std::string_view desktop) {
  const std::string names = environment("XDG_CURRENT_DESKTOP").value_or("");
  return std::string_view(":" + names + ":").find(":" + std::string(desktop) + ":") != std::string_view::npos;
}

/// The desktop writes "http://proxy.example 3128" for a port.
std::string WithPort(std::string value) {
  const std::size_t blank = value.rfind(' ');
  if (blank != std::string::npos) value[blank] = ':';
  return value;
}

ProxySettings ReadKde(const std::string& text, const Environment& environment) {
  constexpr std::string_view kSection = "Proxy Settings";
  constexpr std::string_view kManual = "1";
  constexpr std::string_view kByVariables = "4";
  ProxySettings settings;
  const std::string type = SectionValue(text, kSection, "ProxyType");
  if (type != kManual && type != kByVariables) return settings;
  for (const auto& [scheme, key] :
       {std::pair("http", "httpProxy"), std::pair("https", "httpsProxy"), std::pair("socks", "socksProxy")}) {
    std::string value = SectionValue(text, kSection, key);
    if (type == kByVariables) value = environment(value.c_str()).value_or("");
    Append(scheme, WithPort(std::move(value)), settings.proxy);
  }
  if (!settings.proxy.empty() && type == kManual)
    settings.bypass = SectionValue(text, kSection, "NoProxyFor");
  return settings;
}

}  // namespace

std::optional<std::string> ProcessVariable(const char* name) {
  const char* value = *name != 0 ? std::getenv(name) : nullptr;
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

ProxySettings ReadProxySettings(const Path& root, const Environment& environment) {
  if (auto settings = ReadVariables(environment)) return *settings;
  if (!IsOnDesktop(environment, "KDE")) return {};
  return ReadKde(ReadDesktop(root, environment), environment);
}

}  // namespace velmora::os
