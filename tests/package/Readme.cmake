# The program in README.md is the one that the package's users are tested with.
file(READ ${SOURCE_DIR}/README.md readme)
file(READ ${SOURCE_DIR}/tests/package/band_range.cpp program)
string(FIND "${readme}" "```cpp\n${program}```" at)
if(at EQUAL -1)
  message(FATAL_ERROR "README.md does not hold tests/package/band_range.cpp")
endif()
