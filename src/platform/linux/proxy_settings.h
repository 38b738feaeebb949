/// The proxy of the process, as its environment and the desktop's settings have it.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace velmora::os {

struct ProxySettings {
  std::string proxy;  ///< "http=proxy.example:3128 socks=..."; empty without one
  std::string bypass;
};

/// The value of an environment variable; nothing when it is not set.
using Environment = std::function<std::optional<std::string>(const char* name)>;
std::optional<std::string> ProcessVariable(const char* name);

/// The variables http_proxy, https_proxy and all_proxy, in small letters or else in capitals, as nearly every
/// program goes by them; without any the settings of the KDE desktop, which are a text file, and which name a
/// proxy themselves or the variables that do. A variable that is set but empty means: no proxy, and no look
/// at the desktop.
///
/// The GNOME desktop keeps its settings in a binary database that only its own libraries read, and hands them
/// on to programs as these variables where the login is set up so; they are not looked for here.
ProxySettings ReadProxySettings(const std::filesystem::path& root, const Environment& environment);

}  // namespace velmora::os
