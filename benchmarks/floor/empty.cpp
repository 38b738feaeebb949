/// What a process of a C++ program costs that does nothing.
#include <string>

int main(int argc, char** argv) {
  const std::string name(argc > 0 ? argv[0] : "");  // from the runtime library, so that it is loaded
  return name.size() == 1 ? 1 : 0;
}
