# Every target of the house builds with these; a warning is an error. GCC 12 sees overlapping copies where it inlines
# "text" + std::string (its bug 105651), so -Wrestrict is off.
add_library(hw_warnings INTERFACE)
target_compile_options(hw_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                             -Wnon-virtual-dtor -Woverloaded-virtual -Wno-restrict -Werror)
if(HWAGENT_SANITIZE)
  add_compile_options(-fsanitize=${HWAGENT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${HWAGENT_SANITIZE})
endif()

# What runs as root on servers is built so that a fault in it is hard to use: position-independent, with checked copies,
# guarded stacks and returns, and no table of the loader left writable.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
add_library(hw_hardening INTERFACE)
if(CMAKE_BUILD_TYPE STREQUAL Release AND NOT HWAGENT_SANITIZE)
  target_compile_options(hw_hardening INTERFACE -fstack-protector-strong -fstack-clash-protection -fcf-protection
                                                -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()
