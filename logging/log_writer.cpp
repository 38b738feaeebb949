#include "logging/log_writer.h"

#include <log4cxx/helpers/loglog.h>
#include <log4cxx/helpers/transcoder.h>
#include <log4cxx/level.h>
#include <log4cxx/spi/location/locationinfo.h>

#include <string>
#include <type_traits>

namespace velmora::logging {
namespace {

/// The file's name without its folders. Points into `path`, as the location keeps only pointers.
const char* ShortName(const char* path) {
  const char* name = path;
  for (const char* c = path; *c != '\0'; ++c) {
    if (*c == '/' || *c == '\\') name = c + 1;
  }
  return name;
}

/// Releases of the logging library differ in whether a location names the short file too.
template <class Location>
Location MakeLocation(const std::source_location& from) {
  const auto line = static_cast<int>(from.line());
  if constexpr (std::is_constructible_v<Location, const char*, const char*, const char*, int>) {
    return Location(from.file_name(), ShortName(from.file_name()), from.function_name(), line);
  } else {
    return Location(from.file_name(), from.function_name(), line);
  }
}

bool IsEnabled(const log4cxx::Logger& logger, Level level) {
  return level == Level::kDebug ? logger.isDebugEnabled() : logger.isErrorEnabled();
}

/// The line in the logging library's own text form, which keeps the process locale out of the conversion. The
/// form is UTF-8 but for rare builds, and the library would copy it character by character.
template <class Text>
Text OwnForm(std::string_view line) {
  if constexpr (std::is_same_v<Text, std::string>) {
    return Text(line);
  } else {
    Text own;
    log4cxx::helpers::Transcoder::decodeUTF8(std::string(line), own);
    return own;
  }
}

void Write(const log4cxx::Logger& logger, Level level, std::string_view line,
           const std::source_location& location) {
  const auto log_level = level == Level::kDebug ? log4cxx::Level::getDebug() : log4cxx::Level::getError();
  logger.forcedLogLS(log_level, OwnForm<log4cxx::LogString>(line),
                     MakeLocation<log4cxx::spi::LocationInfo>(location));
}

void ReportFailure() { log4cxx::helpers::LogLog::error(LOG4CXX_STR("An log4cxx exception occurred.")); }

}  // namespace
}  // namespace velmora::logging

const velmora::logging::LogWriter velmora_log_writer = {velmora::logging::IsEnabled, velmora::logging::Write,
                                                        velmora::logging::ReportFailure};
