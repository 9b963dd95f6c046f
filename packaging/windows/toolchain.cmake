# Compiles for Windows with mingw-w64. LENS_WINDOWS_ARCH is x86_64 or i686; LENS_WINDOWS_PREFIX is where
# build_libraries.sh put Qt, SQLite and ICU.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES LENS_WINDOWS_ARCH LENS_WINDOWS_PREFIX)
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_VERSION 10.0)
set(CMAKE_SYSTEM_PROCESSOR ${LENS_WINDOWS_ARCH})

set(tools ${LENS_WINDOWS_ARCH}-w64-mingw32)
# Those with POSIX threads have the threads of the standard library.
set(CMAKE_C_COMPILER ${tools}-gcc-posix)
set(CMAKE_CXX_COMPILER ${tools}-g++-posix)
set(CMAKE_ASM_COMPILER ${tools}-gcc-posix)
set(CMAKE_RC_COMPILER ${tools}-windres)

# One file to unpack and start: the compiler's own libraries are in it as well.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

# Libraries and headers of this system are none of Windows; its programs are used.
set(CMAKE_FIND_ROOT_PATH ${LENS_WINDOWS_PREFIX} /usr/${tools})
set(CMAKE_PREFIX_PATH ${LENS_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
