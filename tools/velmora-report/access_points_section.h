#pragma once

#include <string>
#include <vector>

#include "velmora-report/report.h"

namespace report {

/// The access points that serve the Wi-Fi networks of these names, UTF-8.
Section AccessPointsSection(const std::vector<std::string>& names);

}  // namespace report
