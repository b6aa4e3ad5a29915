# Boost::headers, for the build and for the installed package alike: Boost's own package where there is one, else
# the folder that holds the headers. Debian keeps Boost's package under the 64-bit library folder, where a 32-bit
# build does not look.
if(NOT TARGET Boost::headers)
    find_package(Boost QUIET CONFIG COMPONENTS headers)
endif()
if(NOT TARGET Boost::headers)
    find_path(ZUTARNEX_BOOST_INCLUDE_DIR boost/shared_ptr.hpp HINTS ${Boost_ROOT} $ENV{Boost_ROOT} PATH_SUFFIXES include
              DOC "Folder that holds boost/shared_ptr.hpp")
    if(ZUTARNEX_BOOST_INCLUDE_DIR)
        add_library(Boost::headers INTERFACE IMPORTED)
        set_target_properties(Boost::headers PROPERTIES
                              INTERFACE_INCLUDE_DIRECTORIES "${ZUTARNEX_BOOST_INCLUDE_DIR}")
    endif()
endif()
