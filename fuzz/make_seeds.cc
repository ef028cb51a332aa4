// Writes a starting corpus for each fuzz target: make_seeds DATA_FOLDER CORPUS_FOLDER.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "krosac/krosac.h"

namespace {

using namespace krosac;
namespace fs = std::filesystem;

class Corpus {
 public:
  Corpus(const fs::path& folder, const std::string& target) : folder_(folder / target) {
    fs::create_directories(folder_);
  }
  void add(const std::string& name, const std::string& bytes) const {
    std::ofstream(folder_ / ("seed_" + name), std::ios::binary) << bytes;
  }

 private:
  fs::path folder_;
};

std::string textOf(const Ref<ByteBuffer>& bytes) {
  return {reinterpret_cast<const char*>(bytes->bytes()), bytes->length()};
}

std::string read(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Bytes that arguments are drawn from, different ones for each seed.
std::string arguments(std::size_t count, unsigned seed) {
  std::string bytes;
  for (; count > 0; --count) {
    seed = seed * 1664525u + 1013904223u;
    bytes.push_back(static_cast<char>(seed >> 24));
  }
  return bytes;
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

void makeImages(const fs::path& folder) {
  const Corpus corpus(folder, "sac_images");
  for (const std::int32_t n : {0, 1, 100}) {
    const auto image = seismogram(n)->myData();
    const auto foreign = ByteBuffer::copyOf(image->bytes(), image->length());
    reverseSACBytes(*foreign);
    const std::string tail = arguments(16, static_cast<unsigned>(n));
    corpus.add("native" + std::to_string(n), textOf(image) + tail);
    corpus.add("foreign" + std::to_string(n), textOf(foreign) + tail);
    corpus.add("longer" + std::to_string(n), textOf(image) + "more" + tail);
  }
}

void makeArchives(const fs::path& folder) {
  const Corpus corpus(folder, "keyed_archives");
  const auto add = [&](const Archivable& object) {
    std::string bytes = textOf(archive(object));
    bytes.resize(bytes.size() - 4);  // the target puts the checksum behind it
    corpus.add(object.archiveClassName(), bytes);
  };
  add(*seismogram(20));
  add(*Ref<SeisTimeObject>(seismogram(1)->mySeisReferenceTime()));
  auto location = make<kroGeoLocation>();
  location->init();
  location->setLatitude(51.7f);
  add(*location);
  auto station = make<kroSeismicStation>();
  station->init();
  station->setStationCode("TLY");
  station->setFileNames({"a", "bc"});
  add(*station);
  auto hypocenter = make<kroHypocenter>();
  hypocenter->init();
  hypocenter->parseEDRHypocenter("HY20031231 235950.00 38.297N 142.373E  29.0");
  for (int i = 0; i < 2; ++i) {
    auto phase = make<kroSeismicPhase>();
    phase->init();
    phase->parseEDRPrimaryPhase("P TLY  eP      000541.80   0.3   29.84 301.5 1.1   63.0 5.7");
    phase->setStation(station);
    if (i == 0) add(*phase);
    hypocenter->addPhase(phase);
  }
  add(*hypocenter);
  auto origin = make<kroSeismicOrigin>();
  origin->init();
  origin->setEpochtime(1.3e9);
  add(*origin);
}

void makeTables(const fs::path& data, const fs::path& folder) {
  const Corpus corpus(folder, "tables");
  // The reader that the first byte chooses, and the file for it, cut where it is long.
  const std::pair<char, const char*> readers[] = {{0, "jbtables"},   {1, "pcp"},   {2, "iasp91_p"},
                                                  {3, "iasp91_pcs"}, {4, "PsNMO"}, {5, "locsat_P"},
                                                  {6, "pcp"}};
  for (const auto& [reader, name] : readers) {
    const std::string table = read(data / (std::string(name) + ".txt"));
    for (const std::size_t length : {std::size_t{3000}, std::size_t{60000}}) {
      corpus.add(std::to_string(reader) + "_" + std::to_string(length),
                 std::string(1, reader) + arguments(47, static_cast<unsigned>(length)) +
                     table.substr(0, length));
    }
  }
  corpus.add("small", std::string(1, 5) + arguments(47, 1) +
                          "n # table\n2\n0. 33.\n3\n0. 10. 20.\n# z\n0.\n140.\n270.\n#\n5.\n138.\n"
                          "-1.\n");
}

void makeTexts(const fs::path& folder) {
  Corpus(folder, "pole_zero")
      .add("response",
           "* a response\nZEROS 3\n0 0\n0.0 0.0\nPOLES 4\n-0.037 0.037\n-0.037 -0.037\n"
           "-131.04 467.29\n-131.04 -467.29\nCONSTANT 2.9e+10\n");
  Corpus(folder, "catalog_lines")
      .add("report",
           "HHY20031231 235950.00 38.297N 142.373E  29.0\n"
           "EE                           5.8  41\n"
           "PP TLY  eP      000541.80   0.3   29.84 301.5 1.1   63.0 5.7\n"
           "SiS      000920.50                   Lg      001144.00\n-\n"
           "MM      Z 20.0    3.4                             MSZ 5.6\n"
           "CePn-\nTTLY   514051.0N1033838.0E 579.0 Talaya, Russia\n");
  Corpus(folder, "dispersion_files")
      .add("curve",
           std::string(1, '\0') +
               "# Group velocities   KESTRAV\n# Station       TLY 51.68 103.64 BHZ\n"
               "# Event      38.3 142.4 29.0\n# Measured with version   ab12 cd\n# 5\n# 6\n# 7\n"
               "# Mode isolation, as the measuring program wrote it    1\n# 9\n# 10\n# 11\n# 12\n"
               "20 21.5 3.1 3.2 -0.2 0.4 5 6\n\n30 19.5 3.3 3.4 0.1 -0.1 7 8\n");
}

void makeArguments(const fs::path& folder) {
  const std::string image = textOf(seismogram(10)->myData());
  for (unsigned seed = 1; seed <= 20; ++seed) {
    const std::string name = std::to_string(seed);
    Corpus(folder, "sac_routines").add(name, arguments(128, seed) + image);
    Corpus(folder, "seismogram_operations").add(name, arguments(400, seed));
    Corpus(folder, "series_operations").add(name, arguments(200, seed));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: make_seeds DATA_FOLDER CORPUS_FOLDER\n");
    return 1;
  }
  makeImages(argv[2]);
  makeArchives(argv[2]);
  makeTables(argv[1], argv[2]);
  makeTexts(argv[2]);
  makeArguments(argv[2]);
  return 0;
}
