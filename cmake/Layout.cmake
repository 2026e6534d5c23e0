# Where things are installed, by one setting: "own" is a home below /usr/local, as an administrator installs it by hand,
# "distribution" are the places of a package, which may own nothing there. The sources and the documents name the own ones.
set(HWAGENT_LAYOUT own CACHE STRING "Places of what is installed: own or distribution")
set_property(CACHE HWAGENT_LAYOUT PROPERTY STRINGS own distribution)
if(NOT HWAGENT_LAYOUT MATCHES "^(own|distribution)$")
  message(FATAL_ERROR "HWAGENT_LAYOUT is own or distribution, not ${HWAGENT_LAYOUT}")
endif()
# Debian's folder; others have theirs elsewhere.
set(HWAGENT_SYSTEM_UNITS /lib/systemd/system CACHE PATH "Folder of service units in the layout distribution")

# hw_place(NAME OWN DISTRIBUTION): HWAGENT_NAME is the one of this layout.
set(HWAGENT_OWN_PLACES "")
set(HWAGENT_PLACES "")
function(hw_place name own distribution)
  set(place ${own})
  if(HWAGENT_LAYOUT STREQUAL "distribution")
    set(place ${distribution})
  endif()
  set(HWAGENT_${name} ${place} PARENT_SCOPE)
  set(HWAGENT_OWN_PLACES ${HWAGENT_OWN_PLACES} ${own} PARENT_SCOPE)
  set(HWAGENT_PLACES ${HWAGENT_PLACES} ${place} PARENT_SCOPE)
endfunction()

# A place goes before the folder that it is in.
hw_place(AGENT /usr/local/hwagent/bin/hwAgent /usr/sbin/hwAgent)
hw_place(QUERY /usr/local/hwagent/bin/hwquery /usr/bin/hwquery)
hw_place(SNMPD_DROP_IN /usr/local/hwagent/conf/snmpd-hwagent.conf /etc/snmp/snmpd.conf.d/hwagent.conf)
hw_place(CONFIGURATION /usr/local/hwagent/conf/hwagent.conf /etc/hwagent/hwagent.conf)
hw_place(TRANSLATIONS /usr/local/share/morvandale /usr/share/hwagent)
hw_place(MIBS /usr/local/hwagent/mibs /usr/share/snmp/mibs)
hw_place(UNITS /usr/local/lib/systemd/system ${HWAGENT_SYSTEM_UNITS})
hw_place(COMPLETIONS /usr/local/share/bash-completion/completions /usr/share/bash-completion/completions)
hw_place(MANUAL /usr/local/share/man /usr/share/man)
hw_place(DOCUMENTS /usr/local/share/doc/hwagent /usr/share/doc/hwagent)

# hw_placed(FILE): writes FILE with this layout's places below the build folder's "placed".
function(hw_placed file)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${file})
  file(READ ${PROJECT_SOURCE_DIR}/${file} text)
  foreach(own place IN ZIP_LISTS HWAGENT_OWN_PLACES HWAGENT_PLACES)
    string(REPLACE "${own}" "${place}" text "${text}")
  endforeach()
  if(HWAGENT_LAYOUT STREQUAL "distribution") # the MIB stands where programs look by themselves
    string(REGEX REPLACE "\n *-M ${HWAGENT_MIBS}[^\n]*" "" text "${text}")
  endif()
  file(WRITE ${PROJECT_BINARY_DIR}/placed/${file} "${text}")
endfunction()

# The compiled-in ones.
configure_file(${PROJECT_SOURCE_DIR}/src/common/Paths.hpp.in ${PROJECT_BINARY_DIR}/generated/common/Paths.hpp @ONLY)
