// The header fields that can be reached by name.
#ifndef KROSAC_SACIO_INTERNAL_HEADERNAMES_H
#define KROSAC_SACIO_INTERNAL_HEADERNAMES_H

#include <cstddef>
#include <string_view>

#include "krosac/sacio/SacHeader.h"

namespace krosac {

enum class FieldKind { kFloat, kInteger, kText, kEnumerated, kLogical };

struct NamedField {
  FieldKind kind;
  std::string_view name;
  std::size_t offset;  // in SacHeader, bytes
};

#define FIELD(KIND, NAME)                             \
  NamedField {                                        \
    FieldKind::KIND, #NAME, offsetof(SacHeader, NAME) \
  }

inline constexpr NamedField kNamedFields[] = {
    FIELD(kFloat, B),        FIELD(kFloat, E),        FIELD(kFloat, DELTA),
    FIELD(kFloat, DEPMIN),   FIELD(kFloat, DEPMEN),   FIELD(kFloat, DEPMAX),
    FIELD(kFloat, EVLA),     FIELD(kFloat, EVLO),     FIELD(kFloat, EVDP),
    FIELD(kFloat, STLA),     FIELD(kFloat, STLO),     FIELD(kFloat, STEL),
    FIELD(kFloat, CMPAZ),    FIELD(kFloat, CMPINC),   FIELD(kFloat, DIST),
    FIELD(kFloat, GCARC),    FIELD(kFloat, AZ),       FIELD(kFloat, BAZ),
    FIELD(kFloat, O),        FIELD(kFloat, A),        FIELD(kFloat, T0),
    FIELD(kFloat, T1),       FIELD(kFloat, T2),       FIELD(kFloat, T3),
    FIELD(kFloat, T4),       FIELD(kFloat, T5),       FIELD(kFloat, T6),
    FIELD(kFloat, T7),       FIELD(kFloat, T8),       FIELD(kFloat, T9),
    FIELD(kFloat, USER0),    FIELD(kFloat, USER1),    FIELD(kFloat, USER2),
    FIELD(kFloat, USER3),    FIELD(kFloat, USER4),    FIELD(kFloat, USER5),
    FIELD(kFloat, USER6),    FIELD(kFloat, USER7),    FIELD(kFloat, USER8),
    FIELD(kFloat, USER9),    FIELD(kInteger, NZYEAR), FIELD(kInteger, NZJDAY),
    FIELD(kInteger, NZHOUR), FIELD(kInteger, NZMIN),  FIELD(kInteger, NZSEC),
    FIELD(kInteger, NZMSEC), FIELD(kInteger, NVHDR),  FIELD(kInteger, NPTS),
    FIELD(kText, KCMPNM),    FIELD(kText, KSTNM),     FIELD(kEnumerated, IFTYPE),
    FIELD(kLogical, LEVEN),
};

#undef FIELD

}  // namespace krosac

#endif
