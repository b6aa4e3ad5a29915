# 32-bit x86 on a 64-bit machine: the compiler's multilib, SSE2 as the floor. Hosts call with a stack that is only
# four-byte aligned, hence -mstackrealign.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i386)
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)

set(ZUTARNEX_I386_FLAGS "-m32 -msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_C_FLAGS_INIT "${ZUTARNEX_I386_FLAGS}")
set(CMAKE_CXX_FLAGS_INIT "${ZUTARNEX_I386_FLAGS}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-m32")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-m32")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-m32")

