// Prints the version twice: as the header has it in one text, and put together from its numbers.
#include <SatCommonUtils/Version.h>

#include <cstdio>

int main() {
  std::printf("%s %d.%d.%d\n", RAVELIN_VERSION, RAVELIN_VERSION_MAJOR, RAVELIN_VERSION_MINOR,
              RAVELIN_VERSION_PATCH);
  return 0;
}
