# Every target of the house builds with these; a warning is an error. GCC 12 sees overlapping copies where -O3 inlines
# "text" + std::string (its bug 105651), so -Wrestrict is off.
add_library(hw_warnings INTERFACE)
target_compile_options(hw_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                             -Wnon-virtual-dtor -Woverloaded-virtual -Wno-restrict -Werror)
if(HWAGENT_SANITIZE)
  add_compile_options(-fsanitize=${HWAGENT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${HWAGENT_SANITIZE})
endif()
