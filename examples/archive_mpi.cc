// Processes a folder of recordings on many processes: mpirun -n N archive_mpi FOLDER OUTPUT
//
// Each file is detrended, band-passed, decimated, marked with its predicted P and S, measured and
// saved under its own name in the folder OUTPUT. OUTPUT/summary.txt has one line per file, sorted
// by name: samples, interval (s), maximum amplitude, signal-to-noise ratio; "failed" for a file
// that cannot be read or saved. OUTPUT does not depend on the number of processes.
#include <mpi.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "Progress.h"
#include "krosac/krosac.h"

namespace {

namespace fs = std::filesystem;
using krosac::SacObject;

constexpr float kLowCorner = 0.02f, kHighCorner = 1.0f;  // Hz
constexpr int kPoles = 4, kTwoPasses = 2;

struct Row {
  int failed, npts;
  float delta, peak, signalToNoise;  // s, counts, ratio
};

Row processFile(const std::string& input, const std::string& output) {
  auto s = krosac::make<SacObject>();
  if (!s->initWithPath(input) || s->npts() < 2) return {1, 0, 0, 0, 0};
  s->SubtractLinearTrend();
  s->RemoveMean();
  s->defaultTaper();
  s->HPBUfilter_NPasses_NPoles(kLowCorner, kTwoPasses, kPoles);
  if (kHighCorner < 0.5f / s->delta())
    s->LPBUfilter_NPasses_NPoles(kHighCorner, kTwoPasses, kPoles);
  while (0.5f / s->delta() >= 4 * kHighCorner && s->npts() > 1) s->Decimate(2);
  s->markJBTimes();
  s->setPath(output);
  return {!s->save(), s->npts(), s->delta(), s->absMax(), s->simpleSNR()};
}

// The sorted names of the regular files, each followed by a NUL; empty without the two folders.
std::string listFiles(const fs::path& folder, const fs::path& output) {
  std::set<std::string> names;
  std::error_code failed;
  fs::create_directories(output, failed);
  if (!fs::is_directory(output, failed) || fs::equivalent(folder, output, failed)) return {};
  for (const auto& entry : fs::directory_iterator(folder, failed))
    if (entry.is_regular_file(failed)) names.insert(entry.path().filename().string());
  std::string joined;
  for (const auto& name : names) joined += name + '\0';
  return joined;
}

// Broadcasts the list of rank 0, so that every rank sees the same files.
std::vector<std::string> shared(std::string joined) {
  unsigned long length = joined.size();
  MPI_Bcast(&length, 1, MPI_UNSIGNED_LONG, 0, MPI_COMM_WORLD);
  joined.resize(length);
  MPI_Bcast(joined.data(), static_cast<int>(length), MPI_CHAR, 0, MPI_COMM_WORLD);
  std::vector<std::string> names;
  for (std::size_t at = 0; at < joined.size(); at += names.back().size() + 1)
    names.emplace_back(joined.c_str() + at);
  return names;
}

bool writeSummary(const fs::path& path, const std::vector<std::string>& names,
                  const std::vector<Row>& rows) {
  const fs::path unfinished = path.string() + ".unfinished";
  std::ofstream file(unfinished);
  for (std::size_t i = 0; i < names.size(); ++i) {
    char line[96];
    const auto& [failed, npts, delta, peak, ratio] = rows[i];
    std::snprintf(line, sizeof line, "%8d %8.4g %12.6g %10.4g  ", npts, static_cast<double>(delta),
                  static_cast<double>(peak), static_cast<double>(ratio));
    file << (failed ? "failed  " : line) << names[i] << '\n';
  }
  file.close();
  return file && std::rename(unfinished.c_str(), path.c_str()) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  MPI_Init(&argc, &argv);
  int rank = 0, ranks = 1, status = 0;
  MPI_Comm_rank(MPI_COMM_WORLD, &rank);
  MPI_Comm_size(MPI_COMM_WORLD, &ranks);
  const fs::path folder = argc == 3 ? argv[1] : "", output = argc == 3 ? argv[2] : "";
  const auto names = shared(rank == 0 ? listFiles(folder, output) : "");
  const auto count = names.size(), step = static_cast<std::size_t>(ranks);
  krosac::setLogSink([](const std::string&) {});  // the summary names what failed

  // Rank i % ranks processes file i. This needs no communication and mixes large and small files.
  std::vector<Row> rows(count), all(count);
  Progress progress("Processing", rank == 0 ? std::ssize(names) / ranks : 0);
  for (auto i = static_cast<std::size_t>(rank); i < count; i += step) {
    rows[i] = processFile((folder / names[i]).string(), (output / names[i]).string());
    if (rank == 0) progress.step();
  }
  // A row is zero on all ranks but one, so a bitwise OR collects the whole table.
  MPI_Reduce(rows.data(), all.data(), static_cast<int>(count * sizeof(Row)), MPI_BYTE, MPI_BOR, 0,
             MPI_COMM_WORLD);
  if (rank == 0 && count == 0) {
    status = std::fprintf(stderr, "archive_mpi FOLDER OUTPUT: no files, or not two folders\n") > 0;
  } else if (rank == 0) {
    std::printf("%zu files on %d processes, %td failed\n", count, ranks,
                std::ranges::count(all, 1, &Row::failed));
    status = !writeSummary(output / "summary.txt", names, all);
  }
  MPI_Finalize();
  return status;
}
