#include <algorithm>
#include <cmath>
#include <cstring>

#include "krosac/dsp/Decimation.h"
#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/TruncIndex.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

// An image with a copy of the header and `count` zeros; empty when memory runs out.
Ref<ByteBuffer> imageWithHeader(const SacHeader& h, std::int64_t count) {
  auto image =
      ByteBuffer::zeroed(kSacHeaderBytes + sizeof(float) * static_cast<std::size_t>(count));
  if (image) std::memcpy(image->mutableBytes(), &h, sizeof h);
  return image;
}

float* samplesIn(ByteBuffer& image) {
  return reinterpret_cast<float*>(image.mutableBytes() + kSacHeaderBytes);
}

bool hasTravelDistance(const SacObject& s) {
  return s.distance() != kSacUndefinedFloat && s.o() != kSacUndefinedFloat;
}

// Completes a decimation whose samples are in place.
void finishDecimation(SacObject& s, std::int32_t count, float interval) {
  s.setNpts(count);
  s.setDelta(interval);
  s.setEndTime(s.b() + static_cast<float>(count - 1) * interval);
  samplesChanged(s);
}

}  // namespace

void SacObject::ChopFromStart_END(float t1, float t2) {
  clearReason();
  const auto x = samplesOf(*this);
  const auto n = static_cast<std::int64_t>(x.size());
  const auto index = [this](double t) { return truncIndex((t - b()) / delta() + 0.5); };
  const std::int64_t ib = index(t1);
  std::int64_t ie = index(t2);
  const std::int64_t s = std::max<std::int64_t>(ib, 0);
  if (!h_ || ib == kNoIndex || s > n || ie < 0) return;
  if (ie > n) ie = n - 1;  // an end equal to n is kept; this is intended
  if (s == 0 && ie == n) return;
  const std::int64_t count = s > ie ? 0 : ie - s + 1;
  log("ib,ie,npts: %d %d %d %f %f\n", static_cast<int>(s), static_cast<int>(ie),
      static_cast<int>(count), static_cast<double>(t1), static_cast<double>(t2));

  const auto image = imageWithHeader(*h_, count);
  if (!image) return;
  std::copy_n(x.begin() + s, std::min(count, n - s), samplesIn(*image));
  installImage(*this, image);
  setNpts(static_cast<std::int32_t>(count));
  setBeginTime(static_cast<float>(s) * delta() + b());
  setEndTime(b() + static_cast<float>(count - 1) * delta());
  samplesChanged(*this);
}

void SacObject::ChopFromOriginToGVel(float v) {
  if (hasTravelDistance(*this)) ChopFromStart_END(o(), o() + distance() / v);
}

void SacObject::ChopWithGVelMin_Max(float vmin, float vmax) {
  if (hasTravelDistance(*this)) ChopFromStart_END(o() + distance() / vmax, o() + distance() / vmin);
}

void SacObject::ChopWithGVelMin_Max_MinDuration(float vmin, float vmax, float minimum) {
  if (!hasTravelDistance(*this)) return;
  const float start = o() + distance() / vmax, end = o() + distance() / vmin;
  ChopFromStart_END(start, end - start < minimum ? start + minimum : end);
}

std::pair<double, double> SacObject::getGroupVelocityRange() const {
  if (!hasTravelDistance(*this) || o() >= e()) return {0.0, 0.0};
  const double vmin = distance() / (e() - o());
  return {vmin, o() >= b() ? 1e10 : static_cast<double>(distance() / (b() - o()))};
}

void SacObject::Decimate(std::int32_t factor) {
  clearReason();
  if (!h_ || factor < 2 || factor > 5) return;
  std::int32_t n = static_cast<std::int32_t>(samplesOf(*this).size()) / factor;
  const std::int32_t used = n * factor;
  const float interval = static_cast<float>(factor) * delta();
  if (verbose_ >= 2)
    log("From decimate: n_new=%d n_in=%d, newdt=%f\n", n, used, static_cast<double>(interval));
  const auto image = imageWithHeader(*h_, n);
  if (!image) return;
  decimateSignal(factor, used, seis_, samplesIn(*image), &n);
  installImage(*this, image);
  finishDecimation(*this, n, interval);
  if (verbose_ >= 2)
    log("From decimate n_new=%d n_in=%d, newdt=%f\n", n, used, static_cast<double>(interval));
}

void SacObject::inPlaceDecimate_UsingTempData(std::int32_t factor, ByteBuffer& scratch) {
  if (!h_ || factor < 2 || factor > 5) return;
  std::int32_t n = static_cast<std::int32_t>(samplesOf(*this).size()) / factor;
  if (&scratch == viewedImage(*this).get() ||
      scratch.length() / sizeof(float) < static_cast<std::size_t>(n))
    return;
  auto* decimated = reinterpret_cast<float*>(scratch.mutableBytes());
  std::fill_n(decimated, n, 0.0f);
  decimateSignal(factor, n * factor, seis_, decimated, &n);
  ZeroAmplitudes();
  std::copy_n(decimated, n, seis_);
  finishDecimation(*this, n, static_cast<float>(factor) * delta());
}

void SacObject::AppendSacObject(const SacObject& other) {
  clearReason();
  if (!h_ || !other.h_) return setReason("a seismogram without a header cannot be joined");
  const float dt = delta();
  if (dt != other.delta()) {
    log("Warning - could not merge seismograms, dt differes dt1:%f dt2:%f.",
        static_cast<double>(dt), static_cast<double>(other.delta()));
    return setReason("DELTA is %g s here and %g s in the other seismogram", static_cast<double>(dt),
                     static_cast<double>(other.delta()));
  }
  if (dt <= 0.0f) return setReason("DELTA is %g s, not positive", static_cast<double>(dt));
  const float gap = other.b() - e();
  const float partial = std::fabs(gap - dt * static_cast<float>(truncInt32(gap / dt))) / dt;
  const bool isUnusable = !(partial < 1.1);  // also where the gap is NaN
  if (isUnusable || gap > 1.1 * dt) {
    log("Warning - could not merge seismograms, Overlap:%lf, dt:%f tolerance:%lf.",
        static_cast<double>(gap), static_cast<double>(dt), 0.1);
    if (isUnusable) {  // a gap logs only the warning
      log("%s", description().c_str());
      log("%s", other.description().c_str());
    }
    return setReason("the other seismogram begins %g s after the end, and DELTA is %g s",
                     static_cast<double>(gap), static_cast<double>(dt));
  }
  const auto first = samplesOf(*this), second = samplesOf(other);
  const std::size_t overlap =
      gap < dt ? static_cast<std::size_t>(std::max(truncInt32(1.0f - gap / dt), 0)) : 0;
  const auto rest = second.subspan(std::min(overlap, second.size()));
  const auto count = static_cast<std::int64_t>(first.size() + rest.size());
  if (count > INT32_MAX)
    return setReason("a seismogram holds no %lld samples", static_cast<long long>(count));
  log("npts new = %d.\n", static_cast<int>(count));
  const auto image = imageWithHeader(*h_, count);
  if (!image) return;
  std::copy(rest.begin(), rest.end(), std::copy(first.begin(), first.end(), samplesIn(*image)));
  installImage(*this, image);
  setNpts(static_cast<std::int32_t>(count));
  setEndTime(b() + static_cast<float>(count - 1) * dt);
  samplesChanged(*this);
}

}  // namespace krosac
