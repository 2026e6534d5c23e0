# Every target of the house builds with these; a warning is an error. GCC 12 sees overlapping copies where it inlines
# "text" + std::string, and copies past the end of short strings (its bugs 105651 and 105329), so three warnings are off.
# clang builds the fuzz targets alone, and what it warns of is clang-tidy's to say.
add_library(hw_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  target_compile_options(hw_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                               -Wnon-virtual-dtor -Woverloaded-virtual -Wno-restrict -Wno-array-bounds
                                               -Wno-stringop-overflow
                                               -Werror)
endif()
if(HWAGENT_SANITIZE)
  add_compile_options(-fsanitize=${HWAGENT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${HWAGENT_SANITIZE})
endif()

# What runs as root on servers is built so that a fault in it is hard to use: position-independent, with checked copies,
# guarded stacks and returns, and no table of the loader left writable.
add_library(hw_hardening INTERFACE)
target_compile_options(hw_hardening INTERFACE -fPIE)
target_link_options(hw_hardening INTERFACE -pie)
if(CMAKE_BUILD_TYPE STREQUAL Release AND NOT HWAGENT_SANITIZE)
  target_compile_options(hw_hardening INTERFACE -fstack-protector-strong -fstack-clash-protection -fcf-protection
                                                -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  target_link_options(hw_hardening INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
  # The objects also hold what the link-time check of types reads; a usual link takes their machine code.
  if(HWAGENT_TESTS)
    target_compile_options(hw_hardening INTERFACE -flto -ffat-lto-objects)
    add_link_options(-fno-lto)
  endif()
endif()
