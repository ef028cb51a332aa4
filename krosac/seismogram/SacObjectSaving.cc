#include <unistd.h>

#include <climits>
#include <new>
#include <utility>

#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/sacio/ByteOrder.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

// The path of a file of this name in the working directory; none where the directory is gone.
OptionalText inWorkingDirectory(const std::string& name) {
  char folder[PATH_MAX];
  if (!::getcwd(folder, sizeof folder)) {
    setSystemReason("the working directory");
    return std::nullopt;
  }
  return joinedPath(folder, name);
}

// Writes the image in the byte order that the file had.
bool writeImage(const SacObject& s, const std::string* path) {
  clearReason();
  const SacHeader* header = headerInData(s);
  if (!header || !path) {
    setReason("the seismogram has no %s", header ? "path" : "image");
    return false;
  }
  const ByteBuffer& image = *s.myData();
  // With a negative NPTS the whole image is written; only its header is then reversed.
  const std::size_t length = header->NPTS < 0
                                 ? image.length()
                                 : kSacHeaderBytes + sizeof(float) * countIn(image, header->NPTS);
  if (!s.swappedBytes()) return image.writeAtomically(*path, length);
  const auto foreign = ByteBuffer::copyOf(image.bytes(), length);
  if (!foreign) return false;
  reverseSACBytes(*foreign);
  return foreign->writeAtomically(*path);
}

const std::string* pathOf(const SacObject& s) {
  return s.myPath() ? &*s.myPath() : nullptr;
}

// Writes to a path, or a swapped trace to its old path whatever was asked; this is intended.
bool writeTo(const SacObject& s, const std::string& path) {
  if (!s.swappedBytes()) return writeImage(s, &path);
  if (!writeImage(s, pathOf(s))) return false;
  if (path != *s.myPath()) {
    setReason(
        "written to the old path %s, not to %s: call setPath and save to move a seismogram of the "
        "other byte order",
        s.myPath()->c_str(), path.c_str());
  }
  return true;
}

}  // namespace

bool SacObject::save() const {
  return writeImage(*this, pathOf(*this));
}

bool SacObject::saveAs(const std::string& name) try {
  OptionalText path = inWorkingDirectory(name);
  if (!path || !writeTo(*this, *path)) return false;
  myPath_ = std::move(path);
  return true;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return false;
}

bool SacObject::saveToPath(const std::string& path) const {
  return writeTo(*this, path);
}

void SacObject::encodeWithCoder(KeyedArchiver& coder) const {
  coder.encodeBytes("myData", myData_.get());
  coder.encodeBool("mSeisHasChanged", mSeisHasChanged_);
  coder.encodeBool("mSeisIsLocked", mSeisIsLocked_);
  coder.encodeText("myPath", myPath_);
  coder.encodeText("myFileName", myFileName_);
  coder.encodeText("labelString", labelString_);
  coder.encodeDate("myReferenceDate", myReferenceDate_);
  coder.encodeObject("mySeisReferenceTime", mySeisReferenceTime_.get());
  coder.encodeInt32("tag", tag_);
  coder.encodeInt32("verbose", verbose_);
  coder.encodeBool("swappedBytes", swappedBytes_);
}

Ref<SacObject> SacObject::initWithCoder(KeyedUnarchiver& coder) {
  if (!init()) return nullptr;
  setMyData(coder.decodeBytes("myData"));
  setMSeisHasChanged(coder.decodeBool("mSeisHasChanged"));
  setMSeisIsLocked(coder.decodeBool("mSeisIsLocked"));
  setMyPath(coder.decodeText("myPath"));
  setMyFileName(coder.decodeText("myFileName"));
  setLabelString(coder.decodeText("labelString"));
  setMyReferenceDate(coder.decodeDate("myReferenceDate"));
  setMySeisReferenceTime(coder.decodeObject<SeisTimeObject>("mySeisReferenceTime"));
  setTag(coder.decodeInt32("tag"));
  setVerbose(coder.decodeInt32("verbose"));
  setSwappedBytes(coder.decodeBool("swappedBytes"));
  setupPointers();
  setFlinnEngdahlRegion();
  computeDistAzBAz();
  return Ref<SacObject>(this);
}

Ref<SacObject> SacObject::clone() const try {
  clearReason();
  auto copy = make<SacObject>();
  if (!copy) throw std::bad_alloc();
  copy->init();
  if (myData_) {
    copy->setMyData(ByteBuffer::copyOf(myData_->bytes(), myData_->length()));
    if (!copy->myData_) return nullptr;
  }
  copy->setMyPath(myPath_);
  copy->setMyFileName(myFileName_);
  copy->setLabelString(labelString_);
  copy->setMyReferenceDate(myReferenceDate_);
  if (mySeisReferenceTime_) {
    copy->setMySeisReferenceTime(mySeisReferenceTime_->copyWithZone());
    if (!copy->mySeisReferenceTime_) throw std::bad_alloc();
  }
  copy->setupPointers();
  copy->setSwappedBytes(swappedBytes_);
  copy->setFlinnEngdahlRegion();
  copy->computeDistAzBAz();
  copy->fixEndTime();
  copy->setMSeisHasChanged(mSeisHasChanged_);
  copy->setMSeisIsLocked(mSeisIsLocked_);
  copy->setVerbose(verbose_);
  copy->setTag(tag_);
  return copy;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return nullptr;
}

}  // namespace krosac
