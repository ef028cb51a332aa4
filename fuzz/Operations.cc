#include "Operations.h"

#include <iterator>

#include "krosac/collections/SeismogramArray.h"
#include "krosac/collections/SeismogramGroups.h"
#include "krosac/dsp/Misfits.h"
#include "krosac/dsp/Rotation.h"
#include "krosac/timegeo/SeisTimeObject.h"

namespace fuzz {
namespace {

using krosac::ByteBuffer;
using krosac::make;
using krosac::Ref;
using krosac::SacObject;
using krosac::SeisTimeObject;

Ref<SeisTimeObject> anyTime(Arguments& a) {
  auto time = make<SeisTimeObject>();
  const bool plain = a.ConsumeBool();
  const auto field = [&](std::int32_t most) {
    return plain ? a.ConsumeIntegralInRange(1, most) : a.integer();
  };
  const std::int32_t year = field(3000), month = field(12), date = field(31), hour = field(23);
  time->initWithValues_month_date_hour_minute_second_millisecond(
      year, month, date, hour, field(59), field(59), static_cast<double>(a.real()));
  return time;
}

// Writes the seismogram's own image to the input file, in part, and gives its path.
std::string savedImage(const SacObject& s, Arguments& a) {
  const auto& image = s.myData();
  const std::size_t length = image ? image->length() : 0;
  const std::size_t kept =
      a.ConsumeBool() ? length : a.ConsumeIntegralInRange<std::size_t>(0, length);
  return asFile({image ? image->bytes() : nullptr, kept});
}

std::vector<Ref<SacObject>> group(SacObject& s, SacObject& other, Arguments& a) {
  std::vector<Ref<SacObject>> list{Ref<SacObject>(&s), Ref<SacObject>(&other)};
  for (int more = a.ConsumeIntegralInRange(0, 4); more > 0; --more) {
    list.push_back(a.ConsumeBool() ? s.copyWithZone() : a.seismogram());
    if (a.ConsumeBool() && list.back()) list.back()->setBeginTime(a.real());
    if (a.ConsumeBool() && list.back()) list.back()->setMySeisReferenceTime(anyTime(a));
  }
  if (a.ConsumeBool()) list.insert(list.begin() + 1, nullptr);
  return list;
}

void setRealField(SacObject& s, Arguments& a) {
  using Setter = void (SacObject::*)(float);
  static constexpr Setter kSetters[] = {
      &SacObject::setDelta,       &SacObject::setBeginTime,
      &SacObject::setEndTime,     &SacObject::setoriginTimeOffset,
      &SacObject::setPTime,       &SacObject::setDistance,
      &SacObject::setGcarc,       &SacObject::setAzimuth,
      &SacObject::setBackazimuth, &SacObject::setComponentAzimuth,
      &SacObject::setMagnitude,   &SacObject::setComponentIncAngle};
  const Setter setter = a.PickValueInArray(kSetters);
  (s.*setter)(a.real());
}

void setTextField(SacObject& s, Arguments& a) {
  using Setter = void (SacObject::*)(const char*);
  static constexpr Setter kSetters[] = {&SacObject::setStationID, &SacObject::setComponentName,
                                        &SacObject::setNetworkID, &SacObject::setEventName,
                                        &SacObject::setKHoleID};
  const Setter setter = a.PickValueInArray(kSetters);
  const std::string text = a.text();
  (s.*setter)(a.ConsumeBool() ? text.c_str() : nullptr);
}

void useArray(SacObject& s, SacObject& other, Arguments& a) {
  auto array = make<krosac::SeismogramArray>();
  array->init();
  array->theSeismograms() = group(s, other, a);
  std::erase(array->theSeismograms(), nullptr);
  const std::vector<std::string> names{a.text(8), s.knetwk(), s.kcmpnm()};
  array->setGCarcScreen(a.ConsumeBool());
  array->setQualityScreen(a.ConsumeBool());
  array->setNetworkScreen(a.ConsumeBool());
  array->setChannelScreen(a.ConsumeBool());
  array->setMinGCarc(a.real());
  array->setMaxGCarc(a.real());
  array->setMinQuality(a.integer());
  if (a.ConsumeBool()) array->setNetworksPointer(&names);
  if (a.ConsumeBool()) array->setChannelsPointer(&names);
  array->screenSeismogram(s);
  array->relativeTimeRange();
  array->gcarcRange();
  array->azRange();
  array->backazRange();
  array->gammaRangeForAzimuth_slownessKey(a.real(), a.integer());
  if (a.ConsumeBool()) array->equalizeTimeRange();
  if (a.ConsumeBool()) array->filterSeismograms();
}

using Operation = void (*)(SacObject& s, SacObject& other, Arguments& a);

constexpr Operation kOperations[] = {
    // Making, loading and saving
    [](SacObject& s, SacObject&, Arguments& a) {
      s.initWithCapacity(a.ConsumeIntegralInRange<std::int32_t>(-2, 400));
    },
    [](SacObject& s, SacObject& other, Arguments&) { s.initWithSeisObject(other); },
    [](SacObject& s, SacObject&, Arguments& a) { s.loadFromPath(savedImage(s, a)); },
    [](SacObject& s, SacObject& other, Arguments& a) {
      s.replaceSacObjectDataWithPath(savedImage(other, a));
    },
    [](SacObject& s, SacObject&, Arguments& a) {
      const auto image = s.myData();
      const std::size_t length = image ? image->length() : 0;
      s.setMyData(ByteBuffer::copyOf(image ? image->bytes() : nullptr,
                                     a.ConsumeIntegralInRange<std::size_t>(0, length)));
      if (a.ConsumeBool()) s.setupPointers();
    },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.setPath(scratchPath());
      if (a.ConsumeBool()) s.setSwappedBytes(a.ConsumeBool());
      if (a.ConsumeBool() ? s.save() : s.saveToPath(scratchPath())) s.loadFromPath(scratchPath());
    },
    // Fields
    [](SacObject& s, SacObject&, Arguments& a) { setRealField(s, a); },
    [](SacObject& s, SacObject&, Arguments& a) { setTextField(s, a); },
    [](SacObject& s, SacObject&, Arguments& a) { s.setNpts(a.integer()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.setIQual(a.integer()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.setSrcType(a.integer()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.setVerbose(a.integer()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.setLabelString(a.text()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.setMyReferenceDate(a.date()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.setTimePickKey_Value(a.integer(), a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.setPickLabelKey_Value(a.integer(), a.ConsumeBool() ? a.text().c_str() : nullptr);
    },
    [](SacObject& s, SacObject&, Arguments& a) { s.setUserValueKey_Value(a.integer(), a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.setUserValueLabelKey_Value(a.integer(), a.ConsumeBool() ? a.text().c_str() : nullptr);
    },
    [](SacObject& s, SacObject&, Arguments& a) {
      const std::int32_t key = a.integer();
      s.timePickKey(key);
      s.pickLabelWithKey(key);
      s.userValue(key);
      s.userValueLabelWithKey(key);
    },
    [](SacObject& s, SacObject&, Arguments&) { s.clearTimePicks(); },
    [](SacObject& s, SacObject&, Arguments&) { s.clearUserValues(); },
    [](SacObject& s, SacObject&, Arguments&) { s.fixEndTime(); },
    [](SacObject& s, SacObject&, Arguments&) { s.ComputeExtrema(); },
    // Geometry
    [](SacObject& s, SacObject&, Arguments& a) {
      s.setEventLocationLat_Lon_Depth(a.real(), a.real(), a.real());
    },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.setStationLocationLat_Lon_Elevation(a.real(), a.real(), a.real());
    },
    [](SacObject& s, SacObject&, Arguments&) { s.flinnEngdahlGeographicRegion(); },
    // Reference time
    [](SacObject& s, SacObject&, Arguments& a) { s.setReferenceTimeWithNSCalendarDate(a.date()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.setReferenceTimeWithNSDate(a.date()); },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.replaceReferenceTimeWith(a.ConsumeBool() ? anyTime(a) : nullptr);
    },
    [](SacObject& s, SacObject&, Arguments& a) { s.adjustReferenceTimeToNSCalendarDate(a.date()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.adjustReferenceTimeToNSDate(a.date()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.setReferenceTime(*anyTime(a)); },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.setOriginTimeYear_Month_Day_Hour_Minutes_Seconds(a.integer(), a.integer(), a.integer(),
                                                         a.integer(), a.integer(), a.real());
    },
    [](SacObject& s, SacObject&, Arguments& a) { s.ZeroThisTime(a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.shiftTimesBy(a.real()); },
    [](SacObject& s, SacObject&, Arguments&) { s.ZeroStartTime(); },
    [](SacObject& s, SacObject&, Arguments&) { s.ZeroOriginTime(); },
    [](SacObject& s, SacObject&, Arguments&) { s.ZeroPTime(); },
    [](SacObject& s, SacObject&, Arguments& a) { s.ReduceByVelocity(a.real()); },
    // Amplitudes
    [](SacObject& s, SacObject&, Arguments& a) { s.ComputeMinMaxInRange(a.real(), a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.ComputePowerFrom_To(a.real(), a.real()); },
    [](SacObject& s, SacObject&, Arguments&) { s.RemoveMean(); },
    [](SacObject& s, SacObject&, Arguments&) { s.SubtractLinearTrend(); },
    [](SacObject& s, SacObject&, Arguments&) { s.FlipPolarity(); },
    [](SacObject& s, SacObject&, Arguments& a) { s.ScaleAmplitudes(a.real()); },
    [](SacObject& s, SacObject&, Arguments&) { s.ScaleByLinearTime(); },
    [](SacObject& s, SacObject&, Arguments&) { s.ScaleBySquareTime(); },
    [](SacObject& s, SacObject&, Arguments&) { s.ScaleBySquareRootTime(); },
    [](SacObject& s, SacObject&, Arguments&) { s.ScaleByDistance(); },
    [](SacObject& s, SacObject&, Arguments&) { s.sqrAmplitudes(); },
    [](SacObject& s, SacObject&, Arguments&) { s.absAmplitudes(); },
    [](SacObject& s, SacObject&, Arguments&) { s.ZeroAmplitudes(); },
    [](SacObject& s, SacObject&, Arguments&) { s.binary(); },
    [](SacObject& s, SacObject&, Arguments&) { s.reverseTime(); },
    [](SacObject& s, SacObject&, Arguments&) { s.Integrate(); },
    [](SacObject& s, SacObject&, Arguments&) { s.Differentiate(); },
    [](SacObject& s, SacObject&, Arguments& a) { s.Taper(a.real()); },
    [](SacObject& s, SacObject&, Arguments&) { s.defaultTaper(); },
    [](SacObject& s, SacObject&, Arguments& a) { s.ZeroAmplitudesAfterTime(a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.ZeroAmplitudesAfterTime_TaperLength(a.real(), a.integer());
    },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.ZeroAmplitudesBeforeTime_TaperLength(a.real(), a.integer());
    },
    // Cutting, decimating and joining
    [](SacObject& s, SacObject&, Arguments& a) { s.ChopFromStart_END(a.real(), a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.ChopFromOriginToGVel(a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.ChopWithGVelMin_Max(a.real(), a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.ChopWithGVelMin_Max_MinDuration(a.real(), a.real(), a.real());
    },
    [](SacObject& s, SacObject&, Arguments& a) { s.Decimate(a.integer()); },
    [](SacObject& s, SacObject&, Arguments& a) {
      const auto scratch = ByteBuffer::zeroed(a.ConsumeIntegralInRange<std::size_t>(0, 1000));
      s.inPlaceDecimate_UsingTempData(a.integer(), *scratch);
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      if (a.ConsumeBool()) other.setDelta(s.delta());
      if (a.ConsumeBool()) other.setBeginTime(s.e() + s.delta());
      s.AppendSacObject(a.ConsumeBool() ? other : s);
    },
    // Filters
    [](SacObject& s, SacObject&, Arguments& a) {
      s.LPBUfilter_NPasses_NPoles(a.real(), a.integer(), a.integer());
    },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.HPBUfilter_NPasses_NPoles(a.real(), a.integer(), a.integer());
    },
    [](SacObject& s, SacObject&, Arguments& a) { s.RGaussianFilter(a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.RGaussianFilterSwapOld_New(a.real(), a.real());
    },
    [](SacObject& s, SacObject&, Arguments& a) { s.SGaussianFilter_Alpha(a.real(), a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.CosineTaperFilter(a.real(), a.real(), a.real(), a.real());
    },
    [](SacObject& s, SacObject&, Arguments& a) { s.TstarFilter(a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.CosineTimeFunctionFilterDuration(a.real()); },
    [](SacObject& s, SacObject&, Arguments& a) { s.TrapezoidFilter(a.real(), a.real(), a.real()); },
    [](SacObject& s, SacObject&, Arguments&) { s.Envelope(); },
    [](SacObject& s, SacObject&, Arguments&) { s.InstantaneousPeriod(); },
    [](SacObject& s, SacObject&, Arguments& a) { s.NoiseFilterStartingAtTime(a.real()); },
    [](SacObject& s, SacObject&, Arguments&) { s.spectrum(); },
    [](SacObject& s, SacObject&, Arguments&) { s.prewhiten(); },
    // Deconvolution, correlation and instruments
    [](SacObject& s, SacObject& other, Arguments& a) {
      s.WaterLevelDeconWith_wlevel_tshift(a.ConsumeBool() ? other : s, a.real(), a.real());
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      s.WaterLevelDeconWith_wlevel_tshift_gwidth(other, a.real(), a.real(), a.real());
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      s.iterDeconWith_wlevel_tshift_gwidth_nIter_minMF(other, a.real(), a.real(), a.real(),
                                                       a.integer(), a.real());
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      s.correlateWith(a.ConsumeBool() ? other : s);
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      s.GetOptimalShift(a.ConsumeBool() ? other : s);
    },
    [](SacObject& s, SacObject&, Arguments& a) { s.ConvolveInstrument(a.integer()); },
    [](SacObject& s, SacObject&, Arguments& a) {
      const std::string text = "zeros 2\npoles 2\n" + a.text(80) + "\nconstant 3\n";
      const float corners[] = {a.real(), a.real(), a.real(), a.real()};
      s.DeconvolveInstrument_TaperCorners(
          asFile({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}), corners);
    },
    [](SacObject& s, SacObject&, Arguments& a) { s.subtractZeroLagGaussian(a.real()); },
    // Marks and synthetics
    [](SacObject& s, SacObject&, Arguments&) { s.markJBTimes(); },
    [](SacObject& s, SacObject&, Arguments&) { s.markJBTimesAndSlowness(); },
    [](SacObject& s, SacObject&, Arguments& a) { s.computeBWResponse(a.reals(13).data()); },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.addBWResponse_Delay_Moment(a.reals(13).data(), a.real(), a.real());
    },
    [](SacObject& s, SacObject&, Arguments& a) {
      s.addBWResponseWater_Delay_Moment_WDepth(a.reals(13).data(), a.real(), a.real(), a.real());
    },
    [](SacObject& s, SacObject&, Arguments& a) { s.addSpikeDelay_Moment(a.real(), a.real()); },
    [](SacObject& s, SacObject& other, Arguments& a) {
      s.addSeismogram(a.ConsumeBool() ? other : s);
    },
    // Two and more
    [](SacObject& s, SacObject& other, Arguments& a) {
      krosac::RotateSeismograms(s, a.ConsumeBool() ? other : s);
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      krosac::RotateSeismogramsByAngle(s, other, a.real());
    },
    [](SacObject& s, SacObject& other, Arguments&) {
      krosac::L1SacMisfit(s, other);
      krosac::L2SacMisfit(s, other);
      krosac::L1SacFracMisfit(s, other);
      krosac::L2SacFracMisfit(s, other);
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      std::int32_t shift = a.integer();
      float misfit = 0.0f;
      (a.ConsumeBool() ? krosac::L1SacFracMisfitWithShift : krosac::L2SacFracMisfitWithShift)(
          s, other, &shift, &misfit);
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      krosac::saRemoveCollectiveMean(group(s, other, a));
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      auto list = group(s, other, a);
      krosac::saSynchSacObjects(list);
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      auto list = group(s, other, a);
      krosac::saRemoveOverlaps(list);
    },
    [](SacObject& s, SacObject& other, Arguments& a) {
      auto list = group(s, other, a);
      krosac::saMergeSacSeisInArray(list);
    },
    [](SacObject& s, SacObject& other, Arguments& a) { useArray(s, other, a); },
};

}  // namespace

void applyOperation(SacObject& s, SacObject& other, Arguments& a) {
  a.PickValueInArray(kOperations)(s, other, a);
}

void readEverything(SacObject& s) {
  s.description();
  s.stationDescription();
  s.eventDescription();
  s.oTimeString();
  s.hypoPickString();
  s.compareGCarcs(s);
  s.compareDistances(s);
  s.compareBackAzimuths(s);
  s.compareAzimuths(s);
  s.absMax();
  s.nextPowerOfTwoPts();
  s.gamma();
  s.epochStartTime();
  s.epochEndTime();
  s.isP();
  s.isG1();
  s.getGroupVelocityRange();
  s.simpleRMS();
  s.signalPower();
  s.centroid();
  s.simpleSNR();
  s.FindMaximum();
  s.FindMinimum();
  if (const auto& image = s.myData()) touch(image->bytes(), image->length());
}

}  // namespace fuzz
