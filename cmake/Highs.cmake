# Locates HiGHS as shipped by the PyPI package highsbox (headers and libhighs.so)
# and defines the imported target highs::highs. HIGHS_DIST may be given on the
# command line; otherwise the Python interpreter found by CMake is asked.
if(NOT HIGHS_DIST)
  execute_process(
    COMMAND "${Python_EXECUTABLE}" -c "import highsbox; print(highsbox.highs_dist_dir())"
    OUTPUT_VARIABLE HIGHS_DIST OUTPUT_STRIP_TRAILING_WHITESPACE
    RESULT_VARIABLE _highs_found)
  if(NOT _highs_found EQUAL 0)
    message(FATAL_ERROR "HiGHS not found: install the Python package highsbox "
                        "into ${Python_EXECUTABLE} or pass -DHIGHS_DIST=<dir>")
  endif()
endif()
find_library(HIGHS_LIBRARY NAMES highs PATHS "${HIGHS_DIST}/lib" "${HIGHS_DIST}/lib64"
             NO_DEFAULT_PATH REQUIRED)
find_path(HIGHS_INCLUDE_DIR Highs.h PATHS "${HIGHS_DIST}/include/highs" NO_DEFAULT_PATH
          REQUIRED)
add_library(highs::highs SHARED IMPORTED)
set_target_properties(highs::highs PROPERTIES
  IMPORTED_LOCATION "${HIGHS_LIBRARY}"
  INTERFACE_INCLUDE_DIRECTORIES "${HIGHS_INCLUDE_DIR}")
message(STATUS "HiGHS: ${HIGHS_LIBRARY}")
