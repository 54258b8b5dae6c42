# What every target of the project is compiled with.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Where an installed program finds its libraries, wherever the tree is put.
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR};$ORIGIN")

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

# -ffp-contract=off: a fused multiply-add would change bits between targets. The other two let masked
# loops and square roots become vector code; no result depends on errno or on floating-point traps.
add_compile_options(-Wall -Wextra -ffp-contract=off -fno-math-errno -fno-trapping-math)
string(REPLACE "-O2" "-O3" CMAKE_CXX_FLAGS_RELWITHDEBINFO "${CMAKE_CXX_FLAGS_RELWITHDEBINFO}")
# GCC 12 warns of overlapping copies inside std::string where there are none.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options(-Wno-restrict)
endif()
if(RASTEROPS_WERROR)
  add_compile_options(-Werror)
endif()
if(RASTEROPS_SANITIZE)
  add_compile_options(-fsanitize=${RASTEROPS_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${RASTEROPS_SANITIZE})
endif()

find_program(RASTEROPS_CCACHE ccache)
if(RASTEROPS_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${RASTEROPS_CCACHE})
endif()
