# Reading Qt's headers is most of what compiling this project costs: the compiler does it once for what is shipped and
# once, with less optimisation, for what only tests and shows it.
#
# Every file includes what it uses all the same: `./dev lint` compiles each of them without this.

# add_precompiled_headers(<library>): Qt's headers as the directory that calls this compiles them.
function(add_precompiled_headers library)
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${library}.cpp CONTENT "")
  add_library(${library} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${library}.cpp)
  set_target_properties(${library} PROPERTIES AUTOMOC OFF)
  # Qt5::DBus is not linked: what it defines would have to be defined wherever this is used.
  target_link_libraries(${library} PRIVATE project_options Qt5::Core)
  target_include_directories(${library} SYSTEM PRIVATE ${Qt5DBus_INCLUDE_DIRS})
  target_precompile_headers(${library} PRIVATE
    <QByteArray> <QCoreApplication> <QDebug> <QElapsedTimer> <QFile> <QHash> <QLoggingCategory> <QMap> <QObject>
    <QProcess> <QString> <QStringList> <QTimer> <QVariantMap> <QVector>
    <QDBusArgument> <QDBusConnection> <QDBusMessage> <QDBusObjectPath> <QDBusPendingCallWatcher> <QDBusPendingReply>
    <QDBusReply> <QDBusVariant>
    <algorithm> <functional> <memory>)
endfunction()

# use_precompiled_headers(<library> <directory>...): in all targets of these directories and those below them, but those
# that are compiled with definitions of their own that Qt's or the system's headers look at.
function(use_precompiled_headers library)
  foreach(directory IN LISTS ARGN)
    get_property(targets DIRECTORY ${directory} PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
      get_target_property(type ${target} TYPE)
      get_target_property(linked ${target} LINK_LIBRARIES)
      get_target_property(excluded ${target} DISABLE_PRECOMPILE_HEADERS)
      if(type MATCHES "EXECUTABLE|STATIC_LIBRARY" AND "project_options" IN_LIST linked AND NOT excluded)
        target_precompile_headers(${target} REUSE_FROM ${library})
      endif()
    endforeach()
    get_property(subdirectories DIRECTORY ${directory} PROPERTY SUBDIRECTORIES)
    use_precompiled_headers(${library} ${subdirectories})
  endforeach()
endfunction()
