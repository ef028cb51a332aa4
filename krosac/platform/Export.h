// Macros for public headers. KROSAC_API marks exported symbols. KROSAC_C_BEGIN and KROSAC_C_END
// enclose functions with C linkage, which lie in namespace krosac in C++, so that one header serves
// C, C++ and languages that call C. KROSAC_CONSTANT begins the definition of a constant there.
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
