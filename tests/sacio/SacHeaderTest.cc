#include "krosac/sacio/SacHeader.h"

#include <gtest/gtest.h>

#include "krosac/sacio/SacFile.h"
#include "sacio/SacImage.h"

namespace krosac {
namespace {

#define F(NAME) offsetof(SacHeader, NAME)

TEST(SacHeader, FieldsHaveTheOffsetsOfTheFormat) {
  // clang-format off
  const std::size_t offsets[] = {
F(DELTA), F(DEPMIN), F(DEPMAX), F(SCALE), F(ODELTA), F(B), F(E), F(O), F(A), F(INTERNAL1), F(T0),
F(T1), F(T2), F(T3), F(T4), F(T5), F(T6), F(T7), F(T8), F(T9), F(F), F(RESP0), F(RESP1), F(RESP2),
F(RESP3), F(RESP4), F(RESP5), F(RESP6), F(RESP7), F(RESP8), F(RESP9), F(STLA), F(STLO), F(STEL),
F(STDP), F(EVLA), F(EVLO), F(EVEL), F(EVDP), F(MAG), F(USER0), F(USER1), F(USER2), F(USER3),
F(USER4), F(USER5), F(USER6), F(USER7), F(USER8), F(USER9), F(DIST), F(AZ), F(BAZ), F(GCARC),
F(INTERNAL2), F(INTERNAL3), F(DEPMEN), F(CMPAZ), F(CMPINC), F(XMINIMUM), F(XMAXIMUM), F(YMINIMUM),
F(YMAXIMUM), F(UNUSED1), F(UNUSED2), F(UNUSED3), F(UNUSED4), F(UNUSED5), F(UNUSED6), F(UNUSED7),
F(NZYEAR), F(NZJDAY), F(NZHOUR), F(NZMIN), F(NZSEC), F(NZMSEC), F(NVHDR), F(NORID), F(NEVID),
F(NPTS), F(INTERNAL4), F(NWFID), F(NXSIZE), F(NYSIZE), F(UNUSED8), F(IFTYPE), F(IDEP), F(IZTYPE),
F(UNUSED9), F(IINST), F(ISTREG), F(IEVREG), F(IEVTYP), F(IQUAL), F(ISYNTH), F(IMAGTYP),
F(IMAGSRC), F(UNUSED10), F(UNUSED11), F(UNUSED12), F(UNUSED13), F(UNUSED14), F(UNUSED15),
F(UNUSED16), F(UNUSED17), F(LEVEN), F(LPSPOL), F(LOVROK), F(LCALDA), F(UNUSED18), F(KSTNM),
F(KEVNM), F(KHOLE), F(KO), F(KA), F(KT0), F(KT1), F(KT2), F(KT3), F(KT4), F(KT5), F(KT6), F(KT7),
F(KT8), F(KT9), F(KF), F(KUSER0), F(KUSER1), F(KUSER2), F(KCMPNM), F(KNETWK), F(KDATRD), F(KINST)};
  // clang-format on
  for (std::size_t expected = 0; const std::size_t offset : offsets) {
    EXPECT_EQ(offset, expected);
    expected += offset < 440 ? 4 : offset == F(KEVNM) ? 16 : 8;
  }
}

TEST(SacHeader, TemplateAndNewHeaderBytes) {
  EXPECT_EQ(bytesOf(kSacHeaderTemplate), headerImage());
  SacHeader header = {};
  NewSacHeader(&header);
  EXPECT_EQ(bytesOf(header), headerImage({{304, 6}, {312, 0}, {424, 0}, {432, 1}, {436, 0}}));
  NewSacHeader(nullptr);
}

}  // namespace
}  // namespace krosac
