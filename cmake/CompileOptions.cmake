# What every target of this project is compiled and linked with, in one place.
# Link `project_options` to get the language level, the warnings, the hardening
# and (in the asan and coverage presets) the instrumentation.

option(WARNINGS_AS_ERRORS "Treat compiler warnings as errors (as the presets do)" OFF)
set(SANITIZE "" CACHE STRING "Sanitizers to build with, e.g. address,undefined")
option(COVERAGE "Instrument for gcov" OFF)

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_17)
target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${WARNINGS_AS_ERRORS}>:-Werror>
  # Release log lines name their file, line and function; the path is the source tree's own.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
target_compile_definitions(project_options INTERFACE
  QT_MESSAGELOGCONTEXT
  QT_NO_CAST_TO_ASCII
  QT_NO_CAST_FROM_ASCII
  QT_NO_FOREACH
  QT_NO_URL_CAST_FROM_STRING
  QT_STRICT_ITERATORS
  QT_DEPRECATED_WARNINGS
  QT_DISABLE_DEPRECATED_BEFORE=0x050f00)

# Hardening. Fortified functions need an optimised build and no sanitizer; who sets their level in the flags, as Debian's
# package builds do, is not contradicted.
target_compile_options(project_options INTERFACE -fstack-protector-strong)
target_link_options(project_options INTERFACE LINKER:-z,relro,-z,now)
string(TOUPPER "CMAKE_CXX_FLAGS_${CMAKE_BUILD_TYPE}" build_type_flags)
set(all_flags "${CMAKE_CXX_FLAGS} ${${build_type_flags}}")
if(all_flags MATCHES "-O[1-3s]" AND NOT all_flags MATCHES "_FORTIFY_SOURCE" AND NOT SANITIZE)
  target_compile_options(project_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()

if(SANITIZE)
  target_compile_options(project_options INTERFACE
    -fsanitize=${SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(project_options INTERFACE -fsanitize=${SANITIZE})
endif()
if(COVERAGE)
  target_compile_options(project_options INTERFACE --coverage)
  target_link_options(project_options INTERFACE --coverage)
endif()
