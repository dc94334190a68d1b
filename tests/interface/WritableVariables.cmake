# Fails when the module keeps state that is not listed here, such as a buffer that calls share:
# several threads use its functions at once.
#   cmake -D OBJDUMP=<objdump> -D MODULE=<Ravelin.so> -P <this>
cmake_minimum_required(VERSION 3.25)

execute_process(
  COMMAND ${OBJDUMP} -t -C ${MODULE}
  OUTPUT_VARIABLE output
  COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL " \\.t?(bss|data)\t[^\n]+" variables "${output}")
list(TRANSFORM variables REPLACE "^ \\.[a-z]+\t[0-9a-f]+ +(\\.hidden )?" "")
if(NOT "SatCommonUtils::KvModule_Initializer::getInst()::instance" IN_LIST variables)
  message(FATAL_ERROR "No variables were read:\n${output}")
endif()

# Sections, guards and what the compiler's own objects bring along.
list(FILTER variables EXCLUDE REGEX "^(\\.|guard variable for |_|DW\\.ref|[a-z]+\\.[0-9]+$)")
# The initializer, what is made once and never changed, and how deep a thread's calls are nested.
set(listed "KvModule_Initializer::getInst\\(\\)::instance$" "TheFoldTable\\(\\)::table$"
           "Kernels\\(\\)::best$" "CallExportedCreateFromXML\\(.*::exported$" "depth$")
list(JOIN listed "|" listed)
list(FILTER variables EXCLUDE REGEX "^SatCommonUtils::(\\(anonymous namespace\\)::)?(${listed})")
if(variables)
  message(FATAL_ERROR "The module is not to keep these variables:\n  ${variables}")
endif()
