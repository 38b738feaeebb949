#include "velmora-report/program.h"

int main(int count, char** arguments) {
  return report::Run({arguments + (count > 0 ? 1 : 0), arguments + count});
}
