# The agent lives under one directory, which the watcher's restart path and the configuration path name as constants.
# The places are absolute on purpose; DESTDIR puts a staged tree in front of them.
set(HWAGENT_HOME /usr/local/hwagent)
install(TARGETS hwAgent RUNTIME DESTINATION ${HWAGENT_HOME}/bin)
install(TARGETS hwquery RUNTIME DESTINATION ${HWAGENT_HOME}/bin)
install(FILES packaging/hwagent.conf DESTINATION ${HWAGENT_HOME}/conf)
install(DIRECTORY share/data/ DESTINATION ${HWAGENT_HOME}/data)
install(FILES share/mibs/HWAGENT-MIB.txt DESTINATION ${HWAGENT_HOME}/mibs)
