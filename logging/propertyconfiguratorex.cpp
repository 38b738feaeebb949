#include "logging/propertyconfiguratorex.h"

namespace log4cxx {

LoggerPtr PropertyConfiguratorEx::m_objLoggerPtr;

}  // namespace log4cxx
