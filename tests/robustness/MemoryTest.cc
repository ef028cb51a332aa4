// Nothing leaks beyond what a count of references must keep, and no file or archive makes the
// library ask for much more memory than it has bytes.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/krosac.h"
#include "seismogram/Traces.h"

// The allocations of this program and of the libraries in it: what malloc and its relatives were
// asked for. The sanitizers have their own ones and call a hook for each.
namespace {

std::atomic<std::size_t> largestAllocation{0};
std::atomic<std::ptrdiff_t> liveAllocations{0};

void* counted(void* memory, std::size_t bytes) {
  if (bytes > largestAllocation) largestAllocation = bytes;
  if (memory) ++liveAllocations;
  return memory;
}

}  // namespace

#pragma GCC visibility push(default)  // so that the library calls these too
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
  if (old) --liveAllocations;
  return counted(__libc_realloc(old, bytes), bytes);
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t bytes) {
  *memory = counted(__libc_memalign(alignment, bytes), bytes);
  return *memory ? 0 : 12;  // ENOMEM
}
void free(void* memory) {
  if (memory) --liveAllocations;
  __libc_free(memory);
}
#endif
}
#pragma GCC visibility pop

namespace krosac {
namespace {

// The largest allocation within an action.
template <typename Action>
std::size_t largestIn(Action action) {
  largestAllocation = 0;
  action();
  return largestAllocation;
}

// What may be asked for at once for an input of so many bytes: a small multiple of them, and the
// fixed buffers of streams and scanners.
constexpr std::size_t allowedFor(std::size_t bytes) {
  constexpr std::size_t kObjects = 8192;
  return kObjects + 40 * bytes;
}

TEST(Memory, TheCountsSeeTheLibrary) {
  EXPECT_GE(largestIn([] { ByteBuffer::zeroed(123456); }), 123456u);
  EXPECT_GE(largestIn([] { make<TTTableObject>(); }), sizeof(TTTableObject));
  const std::ptrdiff_t before = liveAllocations;
  const auto kept = ByteBuffer::zeroed(10);
  EXPECT_EQ(liveAllocations, before + 2);  // the object and its bytes
}

using Bytes = std::string;

// Files whose counts promise far more than is there.
TEST(Memory, NoFileMakesALoaderAskForMuchMoreThanItsSize) {
  const TemporaryFolder folder;
  ASSERT_EQ(::setenv("KROSAC_DATA", folder.path().c_str(), 1), 0);
  std::vector<Bytes> files;
  for (const std::uint32_t npts :
       {1u, 0x7FFFFFFFu, 0x40000000u, 0x3FFFFF00u, 0xFFFFFFFFu, 0x80000000u})
    for (const std::size_t length : {100, 632, 700}) {
      Bytes image = headerImage({{0, word(1.0f)}, {316, npts}}) + Bytes(100, '\0');
      files.push_back(image.substr(0, length));
      files.push_back(foreign(image).substr(0, length));
    }
  for (const char* count : {"2147483647", "99999999999999999999", "-1", "1e30"}) {
    const Bytes n = count;
    files.push_back("ZEROS " + n + "\n0 0\nPOLES " + n + "\n-1 0\nCONSTANT " + n + "\n");
    files.push_back("title\n" + n + " depths\n0 5\n" + n + " distances\n0 1\n#\n1\n2\n");
    files.push_back("> " + n + " " + n + " " + n + " " + n + "\n1 2 3\n");
    files.push_back(n + " " + n + " " + n + "\n" + n + "\n");
  }
  struct Loader {
    const char* name;
    void (*load)(const std::string& path);
    std::size_t fixed = 0;  // bytes of what it makes whatever the file holds
  };
  static float table[360 * 18], other[360 * 18];
  static PsNMO curves[210];
  static std::int32_t count;
  const Loader loaders[] = {
      {"init", [](const std::string& path) { make<S>()->initWithPath(path); }},
      {"load", [](const std::string& path) { make<S>()->loadFromPath(path); }},
      {"replace",
       [](const std::string& path) { traceOf(Samples(3))->replaceSacObjectDataWithPath(path); }},
      {"data",
       [](const std::string& path) {
         make<S>()->initWithNSData_withPath(ByteBuffer::fromFile(path), path);
       }},
      {"IsSacFile", [](const std::string& path) { IsSacFile(path.c_str()); }},
      {"ReadSAC1",
       [](const std::string& path) {
         float delta, b;
         ReadSAC1(path.c_str(), table, &count, &delta, &b, 360 * 18, &count);
       }},
      {"ReadSAC2",
       [](const std::string& path) {
         ReadSAC2(path.c_str(), &count, table, other, 360 * 18, &count);
       }},
      {"poles and zeros",
       [](const std::string& path) {
         int poles, zeros;
         float constant;
         ParsePoleZeroFile(path.c_str(), table, other, &constant, &poles, &zeros);
       }},
      {"LocSAT", [](const std::string& path) { make<LocsatTTTable>()->loadTimesFromPath(path); },
       sizeof(LocsatTTTable)},
      {"dispersion",
       [](const std::string& path) { make<DispersionCurve>()->initWithKESTRAVFile(path); }},
      {"Jeffreys-Bullen", [](const std::string&) { ReadJBTables(table, other); }},
      {"JB phase", [](const std::string&) { ReadJBTablePhase("PP", table, &count); }},
      {"IASP91", [](const std::string&) { ReadTTTablePhase("iasp91_", "P", table, &count); }},
      {"moveout", [](const std::string&) { ReadPsDelayTable("PsNMO", curves, &count); }}};
  CapturedLog captured;
  for (const Bytes& bytes : files) {
    const std::string path = folder.write("file", bytes);
    for (const char* resource : {"jbtables.txt", "pp.txt", "iasp91_p.txt", "PsNMO.txt"})
      folder.write(resource, bytes);
    for (const Loader& loader : loaders) {
      const std::ptrdiff_t before = liveAllocations;
      loader.load(path);  // the log keeps texts, and streams are set up on first use
      captured.texts.clear();
      EXPECT_LE(largestIn([&] { loader.load(path); }), allowedFor(bytes.size()) + loader.fixed)
          << loader.name << " " << bytes.substr(0, 50);
      captured.texts.clear();
      captured.texts.shrink_to_fit();
      EXPECT_LE(liveAllocations, before + 1) << loader.name;
    }
  }
  ::unsetenv("KROSAC_DATA");
}

// Counts the nodes that are alive.
class Node : public Archivable {
 public:
  Node() { ++alive; }
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

  static inline int alive = 0;
  std::vector<std::string> texts;
  Ref<Node> next;
  std::vector<Ref<Node>> children;

 protected:
  ~Node() override { --alive; }
};

// The bytes of an archive with its checksum made good again.
Ref<ByteBuffer> withChecksum(Bytes bytes) {
  std::uint32_t crc = 0xFFFFFFFFu;
  for (const char c : bytes) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0u);
  }
  return bufferOf(bytes + bytesOf(~crc));
}

// Each byte of an archive in turn becomes a number that, where it counts something, counts too
// much.
template <typename T>
void expectModestReading(const T& object) {
  CapturedLog captured;
  const auto archived = archive(object);
  const Bytes good(archived->bytes(), archived->bytes() + archived->length() - 4);
  EXPECT_TRUE(unarchive<T>(*withChecksum(good)));
  for (const Bytes& count : {Bytes("\x7f"), Bytes("\xff\xff\x03"), Bytes("\xff\xff\xff\xff\x07"),
                             Bytes(8, '\xff') + '\x7f'}) {
    for (std::size_t at = 9; at < good.size(); ++at) {
      const auto hostile = withChecksum(Bytes(good).replace(at, 1, count));
      EXPECT_LE(largestIn([&] { unarchive<T>(*hostile); }), allowedFor(hostile->length())) << at;
      captured.texts.clear();
    }
  }
}

TEST(Memory, NoArchiveMakesTheReaderAskForMuchMoreThanItsSize) {
  const auto root = make<Node>();
  root->texts = {"a", "b"};
  root->next = make<Node>();
  root->children = {root->next, make<Node>()};
  expectModestReading(*root);
  const auto s = traceOf(Samples(5));
  s->setMySeisReferenceTime(make<SeisTimeObject>());
  expectModestReading(*s);
  // Items of one byte each, which become values of up to 32.
  for (const bool asTexts : {true, false}) {
    root->texts.assign(asTexts ? 100000 : 0, "");
    root->children.assign(asTexts ? 0 : 100000, nullptr);
    const auto dense = archive(*root);
    EXPECT_LE(largestIn([&] { unarchive<Node>(*dense); }), allowedFor(dense->length()));
  }
}

TEST(Memory, SharedObjectsAreFreedWithTheirLastOwner) {
  ASSERT_EQ(Node::alive, 0);
  {
    AutoreleasePool pool;
    const auto root = make<Node>(), shared = make<Node>();
    root->next = shared;
    root->children = {shared, shared, make<Node>()};
    const auto copy = archivedCopy(*root);
    EXPECT_EQ(Node::alive, 6);
    EXPECT_EQ(copy->next, copy->children[1]);
    EXPECT_EQ(copy->next->retainCount(), 3);
    Ref<Node> last = copy->next;
    copy->next = nullptr;
    copy->children.clear();
    EXPECT_EQ(Node::alive, 5);
    last = nullptr;
    EXPECT_EQ(Node::alive, 4);
    alloc<Node>()->autorelease();
    root->retain();
    root->autorelease();
    EXPECT_EQ(Node::alive, 5);
  }
  EXPECT_EQ(Node::alive, 0);
}

// A ring keeps itself, and no more: what hangs on it goes once the ring is opened.
TEST(Memory, ARingKeepsItselfUntilItIsOpened) {
  const auto ring = [](int length) {
    auto first = make<Node>();
    Node* last = first.get();
    for (int k = 1; k < length; ++k) {
      last->next = make<Node>();
      last = last->next.get();
    }
    last->next = first;
    last->children = {make<Node>()};
    return first;
  };
  for (const int length : {1, 2, 40}) {
    auto first = ring(length), copy = archivedCopy(*first);
    EXPECT_EQ(Node::alive, 2 * (length + 1));
    for (Ref<Node>* each : {&first, &copy}) {
      Node* const kept = each->get();
      *each = nullptr;
      kept->next = nullptr;
    }
    EXPECT_EQ(Node::alive, 0) << length;
  }
  // One that nests too deep to be read: the reader's objects must not outlive the attempt.
  auto first = ring(kDeepestNesting + 5);
  CapturedLog captured;
  const int before = Node::alive;
  EXPECT_FALSE(archivedCopy(*first));
  EXPECT_EQ(Node::alive, before);
  first->next = nullptr;
  first = nullptr;
  EXPECT_EQ(Node::alive, 0);
}

TEST(Memory, TracesAndTheirCopiesGiveAllBack) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a.sac", foreign(sacImage(Samples(1000, 1.0f))));
  const auto work = [&] {
    AutoreleasePool pool;
    CapturedLog captured;
    auto* raw = alloc<S>();
    if (!raw->InitWithPath(path)) raw->release();
    const auto copy = raw->copyWithZone(), archived = archivedCopy(*raw);
    copy->Decimate(2);
    copy->Envelope();
    copy->correlateWith(*archived);
    copy->setMyData(ByteBuffer::zeroed(700));
    copy->AppendSacObject(*archived);
    copy->loadFromPath(path);
    archived->spectrum();
    archived->saveToPath(path);
    archived->initWithPath(folder.path("absent"));
    QuasiRandomContext context;
    QuasiRandomInitialize(&context, 5);
    QuasiRandomRelease(&context);
    make<TTTableObject>()->init();
  };
  work();  // what is made once a process
  const std::ptrdiff_t before = liveAllocations;
  for (int k = 0; k < 10; ++k) work();
  EXPECT_EQ(liveAllocations, before);
}

}  // namespace
}  // namespace krosac
