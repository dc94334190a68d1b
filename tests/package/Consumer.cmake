# What the consumers share: a clean folder to work in, a small band and a run of the program over
# it.

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Runs the program over a band whose samples are the pairs of letters and compares what it prints.
function(check_program program)
  file(WRITE ${WORK_DIR}/band.raw "MNKLABYZEFGH")
  execute_process(
    COMMAND ${ARGN} ${program} ${WORK_DIR}/band.raw 3 2
    OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)
  # "AB" is 0x4142, "YZ" is 0x595a.
  if(NOT printed STREQUAL "3 x 2 samples from 16706 to 22874\n")
    message(FATAL_ERROR "The program printed: ${printed}")
  endif()
  file(REMOVE_RECURSE ${WORK_DIR})
endfunction()
