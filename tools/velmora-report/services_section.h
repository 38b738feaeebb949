#pragma once

#include <string>
#include <vector>

#include "velmora-report/report.h"

namespace report {

/// How the services of these names are doing.
Section ServicesSection(const std::vector<std::string>& names);

/// Which of the programs of these names run.
Section ProcessesSection(const std::vector<std::string>& names);

}  // namespace report
