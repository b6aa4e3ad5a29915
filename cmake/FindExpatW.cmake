# Expat with 16-bit characters, libexpatw, for which Debian ships neither a CMake package nor a pkg-config file.
#
#   ExpatW::ExpatW       the library with its header and the definitions that the header needs to declare all of it
#   ExpatW_VERSION       as the header says
#   ExpatW_STATIC        whether the library is an archive; its symbols must then be kept out of the module's
#
# ZUTARNEX_EXPATW_ROOT names a folder that holds an unpacked development package (usr/include/expat.h and
# usr/lib/<architecture>/libexpatw.a). It is for platforms whose package cannot be installed beside the machine's own:
# the archive is taken from there, and nothing is looked for elsewhere.
set(ZUTARNEX_EXPATW_ROOT "" CACHE PATH "Folder of an unpacked Expat development package with libexpatw.a")

if(ZUTARNEX_EXPATW_ROOT)
    find_path(ExpatW_INCLUDE_DIR expat.h PATHS ${ZUTARNEX_EXPATW_ROOT} PATH_SUFFIXES usr/include include
              NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    find_library(ExpatW_LIBRARY libexpatw.a PATHS ${ZUTARNEX_EXPATW_ROOT} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH
                 PATH_SUFFIXES usr/lib/${CMAKE_LIBRARY_ARCHITECTURE} lib/${CMAKE_LIBRARY_ARCHITECTURE} usr/lib lib)
    set(expatw_hint "${ZUTARNEX_EXPATW_ROOT} (ZUTARNEX_EXPATW_ROOT) must hold usr/include/expat.h and "
                    "usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/libexpatw.a: unpack libexpat1-dev with `dpkg-deb -x`.")
else()
    find_path(ExpatW_INCLUDE_DIR expat.h)
    find_library(ExpatW_LIBRARY expatw)
    set(expatw_hint "Install it (Debian: libexpat1-dev), or unpack that package for ${CMAKE_SYSTEM_PROCESSOR} with "
                    "`dpkg-deb -x` and name the folder by -DZUTARNEX_EXPATW_ROOT=...")
endif()
list(JOIN expatw_hint "" expatw_hint)
mark_as_advanced(ExpatW_INCLUDE_DIR ExpatW_LIBRARY)

if(ExpatW_INCLUDE_DIR)
    set(ExpatW_VERSION)
    foreach(part MAJOR MINOR MICRO)
        file(STRINGS ${ExpatW_INCLUDE_DIR}/expat.h line REGEX "^#[ \t]*define XML_${part}_VERSION [0-9]+")
        string(REGEX REPLACE "^.*_VERSION ([0-9]+).*$" "\\1" number "${line}")
        list(APPEND ExpatW_VERSION ${number})
    endforeach()
    list(JOIN ExpatW_VERSION "." ExpatW_VERSION)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(ExpatW REQUIRED_VARS ExpatW_LIBRARY ExpatW_INCLUDE_DIR
                                  VERSION_VAR ExpatW_VERSION
                                  REASON_FAILURE_MESSAGE
                                  "The parser plug-in needs Expat with 16-bit characters. ${expatw_hint}")

if(ExpatW_FOUND AND NOT TARGET ExpatW::ExpatW)
    if(ExpatW_LIBRARY MATCHES "\\.a$")
        set(ExpatW_STATIC TRUE)
        set(expatw_definitions XML_UNICODE XML_DTD XML_STATIC)
    else()
        set(ExpatW_STATIC FALSE)
        set(expatw_definitions XML_UNICODE XML_DTD)
    endif()
    add_library(ExpatW::ExpatW UNKNOWN IMPORTED)
    set_target_properties(ExpatW::ExpatW PROPERTIES
                          IMPORTED_LOCATION "${ExpatW_LIBRARY}"
                          INTERFACE_INCLUDE_DIRECTORIES "${ExpatW_INCLUDE_DIR}"
                          INTERFACE_COMPILE_DEFINITIONS "${expatw_definitions}")
endif()
