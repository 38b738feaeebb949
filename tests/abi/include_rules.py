#!/usr/bin/python3
"""Holds every source file to what its folder may include.

    include_rules.py REPOSITORY

The seam between decisions and machines is kept by this: what stands above it cannot name a system's headers.
"""
import re
import sys
from pathlib import Path

STANDARD = set("""
    algorithm any array atomic barrier bit bitset charconv chrono codecvt compare complex concepts
    condition_variable coroutine deque exception execution filesystem format forward_list fstream functional
    future initializer_list iomanip ios iosfwd istream iterator latch limits list locale map memory
    memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator
    semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string
    string_view strstream syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map
    unordered_set utility valarray variant vector version
    cassert cctype cerrno cfenv cfloat cinttypes climits clocale cmath csetjmp csignal cstdarg cstddef cstdint
    cstdio cstdlib cstring ctime cuchar cwchar cwctype
""".split())  # without <iostream>: it adds an initialiser to everything that includes it

ANY_SYSTEM = r"<(?!iostream>|log4cxx/|nlohmann/).*>"
PUBLIC = r'"velmora/\w+\.h"'
CONTRACTS = r'"platform/(os|ostrine)/\w+\.h"'
OSTRINE_CONTRACT = r'"platform/ostrine/\w+\.h"'
TEXT = r'"platform/(unicode|case_folding|process_caption|text_search)\.h"'  # pure, and shared with what is below the contracts
PLATFORM = r'"platform/\w+\.h"'
SUBSYSTEMS = "inventory|power|devices|bluetooth|system|network"
DECISION = rf'"({SUBSYSTEMS})/\w+\.h"'
LOGGING = r'"logging/\w+\.h"'
LOG4CXX = r"<log4cxx/.*>"
HOST = r"<velmora/\w+\.h>"
REPORT = r'"velmora-report/\w+\.h"'

# The first line whose pattern fits a file's path says what it may include besides the standard library.
RULES = [
    (r"include/velmora/\w+\.h", [PUBLIC]),
    (r"src/platform/ostrine/guid\.h", [r"<guiddef\.h>"]),
    (r"src/platform/ostrine/\w+\.h", [OSTRINE_CONTRACT, r'"velmora/export\.h"']),
    (r"src/platform/os/\w+\.h", [CONTRACTS, r'"velmora/export\.h"']),
    (r"src/platform/windows/\w+\.(h|cpp)", [ANY_SYSTEM, CONTRACTS, PLATFORM, r'"platform/windows/\w+\.h"']),
    (r"src/platform/linux/\w+\.(h|cpp)", [ANY_SYSTEM, CONTRACTS, PLATFORM, r'"platform/linux/\w+\.h"']),
    (r"src/platform/logging\.cpp", [CONTRACTS, PLATFORM, LOGGING]),
    (r"src/platform/logging\.h", [PLATFORM, r'"logging/level\.h"']),  # which everything includes
    (r"src/platform/\w+\.(h|cpp)", [PUBLIC, CONTRACTS, PLATFORM]),
    (rf"src/({SUBSYSTEMS})/\w+\.(h|cpp)", [PUBLIC, CONTRACTS, PLATFORM, DECISION]),
    (r"ostrine/common/cpuid_instruction\.cpp", [r"<cpuid\.h>", r'"ostrine/common/\w+\.h"']),
    (r"ostrine/common/\w+\.(h|cpp)", [OSTRINE_CONTRACT, TEXT, r'"ostrine/common/\w+\.h"']),
    (r"ostrine/(windows|linux)/\w+\.(h|cpp)",
     [ANY_SYSTEM, OSTRINE_CONTRACT, TEXT, r'"platform/{1}/systemd_\w+\.h"', r'"ostrine/(common|{1})/\w+\.h"']),
    (r"simulator/(sections/)?\w+\.(h|cpp)",
     [CONTRACTS, TEXT, r'"simulator/(sections/)?\w+\.h"', r'"ostrine/common/\w+\.h"', r"<nlohmann/json\.hpp>",
      r'"velmora/export\.h"']),
    (r"logging/linux/\w+\.cpp", [LOGGING, r"<dlfcn\.h>"]),
    (r"logging/(windows/)?\w+\.(h|cpp)", [LOGGING, LOG4CXX]),
    (r"tools/velmora-report/(windows|linux)/\w+\.(h|cpp)",
     [ANY_SYSTEM, REPORT, r'"velmora-report/{1}/\w+\.h"']),
    (r"tools/velmora-report/simulated/\w+\.cpp", [REPORT]),
    (r"tools/velmora-report/device_list\.cpp", [OSTRINE_CONTRACT, REPORT]),
    (r"tools/velmora-report/\w+\.(h|cpp)", [HOST, REPORT, r"<nlohmann/json\.hpp>"]),
]
FOLDERS = ["include", "src", "ostrine", "simulator", "logging", "tools"]

INCLUDE = re.compile(r'^\s*#\s*include\s*(<[^>]+>|"[^"]+"|\S+)', re.MULTILINE)


def allowed(path):
    """What the file may include, as patterns; None when no rule speaks of it."""
    for pattern, includes in RULES:
        if found := re.fullmatch(pattern, path):
            # {1} in a pattern is what the first group of the path is.
            return [include.replace("{1}", found[1]) if "{1}" in include else include for include in includes]
    return None


def problems(path, text):
    """`path`: from the repository root."""
    patterns = allowed(path)
    if patterns is None:
        yield f"{path}: no rule says what it may include"
        return
    for found in INCLUDE.finditer(text):
        include = found[1]
        is_standard = include.startswith("<") and include[1:-1] in STANDARD
        if not is_standard and not any(re.fullmatch(pattern, include) for pattern in patterns):
            line = text.count("\n", 0, found.start(1)) + 1
            yield f"{path}:{line}: must not include {include}"


def main(repository):
    repository = Path(repository)
    files = [file for folder in FOLDERS for file in sorted((repository / folder).rglob("*"))
             if file.is_file() and file.suffix in (".h", ".hpp", ".cpp", ".cc", ".inc", ".ipp")]
    if not files:
        print(f"{repository} has no sources")
        return 1
    found = [problem for file in files
             for problem in problems(file.relative_to(repository).as_posix(), file.read_text(encoding="utf-8"))]
    print("\n".join(found) if found else f"{len(files)} files include what they may")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
