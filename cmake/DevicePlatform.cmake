# BUNDLED_PLATFORM=OFF: the device's own platform libraries, under the same names as the bundled ones (Platform::led
# and so on). Each is found as a CMake package libled that defines the target libled::libled, or else as a pkg-config
# module libled; its include directory is the one above libled/Led.h.

find_package(PkgConfig QUIET)

# Sets `result` to the imported target of the library, or to nothing.
function(find_device_library library result)
  find_package(${library} CONFIG QUIET)
  if(NOT TARGET ${library}::${library} AND PkgConfig_FOUND)
    pkg_check_modules(DEVICE_${library} QUIET IMPORTED_TARGET ${library})
  endif()
  set(${result} "" PARENT_SCOPE)
  foreach(target ${library}::${library} PkgConfig::DEVICE_${library})
    if(TARGET ${target})
      set(${result} ${target} PARENT_SCOPE)
      break()
    endif()
  endforeach()
endfunction()

set(missing_libraries "")
foreach(name tactora translation led keyboard speech)
  find_device_library(lib${name} device_library)
  if(device_library)
    add_library(Platform::${name} ALIAS ${device_library})
  else()
    list(APPEND missing_libraries lib${name})
  endif()
endforeach()

if(missing_libraries)
  list(JOIN missing_libraries ", " missing_libraries)
  message(FATAL_ERROR "The device's platform libraries are not complete. Missing: ${missing_libraries}. "
    "Name the directory of its CMake packages in CMAKE_PREFIX_PATH or that of its pkg-config modules in PKG_CONFIG_PATH, "
    "or configure with -DBUNDLED_PLATFORM=ON.")
endif()
