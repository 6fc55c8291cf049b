#pragma once

#include <cstdint>

#include "foundation/FourCharCode.h"
#include "foundation/Status.h"
#include "foundation/TByteReader.h"

namespace zaf {

class CData;
class CText;
class CTextPtrArray;

/// How a file is opened. Any other value opens as kCreate does.
enum class TOpenMode {
  kRead = 1,        ///< The whole file is read into memory.
  kWrite = 2,       ///< Creates or truncates, for writing.
  kAppend = 3,      ///< For writing at the end.
  kReadWrite = 4,   ///< An existing file, for reading and writing.
  kCreate = 5,      ///< Creates or truncates, for reading and writing.
  kReadAppend = 6,  ///< For reading, and writing at the end.
};

/// Whether a text is written with its terminating NUL.
enum class TextEnd { kWithNul, kWithoutNul };

/// A file of sections: texts, lists of texts, integers and raw blocks, each at an offset from the
/// start of the file. Integers are 32 bits, big-endian. The section operations are built on the
/// primitives that a subclass supplies. The section code is passed through all of them so that a
/// subclass can check or record it.
///
/// Every status is kOk or kFailure, and results are set on success only, unless the operation is
/// documented otherwise.
class TDiskFile {
 public:
  TDiskFile() = default;
  TDiskFile(const TDiskFile&) = delete;
  TDiskFile& operator=(const TDiskFile&) = delete;

  /// Moves to `offset`, counted from the start.
  virtual Status Seek(FourCharCode code, std::uint32_t offset) = 0;
  /// Reads `count` bytes at the current position and moves past them.
  virtual Status Read(std::uint32_t count, void* buffer) = 0;
  /// Writes `count` bytes at the current position. A scrambled file transforms the caller's buffer
  /// during the call.
  virtual Status Write(std::uint32_t count, void* buffer) = 0;
  /// Rotates each byte left by 3 bits.
  virtual void Scramble(std::uint32_t count, void* bytes);
  /// Rotates each byte left by 5 bits: the inverse of Scramble.
  virtual void Descramble(std::uint32_t count, void* bytes);
  virtual ~TDiskFile();
  virtual Status Open(const CText& name, TOpenMode mode) = 0;
  virtual Status Flush() = 0;
  /// Closes what is open. Always 0.
  virtual int Close() = 0;
  /// Removes the file `name`: 0, or -1 when that failed.
  virtual int DeleteFile(const CText& name) = 0;
  /// For subclasses; does nothing.
  virtual void Hook() {}
  /// Bytes of the file.
  virtual std::uint32_t GetSize() = 0;

  /// Reads a section as a text. One final NUL of the section is not part of the text; inner ones
  /// are. `text` is cleared first, so it is empty after a failure.
  virtual Status ReadText(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                          CText& text);
  /// Reads a section as a list: a count, then that many texts, each with its NUL. They are added
  /// to `texts`. An empty section is an empty list. A section of 1 to 3 bytes, or one with fewer
  /// bytes after the count than the count has texts, is kMalformed. Texts after the end of the
  /// section are left out; the last one may lack its NUL.
  virtual Status ReadTextList(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                              CTextPtrArray& texts);
  /// Reads 4 bytes regardless of `length`.
  virtual Status ReadInteger(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                             std::int32_t& value);
  /// Reads a section as it is. A section that ends beyond the file fails before memory is allocated
  /// for it, and `block` is unchanged; it is empty when reading fails later.
  virtual Status ReadBlock(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                           CData& block);
  /// Seek, then Read.
  virtual Status ReadAt(FourCharCode code, std::uint32_t offset, std::uint32_t count, void* buffer);
  /// The write operations set `written` to the bytes that the section takes.
  virtual Status WriteText(FourCharCode code, std::uint32_t offset, std::uint32_t& written,
                           const CText& text, TextEnd end);
  virtual Status WriteTextList(FourCharCode code, std::uint32_t offset, std::uint32_t& written,
                               const CTextPtrArray& texts);
  virtual Status WriteInteger(FourCharCode code, std::uint32_t offset, std::uint32_t& written,
                              std::int32_t value);
  virtual Status WriteBlock(FourCharCode code, std::uint32_t offset, std::uint32_t& written,
                            const CData& block);
  /// Seek, then Write.
  virtual Status WriteAt(FourCharCode code, std::uint32_t offset, std::uint32_t count,
                         void* buffer);

  [[nodiscard]] bool IsScrambled() const { return is_scrambled_; }

 protected:
  /// Returns the bytes of a section, with the statuses of ReadBlock: read into `scratch`, or in
  /// place where a subclass has them in memory. `view` is valid until either changes.
  virtual Status FetchBlock(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                            CData& scratch, ByteView& view);

  bool is_scrambled_ = false;  ///< Bytes are transformed on their way to and from the disk.
};

}  // namespace zaf
