#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "krosac/dsp/internal/Series.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

using FloatField = float SacHeader::*;
using TextField = char (SacHeader::*)[8];

constexpr FloatField kPicks[] = {&SacHeader::T0, &SacHeader::T1, &SacHeader::T2, &SacHeader::T3,
                                 &SacHeader::T4, &SacHeader::T5, &SacHeader::T6, &SacHeader::T7,
                                 &SacHeader::T8, &SacHeader::T9, &SacHeader::A,  &SacHeader::F};
constexpr TextField kPickLabels[] = {&SacHeader::KT0, &SacHeader::KT1, &SacHeader::KT2,
                                     &SacHeader::KT3, &SacHeader::KT4, &SacHeader::KT5,
                                     &SacHeader::KT6, &SacHeader::KT7, &SacHeader::KT8,
                                     &SacHeader::KT9, &SacHeader::KA,  &SacHeader::KF};
constexpr FloatField kUserValues[] = {
    &SacHeader::USER0, &SacHeader::USER1, &SacHeader::USER2, &SacHeader::USER3, &SacHeader::USER4,
    &SacHeader::USER5, &SacHeader::USER6, &SacHeader::USER7, &SacHeader::USER8, &SacHeader::USER9};
constexpr TextField kUserLabels[] = {&SacHeader::KUSER0, &SacHeader::KUSER1, &SacHeader::KUSER2};
constexpr TextField kWritableUserLabels[] = {&SacHeader::KUSER0, &SacHeader::KUSER1,
                                             &SacHeader::KUSER2, &SacHeader::KSTNM,
                                             &SacHeader::KNETWK, &SacHeader::KCMPNM};

// The field of a key, or null for a key outside the table.
template <typename Field, std::size_t kCount>
Field fieldOf(const Field (&table)[kCount], int key) {
  return key >= 0 && static_cast<std::size_t>(key) < kCount ? table[key] : nullptr;
}

// Reading a label keeps 7 of its 8 characters; this is intended.
std::string label(const SacHeader* h, TextField field) {
  return h && field ? trimmedField(h->*field, 7) : std::string();
}

int compare(float mine, float others) {
  return others > mine ? -1 : mine > others ? 1 : 0;
}

double epochTime(const SacObject& s, float offset) {
  const auto& reference = s.myReferenceDate();
  const std::int32_t ms = s.GetSacHeader() ? s.GetSacHeader()->NZMSEC : kSacUndefinedInt;
  return (reference ? reference->secondsSince1970 : 0.0) + ms / 1000.0 + offset;
}

bool beginsWith(const SacHeader* h, const char* kind) {
  return h && std::strncmp(h->KUSER0, kind, std::strlen(kind)) == 0;
}

}  // namespace

float SacObject::timePickKey(int key) const {
  const FloatField pick = fieldOf(kPicks, key);
  return pick ? field(pick) : kSacUndefinedFloat;
}

void SacObject::setTimePickKey_Value(int key, float time) {
  if (const FloatField pick = fieldOf(kPicks, key)) setField(pick, time);
}

std::string SacObject::pickLabelWithKey(int key) const {
  return label(h_, fieldOf(kPickLabels, key));
}

void SacObject::setPickLabelKey_Value(int key, const char* value) {
  if (const TextField field = fieldOf(kPickLabels, key)) setText(field, value);
}

void SacObject::clearTimePicks() {
  for (const FloatField pick : kPicks) setField(pick, kSacUndefinedFloat);
}

float SacObject::userValue(int key) const {
  const FloatField value = fieldOf(kUserValues, key);
  return value ? field(value) : kSacUndefinedFloat;
}

void SacObject::setUserValueKey_Value(int key, float value) {
  if (const FloatField field = fieldOf(kUserValues, key)) setField(field, value);
}

void SacObject::clearUserValues() {
  for (const FloatField value : kUserValues) setField(value, kSacUndefinedFloat);
}

std::string SacObject::userValueLabelWithKey(int key) const {
  return label(h_, fieldOf(kUserLabels, key));
}

void SacObject::setUserValueLabelKey_Value(int key, const char* value) {
  if (const TextField field = fieldOf(kWritableUserLabels, key)) setText(field, value);
}

float SacObject::absMax() const {
  return std::max(std::fabs(smin()), std::fabs(smax()));
}

float SacObject::signalDuration() const {
  return e() - b();
}

std::int64_t SacObject::nextPowerOfTwoPts() const {
  return static_cast<std::int64_t>(
      std::bit_ceil(static_cast<std::uint64_t>(std::max(npts(), 0)) + 1));
}

float SacObject::gamma() const {
  constexpr auto kDegree = static_cast<float>(kRadiansPerDegree);
  return userValue(2) * std::cos((azimuth() - userValue(1)) * kDegree);
}

double SacObject::epochStartTime() const {
  return epochTime(*this, b());
}

double SacObject::epochEndTime() const {
  return epochTime(*this, e());
}

bool SacObject::isP() const {
  return beginsWith(h_, "P");
}
bool SacObject::isSH() const {
  return beginsWith(h_, "SH");
}
bool SacObject::isR1() const {
  return beginsWith(h_, "R1");
}
bool SacObject::isG1() const {
  return beginsWith(h_, "G1");
}

void SacObject::fixEndTime() {
  setEndTime(static_cast<float>(std::int64_t{npts()} - 1) * delta() + b());
}

void SacObject::ComputeExtrema() {
  if (!h_) return;
  const Extrema extrema = extremaOf<float>(samplesOf(*this));
  h_->DEPMIN = extrema.min;
  h_->DEPMAX = extrema.max;
  h_->DEPMEN = extrema.mean;
  mSeisHasChanged_ = true;
}

int SacObject::compareGCarcs(const SacObject& other) const {
  return compare(gcarc(), other.gcarc());
}

int SacObject::compareDistances(const SacObject& other) const {
  return compare(distance(), other.distance());
}

int SacObject::compareBackAzimuths(const SacObject& other) const {
  return compare(backazimuth(), other.backazimuth());
}

int SacObject::compareAzimuths(const SacObject& other) const {
  return compare(azimuth(), other.azimuth());
}

}  // namespace krosac
