#pragma once

#include <log4cxx/logger.h>

#if !defined(_WIN32)
#define VELMORA_LOGGING_API __attribute__((visibility("default")))
#elif defined(VELMORA_LOGGING_BUILDING)
#define VELMORA_LOGGING_API __declspec(dllexport)
#else
#define VELMORA_LOGGING_API __declspec(dllimport)
#endif

namespace log4cxx {

/// Holds the one logger that Velmora writes to. The host's own logging set-up fills it, before it uses the
/// library and from one thread; Velmora only reads it. While it is null nothing is logged and nothing is
/// built.
class VELMORA_LOGGING_API PropertyConfiguratorEx {
 public:
  static LoggerPtr m_objLoggerPtr;
};

}  // namespace log4cxx
