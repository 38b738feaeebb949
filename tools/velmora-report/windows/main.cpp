#include "velmora-report/program.h"
#include "velmora-report/utf8.h"

int wmain(int count, wchar_t** arguments) {
  std::vector<std::string> texts;
  for (int i = 1; i < count; ++i) texts.push_back(report::ToUtf8(arguments[i]));
  return report::Run(texts);
}
