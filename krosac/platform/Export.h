// Marks what the shared library exports, and gives the plain functions C linkage inside the
// library's namespace, so that one header serves C, C++ and everything that can call C.
// KROSAC_CONSTANT begins a constant of such a header.
#ifndef KROSAC_PLATFORM_EXPORT_H
#define KROSAC_PLATFORM_EXPORT_H

#define KROSAC_API __attribute__((visibility("default")))

#ifdef __cplusplus
#define KROSAC_CONSTANT constexpr
#define KROSAC_C_BEGIN \
  namespace krosac {   \
  extern "C" {
#define KROSAC_C_END \
  }                  \
  }
#else
#define KROSAC_CONSTANT static const
#define KROSAC_C_BEGIN
#define KROSAC_C_END
#endif

#endif
