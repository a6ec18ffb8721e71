# Locates Ipopt as installed by Debian's coinor-libipopt-dev (scripts/setup.sh)
# and defines the imported target ipopt::ipopt. The package's pkg-config file
# names static LAPACK/BLAS libraries that are not installed, so the shared
# library and the headers are found directly.
find_path(IPOPT_INCLUDE_DIR IpTNLP.hpp PATH_SUFFIXES coin coin-or REQUIRED)
find_library(IPOPT_LIBRARY NAMES ipopt REQUIRED)
add_library(ipopt::ipopt SHARED IMPORTED)
set_target_properties(ipopt::ipopt PROPERTIES
  IMPORTED_LOCATION "${IPOPT_LIBRARY}"
  INTERFACE_INCLUDE_DIRECTORIES "${IPOPT_INCLUDE_DIR}"
  INTERFACE_COMPILE_DEFINITIONS HAVE_CSTDDEF)
message(STATUS "Ipopt: ${IPOPT_LIBRARY}")
