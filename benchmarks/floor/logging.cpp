/// What it costs to have the logging library loaded, as every host of Velmora has, before anything is asked.
#include <log4cxx/level.h>

int main() { return log4cxx::Level::getDebug() == nullptr ? 1 : 0; }
