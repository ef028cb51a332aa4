// Results from all folders of the library, one line each: a name and a hash of the bits. They must
// be the same for every compiler, optimisation level, time zone, locale and thread.
#ifndef KROSAC_TESTS_ROBUSTNESS_REFERENCEBITS_H
#define KROSAC_TESTS_ROBUSTNESS_REFERENCEBITS_H

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <type_traits>

#include "TemporaryFolder.h"
#include "krosac/krosac.h"
#include "krosac/platform/internal/Process.h"
#include "krosac/platform/internal/Text.h"

namespace krosac::reference {

using Samples = std::vector<float>;

class Hash {
 public:
  template <typename T>
  Hash& operator<<(const T& value) {
    if constexpr (std::is_convertible_v<T, std::string_view>) {
      const std::string_view text = value;
      add(text.data(), text.size());
    } else if constexpr (std::is_same_v<T, Ref<ByteBuffer>>) {
      add(value->bytes(), value->length());
    } else if constexpr (std::is_floating_point_v<T>) {
      // The sign of a NaN depends on the processor.
      const T number = std::isnan(value) ? std::numeric_limits<T>::quiet_NaN() : value;
      add(&number, sizeof number);
    } else if constexpr (std::is_arithmetic_v<T>) {
      add(&value, sizeof value);
    } else {
      for (const auto& each : value) *this << each;
    }
    return *this;
  }
  unsigned long long value() const { return value_; }

 private:
  void add(const void* bytes, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i)
      value_ = (value_ ^ static_cast<const unsigned char*>(bytes)[i]) * 0x100000001b3u;
  }
  std::uint64_t value_ = 0xcbf29ce484222325u;
};

using Results = std::map<std::string, Hash>;

// Values in -1..1 from a generator that depends on no library.
inline Samples noise(std::size_t n) {
  Samples x(n);
  std::uint32_t state = 20110311;
  for (float& sample : x) {
    state = state * 1664525u + 1013904223u;
    sample = static_cast<float>(static_cast<std::int32_t>(state)) / 2147483648.0f;
  }
  return x;
}

// A trace of one day with all header values that operations use. It begins before the reference
// time.
inline Ref<SacObject> dayOfNoise() {
  const Samples x = noise(86400);
  auto s = make<SacObject>();
  s->initWithCapacity(static_cast<std::int32_t>(x.size()));
  std::ranges::copy(x, s->GetSacSeis());
  s->setBeginTime(-3600.25f);
  s->setoriginTimeOffset(-1800.5f);
  s->setPTime(-1200.125f);
  for (int key = 0; key < 10; ++key) {
    s->setTimePickKey_Value(key, 1000.0f * static_cast<float>(key));
    s->setUserValueKey_Value(key, 0.1f * static_cast<float>(key));
  }
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

using Operation = std::function<void(SacObject&)>;

// An operation that calls a method with these arguments.
template <typename Function, typename... Arguments>
Operation of(Function function, Arguments... arguments) {
  return [=](SacObject& s) { std::invoke(function, s, arguments...); };
}

inline void addSeismograms(Results& results) {
  const TemporaryFolder folder;
  const std::string response =
      folder.write("response",
                   "ZEROS 3\n0.0 0.0\nPOLES 4\n-0.037 0.037\n-0.037 -0.037\n"
                   "-15.64 0.0\n-97.34 400.7\nCONSTANT 1.5e9\n");
  const auto other = dayOfNoise();
  other->LPBUfilter_NPasses_NPoles(0.1f, 1, 4);
  const float band[] = {0.005f, 0.01f, 0.2f, 0.4f};
  const auto turned = other->copyWithZone();
  using S = SacObject;
  const std::pair<std::string, std::vector<Operation>> operations[] = {
      {"amplitudes",
       {of(&S::npts), of(&S::RemoveMean), of(&S::SubtractLinearTrend), of(&S::Integrate),
        of(&S::Differentiate), of(&S::Taper, 0.1f), of(&S::ScaleBySquareRootTime),
        of(&S::ZeroAmplitudesAfterTime_TaperLength, 5.5f, 100)}},
      {"cutting",
       {of(&S::ChopFromStart_END, -700.3f, 9000.8f), of(&S::ChopWithGVelMin_Max, 2.5f, 4.5f),
        of(&S::Decimate, 2), of(&S::Decimate, 3), of(&S::Decimate, 4), of(&S::Decimate, 5)}},
      {"filters",
       {of(&S::LPBUfilter_NPasses_NPoles, 0.05f, 2, 6),
        of(&S::HPBUfilter_NPasses_NPoles, 0.02f, 1, 3), of(&S::RGaussianFilter, 1.5f),
        of(&S::RGaussianFilterSwapOld_New, 2.5f, 1.0f), of(&S::SGaussianFilter_Alpha, 0.05f, 20.0f),
        of(&S::CosineTaperFilter, 0.005f, 0.01f, 0.2f, 0.4f), of(&S::TstarFilter, 1.1f),
        of(&S::CosineTimeFunctionFilterDuration, 12.5f),
        of(&S::TrapezoidFilter, 3.5f, 10.0f, 4.25f), of(&S::Envelope), of(&S::InstantaneousPeriod),
        of(&S::NoiseFilterStartingAtTime, -1000.0f), of(&S::prewhiten)}},
      {"deconvolution",
       {of(&S::WaterLevelDeconWith_wlevel_tshift_gwidth, std::cref(*other), 0.01f, 10.0f, 2.5f),
        of(&S::correlateWith, std::cref(*other)), of(&S::ConvolveInstrument, 1),
        of(&S::DeconvolveInstrument_TaperCorners, response, band),
        of(&S::subtractZeroLagGaussian, 0.25f)}},
      {"times and angles",
       {of(&S::markJBTimesAndSlowness), of(&S::shiftTimesBy, 86400.5f),
        of(&S::ReduceByVelocity, 6.5f), of(RotateSeismogramsByAngle, std::ref(*turned), 33.3f)}}};
  for (const auto& [name, list] : operations) {
    for (std::size_t k = 0; k < list.size(); ++k) {
      const auto s = dayOfNoise();
      list[k](*s);
      results[name + " " + std::to_string(k + 1)]
          << s->myData() << s->simpleRMS() << s->signalPower() << s->centroid()
          << s->epochStartTime() << s->description() << s->eventDescription()
          << s->stationDescription() << s->hypoPickString();
    }
  }
  const auto s = dayOfNoise();
  std::int32_t shift = 3;
  float misfit = 0.0f;
  L2SacFracMisfitWithShift(*s, *other, &shift, &misfit);
  const auto best = s->GetOptimalShift(*other);
  results["misfits"] << shift << misfit << L1SacMisfit(*s, *other) << L2SacFracMisfit(*s, *other)
                     << best.first << best.second;
  results["archive"] << archive(*s) << archivedCopy(*s)->myData();
}

inline void addSpectra(Results& results) {
  for (unsigned long n = 2; n <= 1u << 17; n *= 2) {
    Samples x = noise(n);
    Hash& hash = results["transform of " + std::to_string(n)];
    realft(x.data() - 1, n, 1);
    hash << x;
    realft(x.data() - 1, n, -1);
    four1(x.data() - 1, n / 2, -1);
    hash << x;
  }
  const auto spectrum = make<rfSpectrum>();
  spectrum->initWithImpulseSpectrumDt_Npts(0.05f, 3000);
  spectrum->phaseShiftBy(1.7f);
  spectrum->multiplyByIOmega();
  spectrum->multiplyByScalar(0.3f);
  spectrum->computeExtrema();
  results["spectrum"] << spectrum->spectrum() << spectrum->signalPower()
                      << spectrum->meanLog10AmplitudeValueFrom_To(1.0f, 5.0f)
                      << spectrum->description();
}

inline void addNumbers(Results& results) {
  Samples x = noise(10001), y = noise(400), out(10001 + 400), point(52);
  float median = 0.0f;
  Hash& sums = results["sums and convolution"];
  sums << kahanSum(x.data(), 10001) << vmean(x.data(), 10001);
  mdian2(x.data() - 1, 10001, &median);
  TDconvolve(x.data(), y.data(), out.data(), 10001, 400, 0.05f);
  sums << median << out;
  QuasiRandomContext context{};
  QuasiRandomInitialize(&context, 52);
  for (int k = 0; k < 1000; ++k) {
    QuasiRandomNumber(&context, point.data());
    results["quasi-random points"] << point;
  }
  QuasiRandomRelease(&context);
  for (int code = 0; code < 8; ++code) {
    for (float omega = 0.01f; omega < 100.0f; omega *= 1.3f) {
      float re = 0.0f, im = 0.0f;
      GetInstrumentResponse(code, &re, &im, omega);
      results["responses"] << re << im;
    }
  }
}

inline void addTravelTimes(Results& results) {
  Samples tp(118 * 14), ts(120 * 14);
  ReadJBTables(tp.data(), ts.data());
  Hash &jb = results["Jeffreys-Bullen"], &tt = results["IASP91"], &ps = results["Ps moveout"];
  jb << tp << ts;
  const auto iasp = make<TTTableObject>();
  const auto phases = make<JBTableObject>();
  const auto nmo = make<PsNMOTableObject>();
  iasp->init();
  phases->init();
  nmo->init();
  for (float gcarc = 0.0f; gcarc < 180.0f; gcarc += 0.37f) {
    for (float depth = 0.0f; depth < 760.0f; depth += 47.7f) {
      for (const char* phase : {"P", "S", "PcP", "SS", "PKPdf", "ScP", "pP"}) {
        const auto found = phases->GetJBPhase_GCARC_Depth(phase, gcarc, depth);
        const auto all = iasp->GetTTimeSlownessesForPhase_GCARC_Depth(phase, gcarc, depth);
        jb << found.time << found.slowness;
        tt << all.time << all.slowness << all.depthDerivative;
      }
      ps << nmo->bilinearTimeFromDepth_SrcDepth_Gcarc(410.0f, depth, gcarc)
         << nmo->bilinearDepthFromTime_SrcDepth_Gcarc(44.1f, depth, gcarc);
    }
  }
  const auto locsat = make<LocsatTTTable>();
  locsat->init();
  locsat->loadTimesFromPath(pathForResource("locsat_P", "txt").value_or(""));
  for (const auto& v : locsat->listValuesForDistanceFrom_To_Step_SrcDepth(0, 100, 0.7f, 33))
    results["LocSAT"] << v.gcarc << v.time << v.slowness << v.depthDerivative;
}

inline void addPlaces(Results& results) {
  for (float lat = -90.0f; lat <= 90.0f; lat += 7.3f) {
    for (float lon = -180.0f; lon <= 180.0f; lon += 11.9f) {
      const float lat2 = -lat * 0.7f + 3.0f, lon2 = lon * 0.9f + 20.0f;
      float distance = 0, azimuth = 0, toLat = 0, toLon = 0;
      delta_az(&lat, &lon, &lat2, &lon2, &distance, &azimuth);
      latLonFromDistAz(&toLat, &toLon, 6371.0f, lat, lon, 1234.5f, azimuth);
      results["great circles"] << distance << azimuth << toLat << toLon << geospread(distance);
      results["ellipticity"] << ellipCorrection(lat, lon, 33.0f, lat2, lon2);
      std::int32_t geographic = 0, seismic = 0;
      const char *geographicName = nullptr, *seismicName = nullptr;
      fe_lookup(lat, lon, &geographic, &seismic);
      fe_region(&geographic, &geographicName, &seismic, &seismicName);
      results["regions"] << geographic << seismic << geographicName << seismicName;
    }
  }
}

inline void addDates(Results& results) {
  for (const std::int32_t year : {1899, 1900, 1970, 1999, 2000, 2004, 2011, 2016, 2038, 2100}) {
    for (const auto& [month, day] :
         {std::pair{1, 1}, {2, 28}, {2, 29}, {3, 27}, {11, 6}, {12, 31}}) {
      for (const float seconds : {0.0f, 0.001f, 59.9996f, 86399.5f, -0.001f, 31622400.0f}) {
        const auto time = make<SeisTimeObject>();
        time->initWithValues_month_date_hour_minute_second_millisecond(year, month, day, 23, 59, 59,
                                                                       999.5);
        seconds < 0 ? time->subtractSeconds(-seconds) : time->addSeconds(seconds);
        const Date date = Date::fromComponents({year, month, day, 23, 59, 60});
        results["dates"] << time->secondsValue() << time->DOYcString() << time->YMDcString()
                         << date.secondsSince1970
                         << Date{date.secondsSince1970 + seconds}.description()
                         << doy(year, month, day);
      }
    }
  }
}

inline void addSources(Results& results) {
  for (float angle = -170.0f; angle < 360.0f; angle += 13.7f) {
    const auto source = make<Dislocation>();
    source->initWithSDR(angle, 5.0f + std::abs(angle) / 4.5f, angle / 2.0f);
    float block[13] = {angle, 33.0f, 80.0f, 15.0f, 45.0f, 0.06f, 6.2f, 0.0f, 60.0f};
    GetBWResponse(block);
    results["sources"] << source->GetAuxStrike() << source->GetAuxDip() << source->GetAuxRake()
                       << source->GetPAzimuth() << source->GetTPlunge() << source->GetPaxis()
                       << source->pAmplitudeAz_RayP_Vel_Upgoing(angle, 0.06f, 6.2f, true)
                       << source->svAmplitudeAz_RayP_Vel_Upgoing(angle, 0.06f, 3.6f, false)
                       << source->shAmplitudeAz_RayP_Vel_Upgoing(angle, 0.06f, 3.6f, true)
                       << source->ComputeSurfWaveAmplitudeAz_Period(angle, 20.0f).x << block;
  }
}

inline void addTexts(Results& results) {
  for (double value = 1.0e-12; std::abs(value) < 1.0e12; value *= -7.3) {
    const int whole = std::abs(value) < 2147483648.0 ? static_cast<int>(value) : INT32_MIN;
    results["texts"] << formatText("%f %.9g %e %d", value, value, value, whole % 1000000);
  }
  const auto series = make<uniformSampleTimeSeries>();
  series->initWithZerosNpts_Delta(1234, 0.1f);
  series->addSpikeAtTimeDelay_Amplitude(30.3f, 2.5f);
  series->cosineTimeFunctionFilterDuration(3.3f);
  series->setEpochStartTime(1234567.89);
  results["texts"] << series->simpleRMS() << series->centroid()
                   << series->beginDateTime().description();
}

inline void addFiles(Results& results) {
  const TemporaryFolder folder;
  const std::string path = folder.path("a.sac");
  for (const bool swapped : {true, false}) {
    const AutoreleasePool pool;
    const auto day = dayOfNoise();
    day->setPath(path);
    day->setSwappedBytes(swapped);
    auto* s = alloc<SacObject>();
    if (!day->save() || !s->InitWithPath(path)) return s->release();
    s->setVerbose(2);
    log("%s %f", s->hypoPickString().c_str(), 0.5);
    pathForResource("absent", "txt");  // logged once per process
    ProcessCommand echo;
    echo.program = "/bin/echo";
    echo.arguments = {s->flinnEngdahlString().value_or("none")};
    echo.capturesOutput = true;
    results["files"] << s->swappedBytes() << s->myData() << runProcess(echo).output;
    s->initWithPath(folder.path("absent"));
  }
}

inline std::string bits() {
  Results results;
  for (const auto add : {addSpectra, addNumbers, addSeismograms, addTravelTimes, addPlaces,
                         addDates, addSources, addTexts, addFiles})
    add(results);
  std::string lines;
  for (const auto& [name, hash] : results)
    lines += formatText("%016llx %s\n", hash.value(), name.c_str());
  return lines;
}

}  // namespace krosac::reference

#endif
