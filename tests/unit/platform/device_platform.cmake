# Configures the project for a device that has the maker's platform libraries, all of them or all but one.
#
#   SOURCE   the project          WORK     a directory of this test's own
#   FORM     pkgconfig or cmake: how the libraries can be found
#   MISSING  the library that the device lacks, or nothing

set(all_libraries libtactora libtranslation libled libkeyboard libspeech)
set(libraries ${all_libraries})
list(REMOVE_ITEM libraries "${MISSING}")

function(provide_by_pkgconfig library)
  string(REGEX REPLACE "^lib" "" name ${library})
  file(WRITE ${WORK}/device/lib/pkgconfig/${library}.pc
"Name: ${library}
Description: as on the device
Version: 1.0
Cflags: -I${WORK}/device/include
Libs: -L${WORK}/device/lib -l${name}
")
endfunction()

function(provide_by_cmake library)
  string(REGEX REPLACE "^lib" "" name ${library})
  file(WRITE ${WORK}/device/lib/cmake/${library}/${library}Config.cmake
"add_library(${library}::${library} STATIC IMPORTED)
set_target_properties(${library}::${library} PROPERTIES
  IMPORTED_LOCATION ${WORK}/device/lib/lib${name}.a
  INTERFACE_INCLUDE_DIRECTORIES ${WORK}/device/include)
")
endfunction()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/device/include)
foreach(library ${libraries})
  file(WRITE ${WORK}/device/lib/${library}.a "!<arch>\n")
  cmake_language(CALL provide_by_${FORM} ${library})
endforeach()

set(ENV{PKG_CONFIG_PATH} ${WORK}/device/lib/pkgconfig)
execute_process(
  COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G Ninja
    -DBUNDLED_PLATFORM=OFF -DBUILD_TESTING=OFF -DCMAKE_PREFIX_PATH=${WORK}/device
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)

if(MISSING)
  # CMake breaks long messages into lines.
  string(REGEX REPLACE "[ \n]+" " " message "${output}")
  if(status EQUAL 0 OR NOT message MATCHES "Missing: ${MISSING}\\.")
    message(FATAL_ERROR "Status ${status}, and no word of ${MISSING} missing:\n${output}")
  endif()
  return()
endif()

if(NOT status EQUAL 0)
  message(FATAL_ERROR "Status ${status}:\n${output}")
endif()
file(STRINGS ${WORK}/build/build.ninja link_libraries REGEX "LINK_LIBRARIES = .*libled\\.a")
foreach(library ${all_libraries})
  if(NOT link_libraries MATCHES "${WORK}/device/lib/${library}\\.a")
    message(FATAL_ERROR "The daemon is not linked with the device's ${library}:\n${link_libraries}")
  endif()
endforeach()
