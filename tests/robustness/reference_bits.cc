// Prints one line a result of the library: its name and a hash of its bits. The list must be the
// same for every compiler, level of optimisation, time zone and locale.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <type_traits>

#include "krosac/krosac.h"

namespace krosac {
namespace {

using Samples = std::vector<float>;

constexpr std::int32_t kDay = 86400;  // samples of a day at one a second

class Hash {
 public:
  void add(const void* bytes, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i)
      value_ = (value_ ^ static_cast<const unsigned char*>(bytes)[i]) * 0x100000001b3u;
  }
  template <typename T>
  Hash& operator<<(const T& value) {
    if constexpr (std::is_convertible_v<T, std::string_view>) {
      const std::string_view text = value;
      add(text.data(), text.size());
    } else if constexpr (std::is_arithmetic_v<T>) {
      add(&value, sizeof value);
    } else {
      for (const auto& each : value) *this << each;
    }
    return *this;
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xcbf29ce484222325u;
};

void print(const std::string& name, const Hash& hash) {
  std::printf("%-24s %016llx\n", name.c_str(), static_cast<unsigned long long>(hash.value()));
}

// Values in -1..1, from a generator that no library can change.
Samples noise(std::size_t n) {
  Samples x(n);
  std::uint32_t state = 20110311;
  for (float& sample : x) {
    state = state * 1664525u + 1013904223u;
    sample = static_cast<float>(static_cast<std::int32_t>(state)) / 2147483648.0f;
  }
  return x;
}

// A trace of one day with all header values that operations want, beginning before its reference.
Ref<SacObject> dayOfNoise() {
  auto s = make<SacObject>();
  s->initWithCapacity(kDay);
  const Samples x = noise(kDay);
  std::memcpy(s->GetSacSeis(), x.data(), x.size() * sizeof x[0]);
  s->setBeginTime(-3600.25f);
  s->setoriginTimeOffset(-1800.5f);
  s->setPTime(-1200.125f);
  for (int key = 0; key < 10; ++key)
    s->setTimePickKey_Value(key, 1000.0f * static_cast<float>(key));
  for (int key = 0; key < 10; ++key) s->setUserValueKey_Value(key, 0.1f * static_cast<float>(key));
  auto time = make<SeisTimeObject>();
  time->initWithValues_month_date_hour_minute_second_millisecond(2011, 12, 31, 23, 59, 59, 999.5);
  s->replaceReferenceTimeWith(time);
  s->setReferenceTimeWithNSDate(Date::fromComponents({2011, 12, 31, 23, 59, 59}));
  s->setStationID("TLY");
  s->setStationLocationLat_Lon_Elevation(51.6807f, 103.6438f, 579.0f);
  s->setEventLocationLat_Lon_Depth(38.297f, 142.373f, 29.0f);
  s->fixEndTime();
  s->ComputeExtrema();
  return s;
}

std::string fileFor(const char* name, const char* text) {
  const std::string path = (std::filesystem::temp_directory_path() / name).string();
  if (std::FILE* file = std::fopen(path.c_str(), "w")) {
    std::fputs(text, file);
    std::fclose(file);
  }
  return path;
}

void seismograms() {
  static const std::string response = fileFor("krosac-reference.pz",
                                              "ZEROS 3\n0.0 0.0\nPOLES 4\n-0.037 0.037\n"
                                              "-0.037 -0.037\n-15.64 0.0\n-97.34 400.7\n"
                                              "CONSTANT 1.5e9\n");
  static const auto other = [] {
    const auto s = dayOfNoise();
    s->LPBUfilter_NPasses_NPoles(0.1f, 1, 4);
    return s;
  }();
  static constexpr float kBand[] = {0.005f, 0.01f, 0.2f, 0.4f};
  const std::pair<const char*, void (*)(SacObject&)> operations[] = {
      {"untouched", [](SacObject&) {}},
      {"mean", [](SacObject& s) { s.RemoveMean(); }},
      {"trend", [](SacObject& s) { s.SubtractLinearTrend(); }},
      {"integral", [](SacObject& s) { s.Integrate(); }},
      {"derivative", [](SacObject& s) { s.Differentiate(); }},
      {"taper", [](SacObject& s) { s.Taper(0.1f); }},
      {"square root of time", [](SacObject& s) { s.ScaleBySquareRootTime(); }},
      {"zeros behind", [](SacObject& s) { s.ZeroAmplitudesAfterTime_TaperLength(5.5f, 100); }},
      {"chop", [](SacObject& s) { s.ChopFromStart_END(-700.3f, 9000.8f); }},
      {"group velocities", [](SacObject& s) { s.ChopWithGVelMin_Max(2.5f, 4.5f); }},
      {"every second", [](SacObject& s) { s.Decimate(2); }},
      {"every third", [](SacObject& s) { s.Decimate(3); }},
      {"every fourth", [](SacObject& s) { s.Decimate(4); }},
      {"every fifth", [](SacObject& s) { s.Decimate(5); }},
      {"low-pass", [](SacObject& s) { s.LPBUfilter_NPasses_NPoles(0.05f, 2, 6); }},
      {"high-pass", [](SacObject& s) { s.HPBUfilter_NPasses_NPoles(0.02f, 1, 3); }},
      {"Gaussian", [](SacObject& s) { s.RGaussianFilter(1.5f); }},
      {"other Gaussian", [](SacObject& s) { s.RGaussianFilterSwapOld_New(2.5f, 1.0f); }},
      {"narrow band", [](SacObject& s) { s.SGaussianFilter_Alpha(0.05f, 20.0f); }},
      {"cosine band", [](SacObject& s) { s.CosineTaperFilter(0.005f, 0.01f, 0.2f, 0.4f); }},
      {"attenuation", [](SacObject& s) { s.TstarFilter(1.1f); }},
      {"cosine pulse", [](SacObject& s) { s.CosineTimeFunctionFilterDuration(12.5f); }},
      {"trapezoid", [](SacObject& s) { s.TrapezoidFilter(3.5f, 10.0f, 4.25f); }},
      {"envelope", [](SacObject& s) { s.Envelope(); }},
      {"instantaneous", [](SacObject& s) { s.InstantaneousPeriod(); }},
      {"against noise", [](SacObject& s) { s.NoiseFilterStartingAtTime(-1000.0f); }},
      {"prewhitened", [](SacObject& s) { s.prewhiten(); }},
      {"divided",
       [](SacObject& s) {
         s.WaterLevelDeconWith_wlevel_tshift_gwidth(*other, 0.01f, 10.0f, 2.5f);
       }},
      {"correlated", [](SacObject& s) { s.correlateWith(*other); }},
      {"seismograph", [](SacObject& s) { s.ConvolveInstrument(1); }},
      {"ground motion", [](SacObject& s) { s.DeconvolveInstrument_TaperCorners(response, kBand); }},
      {"pulse removed", [](SacObject& s) { s.subtractZeroLagGaussian(0.25f); }},
      {"marks", [](SacObject& s) { s.markJBTimesAndSlowness(); }},
      {"later reference", [](SacObject& s) { s.shiftTimesBy(86400.5f); }},
      {"reduced", [](SacObject& s) { s.ReduceByVelocity(6.5f); }},
      {"rotated", [](SacObject& s) { RotateSeismogramsByAngle(s, *other->copyWithZone(), 33.3f); }},
  };
  for (const auto& [name, operate] : operations) {
    const auto s = dayOfNoise();
    operate(*s);
    Hash hash;
    hash.add(s->myData()->bytes(), s->myData()->length());
    hash << s->simpleRMS() << s->signalPower() << s->centroid() << s->epochStartTime()
         << s->description() << s->eventDescription() << s->stationDescription()
         << s->hypoPickString();
    print(name, hash);
  }
  const auto s = dayOfNoise();
  std::int32_t shift = 3;
  float misfit = 0.0f;
  L2SacFracMisfitWithShift(*s, *other, &shift, &misfit);
  const auto best = s->GetOptimalShift(*other);
  print("misfits", Hash() << shift << misfit << L1SacMisfit(*s, *other)
                          << L2SacFracMisfit(*s, *other) << best.first << best.second);
  const auto bytes = archive(*s);
  const auto again = unarchive<SacObject>(*bytes);
  Hash archived;
  archived.add(bytes->bytes(), bytes->length());
  archived.add(again->myData()->bytes(), again->myData()->length());
  print("archive", archived);
  std::filesystem::remove(response);
}

void transforms() {
  for (unsigned long n = 2; n <= 1u << 17; n *= 2) {
    Samples x = noise(n);
    realft(x.data() - 1, n, 1);
    Hash hash;
    hash << x;
    realft(x.data() - 1, n, -1);
    four1(x.data() - 1, n / 2, -1);
    print("transform of " + std::to_string(n), hash << x);
  }
  const auto spectrum = make<rfSpectrum>();
  spectrum->initWithImpulseSpectrumDt_Npts(0.05f, 3000);
  spectrum->phaseShiftBy(1.7f);
  spectrum->multiplyByIOmega();
  spectrum->multiplyByScalar(0.3f);
  spectrum->computeExtrema();
  Hash hash;
  hash.add(spectrum->spectrum()->bytes(), spectrum->spectrum()->length());
  hash << spectrum->signalPower() << spectrum->meanLog10AmplitudeValueFrom_To(1.0f, 5.0f)
       << spectrum->description();
  print("spectrum", hash);
}

void numbers() {
  Hash hash;
  Samples x = noise(10001), y = noise(400);
  float median = 0.0f;
  hash << kahanSum(x.data(), 10001) << vmean(x.data(), 10001);
  mdian2(x.data() - 1, 10001, &median);
  hash << median;
  Samples out(10001 + 400);
  TDconvolve(x.data(), y.data(), out.data(), 10001, 400, 0.05f);
  print("sums and convolution", hash << out);
  QuasiRandomContext context{};
  QuasiRandomInitialize(&context, 52);
  Samples point(52);
  Hash points;
  for (int k = 0; k < 1000; ++k) {
    QuasiRandomNumber(&context, point.data());
    points << point;
  }
  QuasiRandomRelease(&context);
  print("quasi-random points", points);
  Hash responses;
  for (int code = 0; code < 8; ++code) {
    for (float omega = 0.01f; omega < 100.0f; omega *= 1.3f) {
      float re = 0.0f, im = 0.0f;
      GetInstrumentResponse(code, &re, &im, omega);
      responses << re << im;
    }
  }
  print("responses", responses);
}

void travelTimes() {
  Samples tp(118 * 14), ts(120 * 14);
  ReadJBTables(tp.data(), ts.data());
  Hash jb;
  jb << tp << ts;
  const auto iasp = make<TTTableObject>();
  const auto phases = make<JBTableObject>();
  const auto nmo = make<PsNMOTableObject>();
  iasp->init();
  phases->init();
  nmo->init();
  Hash tt, ps;
  for (float gcarc = 0.0f; gcarc < 180.0f; gcarc += 0.37f) {
    for (float depth = 0.0f; depth < 760.0f; depth += 47.7f) {
      for (const char* phase : {"P", "S", "PcP", "SS", "PKPdf", "ScP", "pP"}) {
        const SeismicPhase found = phases->GetJBPhase_GCARC_Depth(phase, gcarc, depth);
        jb << found.time << found.slowness;
        const auto all = iasp->GetTTimeSlownessesForPhase_GCARC_Depth(phase, gcarc, depth);
        tt << all.time << all.slowness << all.depthDerivative;
      }
      ps << nmo->bilinearTimeFromDepth_SrcDepth_Gcarc(410.0f, depth, gcarc)
         << nmo->bilinearDepthFromTime_SrcDepth_Gcarc(44.1f, depth, gcarc);
    }
  }
  print("Jeffreys-Bullen", jb);
  print("IASP91", tt);
  print("Ps moveout", ps);
  const auto locsat = make<LocsatTTTable>();
  locsat->init();
  if (const auto path = pathForResource("locsat_P", "txt")) locsat->loadTimesFromPath(*path);
  Hash times;
  for (const auto& v : locsat->listValuesForDistanceFrom_To_Step_SrcDepth(0, 100, 0.7f, 33))
    times << v.gcarc << v.time << v.slowness << v.depthDerivative;
  print("LocSAT", times);
}

void places() {
  Hash arcs, regions, ellipticity;
  for (float lat = -90.0f; lat <= 90.0f; lat += 7.3f) {
    for (float lon = -180.0f; lon <= 180.0f; lon += 11.9f) {
      const float lat2 = -lat * 0.7f + 3.0f, lon2 = lon * 0.9f + 20.0f;
      float distance = 0, azimuth = 0, toLat = 0, toLon = 0;
      delta_az(&lat, &lon, &lat2, &lon2, &distance, &azimuth);
      latLonFromDistAz(&toLat, &toLon, 6371.0f, lat, lon, 1234.5f, azimuth);
      arcs << distance << azimuth << toLat << toLon << geospread(distance);
      ellipticity << ellipCorrection(lat, lon, 33.0f, lat2, lon2);
      std::int32_t geographic = 0, seismic = 0;
      const char *geographicName = nullptr, *seismicName = nullptr;
      fe_lookup(lat, lon, &geographic, &seismic);
      fe_region(&geographic, &geographicName, &seismic, &seismicName);
      regions << geographic << seismic << geographicName << seismicName;
    }
  }
  print("great circles", arcs);
  print("ellipticity", ellipticity);
  print("regions", regions);
}

void dates() {
  Hash hash;
  for (const std::int32_t year : {1899, 1900, 1970, 1999, 2000, 2004, 2011, 2016, 2038, 2100}) {
    for (const auto& [month, day] :
         {std::pair{1, 1}, {2, 28}, {2, 29}, {3, 27}, {11, 6}, {12, 31}}) {
      for (const float seconds : {0.0f, 0.001f, 59.9996f, 86399.5f, -0.001f, 31622400.0f}) {
        const auto time = make<SeisTimeObject>();
        time->initWithValues_month_date_hour_minute_second_millisecond(year, month, day, 23, 59, 59,
                                                                       999.5);
        seconds < 0 ? time->subtractSeconds(-seconds) : time->addSeconds(seconds);
        const Date date = Date::fromComponents({year, month, day, 23, 59, 60});
        hash << time->secondsValue() << time->DOYcString() << time->YMDcString()
             << date.secondsSince1970 << Date{date.secondsSince1970 + seconds}.description()
             << doy(year, month, day);
      }
    }
  }
  print("dates", hash);
}

void sources() {
  Hash hash;
  for (float angle = -170.0f; angle < 360.0f; angle += 13.7f) {
    const auto source = make<Dislocation>();
    source->initWithSDR(angle, 5.0f + std::abs(angle) / 4.5f, angle / 2.0f);
    hash << source->GetAuxStrike() << source->GetAuxDip() << source->GetAuxRake()
         << source->GetPAzimuth() << source->GetTPlunge() << source->GetPaxis()
         << source->pAmplitudeAz_RayP_Vel_Upgoing(angle, 0.06f, 6.2f, true)
         << source->svAmplitudeAz_RayP_Vel_Upgoing(angle, 0.06f, 3.6f, false)
         << source->shAmplitudeAz_RayP_Vel_Upgoing(angle, 0.06f, 3.6f, true)
         << source->ComputeSurfWaveAmplitudeAz_Period(angle, 20.0f).x;
    float block[13] = {angle, 33.0f, 80.0f, 15.0f, 45.0f, 0.06f, 6.2f, 0.0f, 60.0f};
    GetBWResponse(block);
    hash << std::span(block);
  }
  print("sources", hash);
}

void texts() {
  Hash hash;
  for (double value = 1.0e-12; value < 1.0e12; value *= -7.3) {
    hash << formatText("%f %.9g %e %d", value, value, value, static_cast<int>(value) % 1000000);
    if (value > 1e11 || value < -1e11) break;
  }
  const auto series = make<uniformSampleTimeSeries>();
  series->initWithZerosNpts_Delta(1234, 0.1f);
  series->addSpikeAtTimeDelay_Amplitude(30.3f, 2.5f);
  series->cosineTimeFunctionFilterDuration(3.3f);
  series->setEpochStartTime(1234567.89);
  hash << series->simpleRMS() << series->centroid() << series->beginDateTime().description();
  print("texts", hash);
}

}  // namespace
}  // namespace krosac

int main() {
  krosac::setLogSink([](const std::string&) {});
  krosac::transforms();
  krosac::numbers();
  krosac::seismograms();
  krosac::travelTimes();
  krosac::places();
  krosac::dates();
  krosac::sources();
  krosac::texts();
}
