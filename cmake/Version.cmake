# The release, as krosac/platform/Version.h states it, and the ABI number, which is the library's own (docs/versions.md).
#
# The ABI number increases when a program linked with the previous release would no longer run. That happens only in a
# release that find_package reports as incompatible with older ones: a new major release, or a new minor release while the
# major number is 0.
set(KROSAC_ABI_VERSION 1)

set(KROSAC_RELEASE "")
foreach(part MAJOR MINOR PATCH)
  file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/../krosac/platform/Version.h line REGEX "^#define KROSAC_VERSION_${part} [0-9]+$")
  if(NOT line MATCHES "([0-9]+)$")
    message(FATAL_ERROR "krosac/platform/Version.h states no KROSAC_VERSION_${part}")
  endif()
  list(APPEND KROSAC_RELEASE ${CMAKE_MATCH_1})
endforeach()
string(REPLACE ";" "." KROSAC_RELEASE "${KROSAC_RELEASE}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/../krosac/platform/Version.h)

if(KROSAC_RELEASE MATCHES "^0\\.")
  set(KROSAC_COMPATIBILITY SameMinorVersion)
else()
  set(KROSAC_COMPATIBILITY SameMajorVersion)
endif()
