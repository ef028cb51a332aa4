// A buffer of bytes that can be read from a file and written to one atomically.
#ifndef KROSAC_PLATFORM_BYTEBUFFER_H
#define KROSAC_PLATFORM_BYTEBUFFER_H

#include <cstddef>
#include <string>

#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"

namespace krosac {

// A fixed number of bytes, aligned for any sample type. The static functions return an empty Ref,
// with a reason, if memory runs out.
class KROSAC_API ByteBuffer final : public Object {
 public:
  // A new buffer of `length` zeros, or with a copy of `length` bytes.
  static Ref<ByteBuffer> zeroed(std::size_t length);
  static Ref<ByteBuffer> copyOf(const void* bytes, std::size_t length);

  // Reads a whole regular file. Returns an empty Ref, with a reason, if the file cannot be read,
  // changes its length meanwhile or is a folder, pipe or device.
  static Ref<ByteBuffer> fromFile(const std::string& path);

  // The bytes, valid during the life of the buffer, and their number.
  const unsigned char* bytes() const noexcept { return bytes_; }
  unsigned char* mutableBytes() noexcept { return bytes_; }
  std::size_t length() const noexcept { return length_; }

  // Changes the number of bytes. Those that remain keep their values; new ones are not set. Returns
  // false, with a reason and the buffer unchanged, if memory is short.
  bool resize(std::size_t length) noexcept;

  // Writes a temporary file beside the target, flushes it to disk and renames it, so that at every
  // moment the path names either the complete old file or the complete new one. An existing file
  // must be writable and keeps its permissions; a new one gets those of the umask. A symbolic link
  // is kept and its target written. Returns false on any failure, with a reason, the old file
  // unchanged and no temporary file left.
  bool writeAtomically(const std::string& path) const;

  // Writes the first `length` bytes, at most all of the buffer, in the same way.
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
