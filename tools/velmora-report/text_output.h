#pragma once

#include <string>

#include "velmora-report/report.h"

namespace report {

/// The report for people, UTF-8. Values that the machine does not give read "not reported". Control
/// characters, which firmware texts may hold and a terminal may obey, are shown as \uXXXX.
std::string WriteText(const Report& report);

}  // namespace report
