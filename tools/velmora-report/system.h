/// What the program itself needs of the operating system; each system has its own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace report {

/// Writes UTF-8 to the program's output, byte for byte; false when not all of it could be written.
bool WriteOutput(std::string_view utf8);

/// Writes UTF-8 to the program's error output, as far as that is possible.
void WriteError(std::string_view utf8);

/// UTF-8 of text in the system's narrow code page, in which the library gives some of its texts.
std::string FromNarrow(std::string_view narrow);

/// Runs `program`, a path from the folder of this program's own file, on the machine that the file `machine`
/// holds. Its output is this program's. Returns its exit status, unless the system lets it take this
/// program's place. Throws std::system_error when it cannot be run.
int RunOnMachine(const std::string& program, const std::string& machine,
                 const std::vector<std::string>& arguments);

}  // namespace report
