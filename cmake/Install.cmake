# The agent lives under one directory, which the watcher's restart path and the configuration path name as constants.
# The places are absolute on purpose; DESTDIR puts a staged tree in front of them.
set(HWAGENT_HOME /usr/local/hwagent)
foreach(program hwAgent hwquery)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION ${HWAGENT_HOME}/bin)
  endif()
endforeach()
# The configuration is the administrator's once it is there: an upgrade puts the new one beside it.
install(CODE "
  set(place \"${HWAGENT_HOME}/conf\")
  set(name hwagent.conf)
  if(EXISTS \"\$ENV{DESTDIR}\${place}/hwagent.conf\")
    set(name hwagent.conf.dist)
  endif()
  file(INSTALL \"${PROJECT_SOURCE_DIR}/packaging/hwagent.conf\" DESTINATION \"\${place}\" RENAME \"\${name}\")
")
# The default directory of the query interface for its translation files.
install(DIRECTORY ${PROJECT_BINARY_DIR}/translations/ DESTINATION /usr/local/share/morvandale
        FILES_MATCHING PATTERN "*.ini")
install(DIRECTORY share/mibs/ DESTINATION ${HWAGENT_HOME}/mibs)
# For the administrator to copy to snmpd's own folder.
install(FILES packaging/snmpd-hwagent.conf DESTINATION ${HWAGENT_HOME}/conf)
install(FILES packaging/hwagent.service DESTINATION /usr/local/lib/systemd/system)
# Where bash-completion looks for what is not a distribution's.
install(FILES packaging/hwquery.bash DESTINATION /usr/local/share/bash-completion/completions RENAME hwquery)
foreach(section 1 5 7 8)
  file(GLOB pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/*.${section})
  install(FILES ${pages} DESTINATION /usr/local/share/man/man${section})
endforeach()
