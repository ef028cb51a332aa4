// A buffer of bytes, read from a file and written to one atomically.
#ifndef KROSAC_PLATFORM_BYTEBUFFER_H
#define KROSAC_PLATFORM_BYTEBUFFER_H

#include <cstddef>
#include <string>

#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"

namespace krosac {

// Bytes of a fixed number, aligned for any sample type. The makers give an empty Ref where there is
// no memory.
class KROSAC_API ByteBuffer final : public Object {
 public:
  // A new buffer of zero bytes, or with a copy of the bytes given.
  static Ref<ByteBuffer> zeroed(std::size_t length);
  static Ref<ByteBuffer> copyOf(const void* bytes, std::size_t length);

  // The bytes of a regular file; empty when it cannot be opened or read whole, changes its length
  // meanwhile, or is no regular file (a pipe or a device would have no end).
  static Ref<ByteBuffer> fromFile(const std::string& path);

  // The bytes, valid as long as the buffer lives, and their number.
  const unsigned char* bytes() const noexcept { return bytes_; }
  unsigned char* mutableBytes() noexcept { return bytes_; }
  std::size_t length() const noexcept { return length_; }

  // Changes the number of bytes. Those that remain keep their values, new ones have none in
  // particular. False, with the buffer as it was, where there is no memory.
  bool resize(std::size_t length) noexcept;

  // Writes the bytes to a file so that at every moment either the old file or the new one is there,
  // whole: a temporary file beside the target is written, flushed to disk and renamed. An old file
  // keeps its permissions and must be one that may be written; a new one gets those of the umask. A
  // symbolic link stays and its target is written. False when anything fails; the old file then is
  // as it was, and no temporary file is left.
  bool writeAtomically(const std::string& path) const;

  // The same for the first `length` bytes, at most those of the buffer.
  bool writeAtomically(const std::string& path, std::size_t length) const;

 private:
  ~ByteBuffer() override;

  static Ref<ByteBuffer> unfilled(std::size_t length);
  static Ref<ByteBuffer> adoptBytes(unsigned char* bytes, std::size_t length);

  unsigned char* bytes_ = nullptr;
  std::size_t length_ = 0;
};

}  // namespace krosac

#endif
