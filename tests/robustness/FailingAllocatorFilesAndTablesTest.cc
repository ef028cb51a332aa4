// Buffers, files, archives, processes, times and tables when memory runs out.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <vector>

#include "TemporaryFolder.h"
#include "krosac/platform/internal/Process.h"
#include "robustness/FailingAllocator.h"

namespace krosac {
namespace {

using Operation = std::function<std::string()>;

const auto kNothing = [] { return std::string(); };

// An operation without an object: what precedes it, the operation, and what can be seen of it.
void expectSafeCall(
    const std::string& name, const Operation& run,
    const std::function<std::string()>& state = kNothing,
    const std::function<void()>& before = [] {}) {
  expectSafe<int>(name, {[&] { return before(), 0; }, [&](int&) { return run(); },
                         [&](const int&) { return state(); }});
}

template <typename T>
std::string bytesOfArray(const T* values, std::size_t count) {
  return std::string(reinterpret_cast<const char*>(values), count * sizeof *values);
}

// Every name and text in a folder.
std::string contentsOf(const TemporaryFolder& folder) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
    files.push_back(entry.path().filename().string() + ":" +
                    folder.read(entry.path().filename().string()));
  std::sort(files.begin(), files.end());
  std::string all;
  for (const auto& file : files) all += file + ";";
  return all;
}

class FailingAllocatorTest : public testing::Test {
 protected:
  FailingAllocatorTest() {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
  }
  ~FailingAllocatorTest() override {
    const std::string printed =
        testing::internal::GetCapturedStdout();  // with messages of failures
    if (HasFailure()) std::cout << printed;
    testing::internal::GetCapturedStderr();
  }

  const TemporaryFolder folder;
};

TEST_F(FailingAllocatorTest, Buffers) {
  const std::string text(1000, 'x'), target = folder.path("a target of some length"),
                                     link = folder.path("a link of some length"),
                                     missing = folder.path("no file of this name");
  folder.write("a target of some length", "old");
  std::filesystem::create_symlink("a target of some length", link);
  const auto buffer = ByteBuffer::copyOf(text.data(), text.size());
  expectSafeCall("zeroed", [] { return resultOf(bool(ByteBuffer::zeroed(1000))); });
  expectSafeCall("large", [] { return resultOf(bool(ByteBuffer::zeroed(1 << 25))); });
  expectSafeCall("copyOf", [&] { return resultOf(bool(ByteBuffer::copyOf(text.data(), 1000))); });
  expectSafeCall("fromFile", [&] { return resultOf(bool(ByteBuffer::fromFile(target))); });
  ::setenv("KROSAC_DEBUG", "1", 1);  // also logs the reason
  expectSafeCall("no file", [&] { return resultOf(bool(ByteBuffer::fromFile(missing))); });
  ::unsetenv("KROSAC_DEBUG");
  const auto contents = [&] { return contentsOf(folder); };
  const auto old = [&] { folder.write("a target of some length", "old"); };
  for (const std::string& path : {target, link, missing})
    expectSafeCall(
        "writeAtomically", [&] { return resultOf(buffer->writeAtomically(path)); }, contents,
        [&] {
          old();
          std::filesystem::remove(missing);
        });
  expectSafeCall(
      "writeAtomically", [&] { return resultOf(buffer->writeAtomically(link, 10)); }, contents,
      old);
  expectSafe<Ref<ByteBuffer>>(
      "resize", {[&] { return ByteBuffer::copyOf(text.data(), text.size()); },
                 [](Ref<ByteBuffer>& b) { return resultOf(b->resize(100000)); },
                 [](const Ref<ByteBuffer>& b) {
                   return bytesOfArray(b->bytes(), 1000) + "," + std::to_string(b->length());
                 }});
}

class Node : public Archivable {
 public:
  static inline int alive = 0;
  Node() { ++alive; }
  const char* archiveClassName() const override { return "Node with a long name"; }
  void encodeWithCoder(KeyedArchiver& coder) const override {
    coder.encodeText("text with a long key", text);
    coder.encodeTexts("texts", texts);
    coder.encodeBytes("bytes", bytes.get());
    coder.encodeObject("next", next.get());
    coder.encodeObjects("children", children);
  }
  Ref<Node> initWithCoder(KeyedUnarchiver& coder) {
    text = coder.decodeText("text with a long key");
    texts = coder.decodeTexts("texts");
    bytes = coder.decodeBytes("bytes");
    next = coder.decodeObject<Node>("next");
    children = coder.decodeObjects<Node>("children");
    return Ref<Node>(this);
  }

  OptionalText text;
  std::vector<std::string> texts;
  Ref<ByteBuffer> bytes;
  Ref<Node> next;
  std::vector<Ref<Node>> children;

 private:
  ~Node() override { --alive; }
};

// Whatever fails, no object of a failed decoding stays behind.
TEST_F(FailingAllocatorTest, Archives) {
  const auto root = make<Node>();
  root->text = std::string(40, 'a');
  root->texts = {std::string(50, 'b'), "c"};
  root->next = make<Node>();
  root->next->bytes = ByteBuffer::zeroed(3000);
  root->children = {root->next, make<Node>(), nullptr};
  const auto alive = [] { return std::to_string(Node::alive); };
  const auto bytes = archive(*root);
  const auto same = [&](const Ref<Node>& n) {
    return resultOf(n && n->text == root->text && n->texts == root->texts &&
                    n->next->bytes->length() == 3000 && n->children.size() == 2 &&
                    n->children[0] == n->next);
  };
  expectSafeCall(
      "archive", [&] { return resultOf(bool(archive(*root))); }, alive);
  expectSafeCall(
      "unarchive", [&] { return same(unarchive<Node>(*bytes)); }, alive);
  expectSafeCall(
      "archivedCopy", [&] { return same(archivedCopy(*root)); }, alive);
  expectSafeCall(
      "check", [&] { return resultOf(KeyedUnarchiver(*bytes).isGood()); }, alive);
  // A refusal has a reason, with memory and without.
  const auto reason = [](bool isRefused) { return resultOf(!isRefused || !*lastReason()); };
  auto deep = make<Node>();
  for (int k = 0; k < kDeepestNesting; ++k) {
    const auto outer = make<Node>();
    outer->next = deep;
    deep = outer;
  }
  const auto cut = ByteBuffer::copyOf(bytes->bytes(), bytes->length() - 1);
  const Operation refusals[] = {
      [&] { return reason(!unarchive<SeisTimeObject>(*bytes)); },
      [&] { return reason(!unarchive<Node>(*cut)); },
      [&] { return reason(!archive(*deep)); },
  };
  for (const Operation& refusal : refusals) {
    EXPECT_EQ(refusal(), "refused");
    expectSafeCall("refusal", refusal, alive);
  }
}

TEST_F(FailingAllocatorTest, ObjectsTimesAndTheLog) {
  const std::string text(600, 'x');
  const auto kept = make<Dislocation>();
  const auto time = make<SeisTimeObject>();
  time->setValues_month_date_hour_minute_second_millisecond(2011, 3, 11, 5, 46, 23, 0.5);
  QuasiRandomContext context;
  expectSafeCall("make", [] { return resultOf(bool(make<Dislocation>())); });
  expectSafeCall("autorelease", [&] {
    {
      const AutoreleasePool pool;
      kept->retain();
      kept->autorelease();
    }
    const bool isReleased = kept->retainCount() == 1;
    if (!isReleased) kept->release();
    return resultOf(isReleased);
  });
  expectSafeCall("description", [] { return Date{1e9}.description(); });
  expectSafeCall("log", [&] { return log("%s", text.c_str()), std::string("done"); });
  expectSafeCall("copyWithZone", [&] { return resultOf(bool(time->copyWithZone())); });
  expectSafeCall("archive", [&] { return resultOf(bool(archive(*time))); });
  expectSafeCall("archivedCopy", [&] { return resultOf(bool(archivedCopy(*time))); });
  expectSafeCall("DOYcString", [&] { return resultOf(time->DOYcString()[0] == '2'); });
  expectSafeCall("YMDcString", [&] { return resultOf(time->YMDcString()[0] == '2'); });
  expectSafeCall("QuasiRandomInitialize", [&] {
    const std::int32_t status = QuasiRandomInitialize(&context, 40);
    QuasiRandomRelease(&context);
    return resultOf(status == 0);
  });
}

TEST_F(FailingAllocatorTest, ResourcesAndProcesses) {
  // Each trial reads another value of $KROSAC_DATA first, so that the operation resolves it anew. A
  // failure must not leave the folder of one value under the name of the other.
  const std::string tables = "jbtables", none = "no data file of this name", type = "txt";
  const std::string folders[] = {folder.path("the first folder"), folder.path("the second folder")};
  for (const std::string& f : folders) {
    std::filesystem::create_directory(f);
    std::ofstream(f + "/jbtables.txt");
  }
  const auto pathFor = [&](int which) {
    ::setenv("KROSAC_DATA", std::filesystem::relative(folders[which]).c_str(), 1);
    return pathForResource(tables, type).value_or("none");
  };
  expectSafeCall(
      "pathForResource",
      [&] {
        auto path = pathForResource(tables, type);
        return path ? std::move(*path) : std::string("none");
      },
      [&] { return pathFor(0); },
      [&] {
        pathFor(0);
        ::setenv("KROSAC_DATA", std::filesystem::relative(folders[1]).c_str(), 1);
      });
  expectSafeCall("no resource", [&] { return resultOf(bool(pathForResource(none, type))); });
  ::unsetenv("KROSAC_DATA");

  const auto openFiles = [] {
    return std::to_string(
        std::ranges::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                              std::filesystem::directory_iterator()));
  };
  const std::string input = folder.write("an input file of some length", std::string(200000, 'x'));
  const std::string output = folder.path("an output file of some length");
  const ProcessCommand commands[] = {
      {.program = "/bin/cat",
       .directory = folder.path(),
       .inputFile = input,
       .capturesOutput = true},
      {.program = "/bin/echo", .arguments = {std::string(100, 'x'), "b"}, .outputFile = output},
      {.program = "/no program of this name"},
      {.program = "/bin/cat", .inputFile = folder.path("no file of this name")},
      {.program = "/bin/cat", .directory = folder.path("no folder of this name")},
  };
  for (const ProcessCommand& command : commands)
    expectSafeCall(
        "runProcess " + command.program,
        [&] {
          const ProcessResult result = runProcess(command);
          if (!result.error.empty() && !*lastReason()) return std::string("silent");
          return resultOf(result.error.empty() && result.exitCode == 0);
        },
        openFiles);
}

TEST_F(FailingAllocatorTest, SacFiles) {
  static float x[300], y[300];
  const std::string path = folder.path("a_trace_of_some_length.sac"),
                    target = folder.path("a_target_of_some_length.sac");
  std::int32_t status = -1, n = 300;
  const std::int32_t max = 300;
  float b = 0.0f, delta = 0.5f;
  const int length = static_cast<int>(path.size()), targetLength = static_cast<int>(target.size());
  SacHeader header;
  WriteSAC2(path.c_str(), 300, x, y, &status);
  newhdr_();
  ghdr.NPTS = 300;
  const auto status0 = [&](auto operation) {
    return [&, operation] {
      status = -1;
      operation();
      return resultOf(status == 0);
    };
  };
  const std::pair<const char*, Operation> operations[] = {
      {"IsSacFile", [&] { return resultOf(IsSacFile(path.c_str()) == 1); }},
      {"ReadSACHeader", status0([&] { ReadSACHeader(path.c_str(), &header, &status); })},
      {"ReadSACfile", status0([&] { ReadSACfile(path.c_str(), x, &header, 300, &status); })},
      {"ReadSAC1", status0([&] { ReadSAC1(path.c_str(), x, &n, &delta, &b, 300, &status); })},
      {"ReadSAC2", status0([&] { ReadSAC2(path.c_str(), &n, x, y, 300, &status); })},
      {"rsac1_", status0([&] { rsac1_(path.c_str(), x, &n, &b, &delta, &max, &status, length); })},
      {"rsac2_", status0([&] { rsac2_(path.c_str(), y, &n, x, &max, &status, length); })},
      {"WriteSACfile", status0([&] { WriteSACfile(target.c_str(), x, &status, header); })},
      {"WriteSAC1", status0([&] { WriteSAC1(target.c_str(), x, 300, &status, 0.5f, 0.0f); })},
      {"WriteSAC2", status0([&] { WriteSAC2(target.c_str(), 300, x, y, &status); })},
      {"wsac0_", status0([&] { wsac0_(target.c_str(), x, y, &status, targetLength); })},
      {"wsac1_",
       status0([&] { wsac1_(target.c_str(), x, &n, &b, &delta, &status, targetLength); })},
      {"wsac2_", status0([&] { wsac2_(target.c_str(), y, &n, x, &status, targetLength); })},
      {"getfhv_", status0([&] { getfhv_("NONE", &b, &status, 4), status = 0; })},
      {"setnhv_", status0([&] { setnhv_("NPTS", &n, &status, 4), status = 0; })},
      {"setkhv_", status0([&] { setkhv_("KSTNM", "A", &status, 5, 1), status = 0; })},
      {"printSacIOVersion", status0([&] { printSacIOVersion(), status = 0; })},
  };
  for (const auto& [name, operation] : operations)
    expectSafeCall(
        name, operation, [&] { return contentsOf(folder); },
        [&] { folder.write("a_target_of_some_length.sac", "old"); });
}

// One table of an object is read whole or stays as it was, whatever happens to the others.
template <typename T>
void expectSafeTable(const char* name, const float* (T::*table)() const, std::size_t floats) {
  expectSafe<Ref<T>>(
      name,
      {[] { return make<T>(); }, [](Ref<T>& object) { return resultOf(bool(object->init())); },
       [=](const Ref<T>& object) { return bytesOfArray((object.get()->*table)(), floats); }});
}

TEST_F(FailingAllocatorTest, JeffreysBullenAndIaspTables) {
  using J = JBTableObject;
  using T = TTTableObject;
  expectSafeTable<J>("P and S", &J::tp, 118 * 14);
  expectSafeTable<J>("PcP", &J::tpcp, 101 * 13);
  expectSafeTable<J>("SS", &J::tss, 215 * 13);
  expectSafeTable<T>("the first", &T::tp, 145 * 18);
  expectSafeTable<T>("the last", &T::tlsp, 107 * 18);
  expectSafe<Ref<PsNMOTableObject>>(
      "Ps", {[] { return make<PsNMOTableObject>(); },
             [](auto& object) { return resultOf(bool(object->init())); },
             [](const auto& object) { return bytesOfArray(object->nmos(), 210); }});

  static float p[360 * 18], s[360 * 18];
  static PsNMO curves[210];
  std::int32_t n = 0;
  const std::pair<const char*, std::function<void()>> operations[] = {
      {"ReadJBTables", [&] { ReadJBTables(p, s); }},
      {"ReadJBTablePhase", [&] { ReadJBTablePhase("PP", p, &n); }},
      {"ReadTTTablePhase", [&] { ReadTTTablePhase("iasp91_", "P", p, &n); }},
      {"ReadPsDelayTable", [&] { ReadPsDelayTable("PsNMO", curves, &n); }},
      {"no file", [&] { ReadJBTablePhase("no phase of this name", p, &n); }},
  };
  for (const auto& [name, operation] : operations)
    expectSafeCall(
        name, [&] { return operation(), std::string("done"); },
        [&] {
          return bytesOfArray(p, std::size(p)) + bytesOfArray(s, std::size(s)) +
                 bytesOfArray(curves, 210) + std::to_string(n);
        },
        [&] {
          std::ranges::fill(p, 0.0f);
          std::ranges::fill(s, 0.0f);
          std::ranges::fill(curves, PsNMO{});
          n = 0;
        });
}

TEST_F(FailingAllocatorTest, LocsatTablesAndResponses) {
  const std::string first = folder.write("a table of some length", "t\n1\n0\n2\n0 1\n#\n5\n6\n"),
                    second = folder.write("a second of some length", "t\n1\n0\n2\n0 1\n#\n7\n8\n"),
                    none = folder.path("no file of this name"),
                    response = folder.write("a response", "ZEROS 1\n1 2\nCONSTANT 2\n");
  const auto load = [](const std::string& path) {
    return [&path](Ref<LocsatTTTable>& t) {
      t->loadTimesFromPath(path);
      return resultOf(t->hasTimes());
    };
  };
  const std::pair<const char*, std::function<std::string(Ref<LocsatTTTable>&)>> operations[] = {
      {"loadTimesFromPath", load(second)},
      {"no file", load(none)},
      {"listValues",
       [](Ref<LocsatTTTable>& t) {
         return resultOf(!t->listValuesForDistanceFrom_To_Step_SrcDepth(0, 1, 0.1f, 0).empty());
       }},
  };
  const auto loaded = [&] {
    auto table = make<LocsatTTTable>();
    table->loadTimesFromPath(first);
    return table;
  };
  for (const auto& [name, operation] : operations)
    expectSafe<Ref<LocsatTTTable>>(name, {loaded, operation, [](const auto& t) {
                                            return bytesOfArray(t->times(), 40 * 207) +
                                                   bytesOfArray(t->gcarcs(), 207);
                                          }});
  const auto table = loaded();
  table->setPhases("Pn,a phase with a long name");
  expectSafe<Ref<LocsatTTController>>(
      "addTableToList",
      {[&] {
         auto list = make<LocsatTTController>();
         list->addTableToList(table);
         return list;
       },
       [&](auto& list) { return list->addTableToList(table), std::string("done"); },
       [](const auto& list) { return std::to_string(list->tables().size()); }});
  float poles[64], zeros[64] = {}, constant;
  int nPoles, nZeros;
  expectSafeCall(
      "ParsePoleZeroFile",
      [&] {
        return resultOf(
            ParsePoleZeroFile(response.c_str(), poles, zeros, &constant, &nPoles, &nZeros) == 0);
      },
      [&] { return bytesOfArray(zeros, 64); }, [&] { std::ranges::fill(zeros, 0.0f); });
}

}  // namespace
}  // namespace krosac
