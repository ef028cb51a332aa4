// Writes a starting corpus for each fuzz target: make_seeds DATA_FOLDER CORPUS_FOLDER.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "krosac/krosac.h"

using namespace krosac;

namespace {

std::filesystem::path corpora;

void add(const std::string& target, const std::string& name, const std::string& bytes) {
  std::filesystem::create_directories(corpora / target);
  std::ofstream(corpora / target / ("seed_" + name), std::ios::binary) << bytes;
}

std::string textOf(const Ref<ByteBuffer>& bytes) {
  return {reinterpret_cast<const char*>(bytes->bytes()), bytes->length()};
}

// Bytes that arguments are drawn from; they differ between the seeds.
std::string arguments(std::size_t count, unsigned seed) {
  std::string bytes;
  for (; count > 0; --count) {
    seed = seed * 1664525u + 1013904223u;
    bytes.push_back(static_cast<char>(seed >> 24));
  }
  return bytes;
}

template <typename T>
Ref<T> made() {
  auto object = make<T>();
  object->init();
  return object;
}

Ref<SacObject> seismogram(std::int32_t n) {
  auto s = make<SacObject>();
  s->initWithCapacity(n);
  for (std::int32_t i = 0; i < n; ++i)
    s->GetSacSeis()[i] = static_cast<float>(i % 7) - 0.5f * static_cast<float>(i % 3);
  s->setStationID("TLY");
  s->setComponentName("BHZ");
  s->setoriginTimeOffset(-20.0f);
  s->setEventLocationLat_Lon_Depth(38.3f, 142.4f, 29.0f);
  s->setStationLocationLat_Lon_Elevation(51.7f, 103.6f, 579.0f);
  auto time = make<SeisTimeObject>();
  time->initWithValues_month_date_hour_minute_second_millisecond(2011, 3, 11, 5, 46, 23, 500.0);
  s->replaceReferenceTimeWith(time);
  s->GetSacHeader()->NVHDR = kSacHeaderVersion;
  s->ComputeExtrema();
  return s;
}

void addImages() {
  for (const std::int32_t n : {0, 1, 100}) {
    const auto image = seismogram(n)->myData();
    const auto foreign = ByteBuffer::copyOf(image->bytes(), image->length());
    reverseSACBytes(*foreign);
    const std::string count = std::to_string(n), tail = arguments(16, static_cast<unsigned>(n));
    add("sac_images", "native" + count, textOf(image) + tail);
    add("sac_images", "foreign" + count, textOf(foreign) + tail);
    add("sac_images", "longer" + count, textOf(image) + "more" + tail);
  }
}

void addArchive(const Archivable& object) {
  std::string bytes = textOf(archive(object));
  bytes.resize(bytes.size() - 5);  // the target appends the checksum
  add("keyed_archives", object.archiveClassName(), bytes);
}

void addArchives() {
  const auto station = made<kroSeismicStation>();
  station->setStationCode("TLY");
  station->setFileNames({"a", "bc"});
  const auto phase = made<kroSeismicPhase>();
  phase->parseEDRPrimaryPhase("P TLY  eP      000541.80   0.3   29.84 301.5 1.1   63.0 5.7");
  phase->setStation(station);
  const auto hypocenter = made<kroHypocenter>();
  hypocenter->parseEDRHypocenter("HY20031231 235950.00 38.297N 142.373E  29.0");
  const auto second = phase->copyWithZone();
  second->setStation(station);  // shared, and the phase below too
  hypocenter->setPhases({phase, second, phase});
  const auto s = seismogram(20);
  const auto addAll = [](const auto&... objects) { (addArchive(*objects), ...); };
  addAll(s, s->mySeisReferenceTime(), made<kroGeoLocation>(), station, phase, hypocenter,
         made<kroSeismicOrigin>());

  // More objects within one another than an archive may hold, behind the front of another archive.
  std::string deep = textOf(archive(*station)).substr(0, 15);
  for (int depth = 0; depth <= kDeepestNesting; ++depth) deep += "\xd8\x1c\xbf\x66@class\x61x\x61k";
  add("keyed_archives", "deep", deep);
}

// The first byte chooses the reader; a long file is cut.
void addTables(const std::filesystem::path& data) {
  int reader = 0;
  for (const std::string name :
       {"jbtables", "pcp", "iasp91_p", "iasp91_pcs", "PsNMO", "locsat_P", "pcp"}) {
    const std::string table = textOf(ByteBuffer::fromFile(data / (name + ".txt")));
    for (const unsigned length : {3000u, 60000u}) {
      add("tables", std::to_string(reader) + "_" + std::to_string(length),
          static_cast<char>(reader) + arguments(47, length) + table.substr(0, length));
    }
    ++reader;
  }
  add("tables", "small",
      '\5' + arguments(47, 1) +
          "n # table\n2\n0. 33.\n3\n0. 10. 20.\n# z\n0.\n140.\n270.\n#\n5.\n138.\n-1.\n");
}

void addTexts() {
  add("pole_zero", "response",
      "* a response\nZEROS 3\n0 0\n0.0 0.0\nPOLES 4\n-0.037 0.037\n-0.037 -0.037\n"
      "-131.04 467.29\n-131.04 -467.29\nCONSTANT 2.9e+10\n");
  add("catalog_lines", "report",
      "HHY20031231 235950.00 38.297N 142.373E  29.0\n"
      "EE                           5.8  41\n"
      "PP TLY  eP      000541.80   0.3   29.84 301.5 1.1   63.0 5.7\n"
      "SiS      000920.50                   Lg      001144.00\n-\n"
      "MM      Z 20.0    3.4                             MSZ 5.6\n"
      "CePn-\nTTLY   514051.0N1033838.0E 579.0 Talaya, Russia\n");
  add("dispersion_files", "curve",
      std::string(1, '\0') +
          "# Group velocities   KESTRAV\n# Station       TLY 51.68 103.64 BHZ\n"
          "# Event      38.3 142.4 29.0\n# Measured with version   ab12 cd\n# 5\n# 6\n# 7\n"
          "# Mode isolation, as the measuring program wrote it    1\n# 9\n# 10\n# 11\n# 12\n"
          "20 21.5 3.1 3.2 -0.2 0.4 5 6\n\n30 19.5 3.3 3.4 0.1 -0.1 7 8\n");
}

void addArguments() {
  const std::string image = textOf(seismogram(10)->myData());
  for (unsigned seed = 1; seed <= 20; ++seed) {
    add("sac_routines", std::to_string(seed), arguments(128, seed) + image);
    add("seismogram_operations", std::to_string(seed), arguments(400, seed));
    add("series_operations", std::to_string(seed), arguments(200, seed));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return std::fprintf(stderr, "usage: make_seeds DATA_FOLDER CORPUS_FOLDER\n");
  corpora = argv[2];
  addImages();
  addArchives();
  addTables(argv[1]);
  addTexts();
  addArguments();
}
