# Compiles the pixel kernels into a target, each set for its own instructions. Their symbols are
# hidden, so the module, their test and the benchmarks each have them compiled in.
function(ravelin_pixel_kernels target)
  set(raster ${PROJECT_SOURCE_DIR}/raster)
  set(sources ${raster}/PixelKernels.cpp ${raster}/PixelKernelsAvx2.cpp
              ${raster}/PixelKernelsSse41.cpp ${raster}/WideInterleave.cpp)
  target_sources(${target} PRIVATE ${sources})
  # What tests precompile is not for their instructions.
  set_source_files_properties(${sources} TARGET_DIRECTORY ${target}
                              PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  set_source_files_properties(${raster}/PixelKernelsSse41.cpp TARGET_DIRECTORY ${target}
                              PROPERTIES COMPILE_OPTIONS -msse4.1)
  set_source_files_properties(${raster}/PixelKernelsAvx2.cpp TARGET_DIRECTORY ${target}
                              PROPERTIES COMPILE_OPTIONS -mavx2)
endfunction()
