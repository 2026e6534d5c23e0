# Every target of the house builds with these; a warning is an error.
add_library(hw_warnings INTERFACE)
target_compile_options(hw_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                             -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(HWAGENT_SANITIZE)
  add_compile_options(-fsanitize=${HWAGENT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${HWAGENT_SANITIZE})
endif()
