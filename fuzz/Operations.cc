// Operations of seismograms with arguments from the input.
#include "Harness.h"

namespace fuzz {
namespace {

using S = SacObject;

// Writes a part of the seismogram's own image to the input file and returns its path.
std::string savedImage(const S& s, Arguments& a) {
  const std::string_view image = bytesIn(s.myData());
  return asFile(a.ConsumeBool() ? image : image.substr(0, a.index(image.size() + 1)));
}

void useArray(S& s, Arguments& a) {
  auto array = make<SeismogramArray>();
  array->init();
  array->theSeismograms() = a.group();
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

constexpr Operation<S> kOperations[] = {
    // Making, loading and saving
    [](S& s, Arguments& a) { s.initWithCapacity(a.ConsumeIntegralInRange(-2, 400)); },
    [](S& s, Arguments& a) { s.loadFromPath(savedImage(s, a)); },
    [](S& s, Arguments& a) { s.replaceSacObjectDataWithPath(savedImage(a.seismogram(), a)); },
    [](S& s, Arguments& a) {
      const std::string_view image = bytesIn(s.myData());
      s.setMyData(ByteBuffer::copyOf(image.data(), a.index(image.size() + 1)));
      if (a.ConsumeBool()) s.setupPointers();
    },
    [](S& s, Arguments& a) {
      s.setPath(scratchPath());
      if (a.ConsumeBool()) s.setSwappedBytes(a.ConsumeBool());
      if (a.ConsumeBool() ? s.save() : s.saveToPath(scratchPath())) s.loadFromPath(scratchPath());
    },
    call<&S::initWithSeisObject>,
    // Fields
    call<&S::setDelta>, call<&S::setBeginTime>, call<&S::setEndTime>, call<&S::setoriginTimeOffset>,
    call<&S::setPTime>, call<&S::setDistance>, call<&S::setGcarc>, call<&S::setAzimuth>,
    call<&S::setBackazimuth>, call<&S::setComponentAzimuth>, call<&S::setMagnitude>,
    call<&S::setComponentIncAngle>, call<&S::setStationID>, call<&S::setComponentName>,
    call<&S::setNetworkID>, call<&S::setEventName>, call<&S::setKHoleID>, call<&S::setNpts>,
    call<&S::setIQual>, call<&S::setSrcType>, call<&S::setVerbose>, call<&S::setLabelString>,
    call<&S::setMyReferenceDate>, call<&S::setTimePickKey_Value>, call<&S::setPickLabelKey_Value>,
    call<&S::setUserValueKey_Value>, call<&S::setUserValueLabelKey_Value>, call<&S::timePickKey>,
    call<&S::pickLabelWithKey>, call<&S::userValue>, call<&S::userValueLabelWithKey>,
    call<&S::clearTimePicks>, call<&S::clearUserValues>, call<&S::fixEndTime>,
    call<&S::ComputeExtrema>,
    // Geometry and reference time
    call<&S::setEventLocationLat_Lon_Depth>, call<&S::setStationLocationLat_Lon_Elevation>,
    call<&S::flinnEngdahlGeographicRegion>, call<&S::setReferenceTimeWithNSCalendarDate>,
    call<&S::setReferenceTimeWithNSDate>, call<&S::replaceReferenceTimeWith>,
    call<&S::adjustReferenceTimeToNSCalendarDate>, call<&S::adjustReferenceTimeToNSDate>,
    [](S& s, Arguments& a) { s.setReferenceTime(*a.time()); },
    call<&S::setOriginTimeYear_Month_Day_Hour_Minutes_Seconds>, call<&S::ZeroThisTime>,
    call<&S::shiftTimesBy>, call<&S::ZeroStartTime>, call<&S::ZeroOriginTime>, call<&S::ZeroPTime>,
    call<&S::ReduceByVelocity>,
    // Amplitudes
    call<&S::ComputeMinMaxInRange>, call<&S::ComputePowerFrom_To>, call<&S::RemoveMean>,
    call<&S::SubtractLinearTrend>, call<&S::FlipPolarity>, call<&S::ScaleAmplitudes>,
    call<&S::ScaleByLinearTime>, call<&S::ScaleBySquareTime>, call<&S::ScaleBySquareRootTime>,
    call<&S::ScaleByDistance>, call<&S::sqrAmplitudes>, call<&S::absAmplitudes>,
    call<&S::ZeroAmplitudes>, call<&S::binary>, call<&S::reverseTime>, call<&S::Integrate>,
    call<&S::Differentiate>, call<&S::Taper>, call<&S::defaultTaper>,
    call<&S::ZeroAmplitudesAfterTime>, call<&S::ZeroAmplitudesAfterTime_TaperLength>,
    call<&S::ZeroAmplitudesBeforeTime_TaperLength>,
    // Cutting, decimating and joining
    call<&S::ChopFromStart_END>, call<&S::ChopFromOriginToGVel>, call<&S::ChopWithGVelMin_Max>,
    call<&S::ChopWithGVelMin_Max_MinDuration>, call<&S::Decimate>,
    [](S& s, Arguments& a) {
      const auto scratch = ByteBuffer::zeroed(a.index(1001));
      s.inPlaceDecimate_UsingTempData(a.integer(), *scratch);
    },
    [](S& s, Arguments& a) {
      S& other = a.seismogram();
      if (a.ConsumeBool()) other.setDelta(s.delta());
      if (a.ConsumeBool()) other.setBeginTime(s.e() + s.delta());
      s.AppendSacObject(other);
    },
    // Filters
    call<&S::LPBUfilter_NPasses_NPoles>, call<&S::HPBUfilter_NPasses_NPoles>,
    call<&S::RGaussianFilter>, call<&S::RGaussianFilterSwapOld_New>,
    call<&S::SGaussianFilter_Alpha>, call<&S::CosineTaperFilter>, call<&S::TstarFilter>,
    call<&S::CosineTimeFunctionFilterDuration>, call<&S::TrapezoidFilter>, call<&S::Envelope>,
    call<&S::InstantaneousPeriod>, call<&S::NoiseFilterStartingAtTime>, call<&S::spectrum>,
    call<&S::prewhiten>,
    // Deconvolution, correlation and instruments
    call<&S::WaterLevelDeconWith_wlevel_tshift>, call<&S::WaterLevelDeconWith_wlevel_tshift_gwidth>,
    call<&S::iterDeconWith_wlevel_tshift_gwidth_nIter_minMF>, call<&S::correlateWith>,
    call<&S::GetOptimalShift>, call<&S::ConvolveInstrument>, call<&S::subtractZeroLagGaussian>,
    [](S& s, Arguments& a) {
      const std::string text = "zeros 2\npoles 2\n" + a.text(80) + "\nconstant 3\n";
      const float corners[] = {a.real(), a.real(), a.real(), a.real()};
      s.DeconvolveInstrument_TaperCorners(asFile(text), corners);
    },
    // Marks and synthetics
    call<&S::markJBTimes>, call<&S::markJBTimesAndSlowness>, call<&S::addSpikeDelay_Moment>,
    call<&S::addSeismogram>, [](S& s, Arguments& a) { s.computeBWResponse(a.reals(13).data()); },
    [](S& s, Arguments& a) {
      s.addBWResponse_Delay_Moment(a.reals(13).data(), a.real(), a.real());
    },
    [](S& s, Arguments& a) {
      s.addBWResponseWater_Delay_Moment_WDepth(a.reals(13).data(), a.real(), a.real(), a.real());
    },
    // Two and more
    call<RotateSeismograms>, call<RotateSeismogramsByAngle>, call<L1SacMisfit>, call<L2SacMisfit>,
    call<L1SacFracMisfit>, call<L2SacFracMisfit>, call<L1SacFracMisfitWithShift>,
    call<L2SacFracMisfitWithShift>, call<saRemoveCollectiveMean>, call<saSynchSacObjects>,
    call<saRemoveOverlaps>, call<saMergeSacSeisInArray>, useArray};

constexpr Operation<S> kReadings[] = {
    // Texts
    call<&S::description>, call<&S::stationDescription>, call<&S::eventDescription>,
    call<&S::oTimeString>, call<&S::hypoPickString>,
    // Numbers
    // Numbers
    call<&S::compareGCarcs>, call<&S::compareDistances>, call<&S::compareBackAzimuths>,
    call<&S::compareAzimuths>, call<&S::absMax>, call<&S::nextPowerOfTwoPts>, call<&S::gamma>,
    call<&S::epochStartTime>, call<&S::epochEndTime>, call<&S::isP>, call<&S::isG1>,
    call<&S::getGroupVelocityRange>, call<&S::simpleRMS>, call<&S::signalPower>, call<&S::centroid>,
    call<&S::simpleSNR>, call<&S::FindMaximum>, call<&S::FindMinimum>};

}  // namespace

void applySome(int most, S& s, S& other, Arguments& a) {
  a.seismograms = {&s, &other};
  applySome(most, kOperations, s, a);
}

void readEverything(S& s) {
  Arguments none({});
  none.seismograms = {&s};
  for (const auto read : kReadings) read(s, none);
  touch(bytesIn(s.myData()));
}

}  // namespace fuzz
