/// Times the two walks of CFileProcess over a folder, as a host calls them: file_walks list|prune FOLDER.
/// Prints the milliseconds of each of five calls, how many files the last one found, and by how many bytes
/// the process's memory was greater at the most than before the first call.
#include <velmora/fileprocess.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <limits>
#include <string>

namespace {

/// The greatest memory that the process ever used, in bytes.
long PeakMemory() {
  std::ifstream status("/proc/self/status");
  std::string word;
  long kibibytes = 0;
  while (status >> word) {
    if (word == "VmHWM:") status >> kibibytes;
  }
  return kibibytes * 1024;
}

}  // namespace

int main(int count, char** arguments) {
  constexpr int kRounds = 5;
  if (count != 3) return 2;
  const std::string mode = arguments[1];
  const std::string folder = arguments[2];
  CFileProcess files;
  const long before = PeakMemory();
  std::size_t found = 0;
  for (int i = 0; i < kRounds; ++i) {
    const auto start = std::chrono::steady_clock::now();
    if (mode == "list") {
      found = files.GetTypeFiles(L".dmp", std::wstring(folder.begin(), folder.end())).size();
    } else {
      files.DeleteFileByPath(folder,
                             std::numeric_limits<int>::max());  // keeps all, after it has looked at all
    }
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    std::printf("%.3f ", time.count());
  }
  std::printf("\n%zu %ld\n", found, PeakMemory() - before);
}
