#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>

#include "foundation/CText.h"
#include "foundation/FileSystem.h"
#include "foundation/Heap.h"
#include "foundation/TDiskFile.h"

namespace zaf {

/// Memory for the content of a file.
struct TFileImage {
  std::unique_ptr<std::byte[], heap::TFree> bytes;
  std::size_t capacity = 0;  ///< Bytes allocated.
};

/// A data file on disk. It is closed, or in memory (kRead: the whole file was read and the disk is
/// no longer accessed; read only), or a stream of the C library, or a new file being written
/// (OpenNew). Owns the image, the stream and the new file; the destructor closes them.
///
/// The work that the content of a file can cause is bounded. Two limits, each eight times the
/// file's size and at least 16 MiB, apply to the bytes that all reads together return and to the
/// record bytes that are charged. A request that exceeds a limit is kMalformed, and so is every
/// later one. Opening or writing a stream resets both.
class TDataFile : public TDiskFile {
 public:
  TDataFile() = default;
  /// Takes ownership of an open stream; null makes a closed file.
  explicit TDataFile(std::FILE* stream) : stream_(stream) {}
  /// A file in memory with a copy of `content`, which may be empty. Closed when memory is
  /// insufficient or `content` has 4 GiB or more.
  explicit TDataFile(ByteView content);
  ~TDataFile() override;

  /// In memory it fails when `offset` is at or after the end; it fails in a new file, which is
  /// written sequentially.
  Status Seek(FourCharCode code, std::uint32_t offset) override;
  /// Fails, without moving and with `buffer` unchanged, when fewer than `count` bytes are left;
  /// kMalformed when a limit is exceeded. A stream that fails to read returns its error indicator.
  Status Read(std::uint32_t count, void* buffer) override;
  /// Fails in memory and for a null buffer. A stream returns its error indicator.
  Status Write(std::uint32_t count, void* buffer) override;
  /// Fails when a file is in memory; closes anything else first. kRead accepts regular files only
  /// and fails for an empty one, for one of 4 GiB or more and when memory is insufficient.
  Status Open(const CText& name, TOpenMode mode) override;
  Status Flush() override;
  /// Discards a new file that was not published.
  int Close() override;
  int DeleteFile(const CText& name) override;
  Status ReadInteger(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                     std::int32_t& value) override;
  /// Moves a stream to its end; 0 when that fails. The largest number for a longer file. 0 while a
  /// new file is written.
  std::uint32_t GetSize() override;

  /// Returns the bytes of a section: in place when the file is in memory and is not of a derived
  /// class, which sees every section; else read by ReadBlock. `view` is valid until the next
  /// section is read, scrambling changes or the file is closed.
  Status ViewBlock(FourCharCode code, std::uint32_t offset, std::uint32_t length, ByteView& view) {
    return ViewBlock(code, offset, length, block_, view);
  }
  /// The same with a buffer of the caller, for a view that is valid while other sections are read.
  Status ViewBlock(FourCharCode code, std::uint32_t offset, std::uint32_t length, CData& scratch,
                   ByteView& view) {
    return IsPlainImage() ? TakeBlock(offset, length, view)
                          : TDiskFile::FetchBlock(code, offset, length, scratch, view);
  }
  /// The same for a text section, by ReadText. One final NUL is not part of the text.
  Status ViewText(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                  std::string_view& text) {
    if (!IsPlainImage()) return FetchText(code, offset, length, text);
    ByteView block;
    const Status status = TakeBlock(offset, length, block);
    if (status == Status::kOk) text = TextOfSection(block);
    return status;
  }

  /// Sets whether the bytes of the file are scrambled. The image of a file in memory is transformed
  /// in place, once, when this changes, so its reads return plain bytes from then on.
  void SetScrambled(bool is_scrambled);

  /// Charges for records that a list of the file makes, before they are made.
  Status ChargeRecords(std::uint64_t bytes);

  /// A section and its place in the file.
  struct TSectionPlace {
    FourCharCode code;
    std::uint32_t offset;
  };
  /// Records the section whose read ended a load. The first one recorded counts.
  void NoteFailure(TSectionPlace place) {
    if (!failure_) failure_ = place;
  }
  [[nodiscard]] const std::optional<TSectionPlace>& GetFailure() const { return failure_; }

  /// All bytes of a file in memory, else none.
  [[nodiscard]] ByteView GetImage() const { return {image_.bytes.get(), size_}; }
  /// The same, writable. One spare byte, 0, follows and may be written.
  [[nodiscard]] std::span<std::byte> GetMutableImage() { return {image_.bytes.get(), size_}; }

  /// Starts a new file that gets the name `name` only when it is published. Otherwise as Open.
  Status OpenNew(const CText& name);
  /// Gives a file opened with OpenNew its name and closes it. Fails, and discards the file, when
  /// the name exists already, unless that file is to be replaced, or when the content could not
  /// be stored.
  Status Publish(TakenName taken = TakenName::kKept);
  /// Whether the content of a file opened with OpenNew could not be stored: Write failed, or
  /// Publish did for lack of space, or no file of this system can have that name. When OpenNew or
  /// Publish fails and this is false, the name could not be created.
  [[nodiscard]] bool HasWriteFailed() const { return new_file_.HasWriteFailed(); }

 protected:
  Status FetchBlock(FourCharCode code, std::uint32_t offset, std::uint32_t length, CData& scratch,
                    ByteView& view) override;

 private:
  /// Whether sections can be taken from the image without a virtual call that could be overridden.
  [[nodiscard]] bool IsPlainImage() { return is_plain_image_ || FindPlainImage(); }
  [[nodiscard]] bool FindPlainImage();
  Status FetchText(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                   std::string_view& text);
  Status OpenImage(const CText& name);
  [[nodiscard]] bool AllocateImage(std::uint64_t size);
  void TakeImage(std::uint32_t size);
  void FreeImage();
  Status ReadStream(std::uint32_t count, void* buffer);
  void SetLimits(std::uint32_t size);
  Status ChargeRead(std::uint32_t count) {
    if (count > readable_bytes_) {
      readable_bytes_ = 0;
      return Status::kMalformed;
    }
    readable_bytes_ -= count;
    return Status::kOk;
  }
  /// Seek and Read of a file in memory, in place.
  Status TakeBlock(std::uint32_t offset, std::uint32_t length, ByteView& view) {
    if (offset >= size_) return Status::kFailure;
    position_ = offset;
    if (length > size_ - offset) return Status::kFailure;
    if (const Status status = ChargeRead(length); status != Status::kOk) return status;
    view = ByteView(image_.bytes.get() + offset, length);
    position_ += length;
    return Status::kOk;
  }

  std::FILE* stream_ = nullptr;
  bool is_in_memory_ = false;
  bool is_plain_image_ = false;  ///< A positive result of FindPlainImage.
  bool has_limits_ = false;      ///< Whether the limits are those of the current content.
  TFileImage image_;             ///< The content and one spare byte.
  std::uint32_t size_ = 0;       ///< Bytes in the image without the spare one.
  std::uint32_t position_ = 0;
  std::uint64_t readable_bytes_ = 0;  ///< Remainders of the two limits.
  std::uint64_t record_bytes_ = 0;
  CData block_;  ///< The last section that was not viewed in place.
  CText text_;
  TNewFile new_file_;
  std::optional<TSectionPlace> failure_;
};

}  // namespace zaf
