// No file or archive crashes or blocks a reader or makes it allocate much more than the input's
// size, and operations leak no memory.
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/stat.h>

#include <atomic>
#include <cstdlib>
#include <limits>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/krosac.h"
#include "krosac/platform/internal/Crc32.h"
#include "robustness/ReferenceBits.h"
#include "seismogram/Traces.h"

// Counts the allocations of this program and its libraries by replacing malloc and its relatives.
// The sanitizers replace them already and call a hook for each.
namespace {

std::atomic<std::size_t> largestAllocation{0};
std::atomic<std::ptrdiff_t> liveAllocations{0};
std::atomic<std::size_t> liveBytes{0}, peakBytes{0};  // not with sanitizers

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kCountsBytes = false;
std::size_t sizeOf(void*) {
  return 0;
}
#else
constexpr bool kCountsBytes = true;
std::size_t sizeOf(void* memory) {
  return ::malloc_usable_size(memory);
}
#endif

void* counted(void* memory, std::size_t bytes) {
  if (bytes > largestAllocation) largestAllocation = bytes;
  if (memory) ++liveAllocations;
  liveBytes += sizeOf(memory);
  if (liveBytes > peakBytes) peakBytes = liveBytes.load();
  return memory;
}

}  // namespace

#pragma GCC visibility push(default)  // the library calls these too
extern "C" {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
void __sanitizer_malloc_hook(const volatile void* memory, std::size_t bytes) {
  counted(const_cast<void*>(memory), bytes);
}
void __sanitizer_free_hook(const volatile void* memory) {
  if (memory) --liveAllocations;
}
#else
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t bytes) {
  return counted(__libc_malloc(bytes), bytes);
}
void* calloc(std::size_t count, std::size_t bytes) {
  return counted(__libc_calloc(count, bytes), count * bytes);
}
void* realloc(void* old, std::size_t bytes) {
  // Both blocks count until the old one is gone, whether or not the system moves it.
  const std::size_t oldBytes = sizeOf(old);
  void* const memory = counted(__libc_realloc(old, bytes), bytes);
  if (old && memory) {
    --liveAllocations;
    liveBytes -= oldBytes;
  }
  return memory;
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t bytes) {
  *memory = counted(__libc_memalign(alignment, bytes), bytes);
  return *memory ? 0 : 12;  // ENOMEM
}
void free(void* memory) {
  if (memory) --liveAllocations;
  liveBytes -= sizeOf(memory);
  __libc_free(memory);
}
#endif
}
#pragma GCC visibility pop

namespace krosac {
namespace {

using Bytes = std::string;
namespace fs = std::filesystem;

// Size of the largest allocation during an action.
template <typename Action>
std::size_t largestIn(Action action) {
  largestAllocation = 0;
  action();
  return largestAllocation;
}

// The largest single allocation permitted for an input of this size: a small multiple of it, plus
// the fixed buffers of streams and scanners.
constexpr std::size_t allowedFor(std::size_t bytes) {
  return 8192 + 40 * bytes;
}

TEST(Memory, CountsAllocationsOfTheLibrary) {
  EXPECT_GE(largestIn([] { ByteBuffer::zeroed(123456); }), 123456u);
  EXPECT_GE(largestIn([] { make<TTTableObject>(); }), sizeof(TTTableObject));
  const std::ptrdiff_t before = liveAllocations;
  const auto kept = ByteBuffer::zeroed(10);
  EXPECT_EQ(liveAllocations, before + 2);  // the object and its bytes
}

// Every reader of files; each returns true if it accepted the file. Those of resources find the
// file under the names of their resources and read the installed ones if it is not a regular file.
constexpr const char* kResources[] = {"jbtables.txt", "pp.txt", "iasp91_p.txt", "PsNMO.txt"};
constexpr std::int32_t kMax = 360 * 18;
float x[kMax], y[kMax];
PsNMO curves[210];
SacHeader header;
std::int32_t n, status;
using Path = const std::string&;
using Reader = bool (*)(Path path);
constexpr Reader kReaders[] = {
    [](Path path) { return make<S>()->initWithPath(path); },
    [](Path path) { return make<S>()->loadFromPath(path); },
    [](Path path) { return traceOf(Samples(3))->replaceSacObjectDataWithPath(path); },
    [](Path path) { return make<S>()->initWithNSData_withPath(ByteBuffer::fromFile(path), path); },
    [](Path path) { return IsSacFile(path.c_str()) == 1; },
    [](Path path) { return ReadSACHeader(path.c_str(), &header, &status), status == 0; },
    [](Path path) { return ReadSACfile(path.c_str(), x, &header, kMax, &status), status == 0; },
    [](Path path) { return ReadSAC2(path.c_str(), &n, x, y, kMax, &status), status == 0; },
    [](Path path) {
      rsac1_(path.c_str(), x, &n, y, y, &kMax, &status, static_cast<int>(path.size()));
      return status == 0;
    },
    [](Path path) { return ParsePoleZeroFile(path.c_str(), x, y, y, &n, &n) == 0; },
    [](Path path) { return make<DispersionCurve>()->initWithKESTRAVFile(path)->nPeriods() > 0; },
    [](Path path) {
      const auto table = make<LocsatTTTable>();
      return table->loadTimesFromPath(path), table->hasTimes();
    },
    [](Path) { return x[0] = -1, ReadJBTables(x, y), x[0] != -1; },
    [](Path) { return ReadJBTablePhase("PP", x, &n), n > 0; },
    [](Path) { return ReadTTTablePhase("iasp91_", "P", x, &n), n > 0; },
    [](Path) { return ReadPsDelayTable("PsNMO", curves, &n), n > 0; }};
constexpr const Reader* kFirstOfResources = std::end(kReaders) - 4;

class MemoryTest : public testing::Test {
 protected:
  MemoryTest() {
    ::setenv("KROSAC_DATA", folder.path().c_str(), 1);
    for (const char* resource : kResources) fs::create_symlink("file", folder.path(resource));
  }
  ~MemoryTest() override { ::unsetenv("KROSAC_DATA"); }

  const TemporaryFolder folder;
  const std::string path = folder.path("file");
  CapturedLog captured;
};

// A pipe would block and a device may have no end.
TEST_F(MemoryTest, NoReaderAcceptsAPipeADeviceOrAFolder) {
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  for (const char* target : {"pipe", "/dev/zero", "."}) {
    fs::remove(path);
    fs::create_symlink(target, path);
    printedBy([&] {
      for (const Reader& reads : kReaders)
        EXPECT_EQ(reads(path), &reads >= kFirstOfResources) << target << " " << &reads - kReaders;
    });
  }
}

// Files whose counts far exceed their contents.
TEST_F(MemoryTest, NoFileMakesAReaderAllocateMuchMoreThanItsSize) {
  std::vector<Bytes> files;
  for (const std::uint32_t npts :
       {1u, 0x7FFFFFFFu, 0x40000000u, 0x3FFFFF00u, 0xFFFFFFFFu, 0x80000000u})
    for (const std::size_t length : {100, 632, 700}) {
      const Bytes image = headerImage({{0, word(1.0f)}, {316, npts}}) + Bytes(100, '\0');
      files.push_back(image.substr(0, length));
      files.push_back(foreign(image).substr(0, length));
    }
  for (const Bytes c : {"2147483647", "99999999999999999999", "-1", "1e30"}) {
    files.push_back("ZEROS " + c + "\n0 0\nPOLES " + c + "\n-1 0\nCONSTANT " + c + "\n");
    files.push_back("title\n" + c + " depths\n0 5\n" + c + " distances\n0 1\n#\n1\n2\n");
    files.push_back("> " + c + " " + c + " " + c + " " + c + "\n1 2 3\n");
    files.push_back(c + " " + c + " " + c + "\n" + c + "\n");
  }
  printedBy([&] {
    for (const Bytes& bytes : files) {
      folder.write("file", bytes);
      for (const Reader& reads : kReaders) {
        reads(path);  // allocates what lives as long as the process
        captured.texts.clear();
        captured.texts.shrink_to_fit();
        const std::ptrdiff_t before = liveAllocations;
        const bool makesTable = &reads + 1 == kFirstOfResources;
        EXPECT_LE(largestIn([&] { reads(path); }),
                  allowedFor(bytes.size()) + (makesTable ? sizeof(LocsatTTTable) : 0))
            << &reads - kReaders << " " << bytes.substr(0, 50);
        captured.texts.clear();
        captured.texts.shrink_to_fit();
        EXPECT_EQ(liveAllocations, before) << &reads - kReaders;
      }
    }
  });
}

class Node : public Archivable {
 public:
  const char* archiveClassName() const override { return "Node"; }
  void encodeWithCoder(KeyedArchiver& coder) const override {
    coder.encodeTexts("texts", texts);
    coder.encodeObject("next", next.get());
    coder.encodeObjects("children", children);
  }
  Ref<Node> initWithCoder(KeyedUnarchiver& coder) {
    texts = coder.decodeTexts("texts");
    next = coder.decodeObject<Node>("next");
    children = coder.decodeObjects<Node>("children");
    return Ref<Node>(this);
  }

  std::vector<std::string> texts;
  Ref<Node> next;
  std::vector<Ref<Node>> children;
};

// An archive of these bytes with a valid checksum.
Ref<ByteBuffer> withChecksum(Bytes bytes) {
  return bufferOf(bytes + '\x1a' + bytesOf(__builtin_bswap32(crc32(bytes))));
}

// Replaces each byte of an archive in turn by numbers that are too large if it is a count.
template <typename T>
void expectModestReading(const T& object) {
  CapturedLog captured;
  const auto archived = archive(object);
  const Bytes good(archived->bytes(), archived->bytes() + archived->length() - 5);
  EXPECT_TRUE(unarchive<T>(*withChecksum(good)));
  for (const Bytes& count :
       {Bytes("\x78\x7f"), Bytes("\x99\xff\xff"), "\x9a" + Bytes(4, '\x7f'),
        "\x5b" + Bytes(8, '\xff'), "\xbb" + Bytes(8, '\x7f'), Bytes("\xd8\x1d\x18\xff")}) {
    for (std::size_t at = 15; at < good.size(); ++at) {
      const auto hostile = withChecksum(Bytes(good).replace(at, 1, count));
      EXPECT_LE(largestIn([&] { unarchive<T>(*hostile); }), allowedFor(hostile->length())) << at;
      captured.texts.clear();
    }
  }
}

TEST(Memory, NoArchiveMakesTheReaderAllocateMuchMoreThanItsSize) {
  const auto root = make<Node>();
  root->texts = {"a", "b"};
  root->next = make<Node>();
  root->children = {root->next, make<Node>()};
  expectModestReading(*root);
  const auto s = traceOf(Samples(5));
  s->setMySeisReferenceTime(make<SeisTimeObject>());
  expectModestReading(*s);
  // Items of one byte each decode to values of up to 32 bytes.
  for (const bool asTexts : {true, false}) {
    root->texts.assign(asTexts ? 100000 : 0, "");
    root->children.assign(asTexts ? 0 : 100000, nullptr);
    const auto dense = archive(*root);
    EXPECT_LE(largestIn([&] { unarchive<Node>(*dense); }), allowedFor(dense->length()));
  }
}

TEST(Memory, AnArchiveThatWouldNestTooDeepLeavesNoMemoryBehind) {
  auto chain = make<Node>();
  for (int k = 0; k < kDeepestNesting; ++k) {
    const auto outer = make<Node>();
    outer->next = chain;
    chain = outer;
  }
  setLogSink([](const std::string&) {});
  const std::ptrdiff_t before = liveAllocations;
  EXPECT_FALSE(archive(*chain));
  EXPECT_EQ(liveAllocations, before);
  EXPECT_TRUE(unarchive<Node>(*archive(*chain->next)));
}

// The peak of the memory that archive() adds, divided by the archive's size.
double peakOfArchiving(const Archivable& object) {
  const std::size_t before = liveBytes;
  peakBytes = before;
  const auto bytes = archive(object);
  return static_cast<double>(peakBytes - before) / static_cast<double>(bytes->length());
}

TEST(Memory, ArchivingNeedsLittleMoreThanTwiceTheResult) {
  if (!kCountsBytes) GTEST_SKIP() << "the sanitizers have allocators of their own";
  const double ofTrace = peakOfArchiving(*traceOf(Samples(2000000)));
  std::vector<Ref<kroSeismicStation>> stations(100);
  for (std::size_t i = 0; i < stations.size(); ++i) {
    stations[i] = make<kroSeismicStation>();
    stations[i]->init();
    stations[i]->setStationCode("ST" + std::to_string(i));
  }
  const auto event = make<kroHypocenter>();
  event->init();
  double ofEvent = 0.0;  // the worst of several sizes, since the buffer grows in steps
  for (std::size_t i = 1; i <= 20000; ++i) {
    const auto phase = make<kroSeismicPhase>();
    phase->init();
    phase->setStation(stations[i % stations.size()]);
    event->addPhase(phase);
    if (i >= 10000 && i % 500 == 0) ofEvent = std::max(ofEvent, peakOfArchiving(*event));
  }
  RecordProperty("trace", std::to_string(ofTrace));
  RecordProperty("event", std::to_string(ofEvent));
  EXPECT_LE(ofTrace, 2.3);
  EXPECT_LE(ofEvent, 2.3);
  EXPECT_GE(std::min(ofTrace, ofEvent), 1.0);
}

TEST(Memory, OperationsFreeAllTheirMemory) {
  setLogSink([](const std::string&) {});
  reference::bits();  // allocates what lives as long as the process
  const std::ptrdiff_t before = liveAllocations;
  reference::bits();
  EXPECT_EQ(liveAllocations, before);
}

// The end time of this series overflows to infinity.
TEST(HostileInput, ASeriesOfInfiniteDurationEndsWithItsLastSample) {
  const auto s = make<uniformSampleTimeSeries>();
  ASSERT_TRUE(s->initWithZerosNpts_Delta(300, 3e38f));
  s->dataPointer()[0] = 2.0f;
  s->dataPointer()[299] = 5.0f;
  EXPECT_EQ(s->interpolateValueAtRelativeTime(std::numeric_limits<float>::infinity()), 5.0f);
  EXPECT_EQ(s->interpolateValueAtRelativeTime(1.5e38f), 1.0f);
}

}  // namespace
}  // namespace krosac
