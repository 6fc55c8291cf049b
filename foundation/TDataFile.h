#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>

#include "foundation/FileSystem.h"
#include "foundation/TDiskFile.h"

namespace zaf {

/// A data file on the disk. It is closed, or in memory (kRead: the whole file was read and the
/// disk is no longer touched; read only), or a stream of the C library, or a new file that is
/// being written (kCreateNew). Owns the image, the stream and the new file; the destructor closes.
///
/// A file in memory bounds the work that its content can ask for. Its size, times eight and at
/// least 16 MiB, is the limit of the bytes that all reads together may take, and once more of the
/// record bytes that may be charged for. What would pass a limit is kMalformed, and so is
/// everything after it.
class TDataFile : public TDiskFile {
 public:
  TDataFile() = default;
  /// Takes over an open stream.
  explicit TDataFile(std::FILE* stream) : stream_(stream) {}
  /// A file in memory with a copy of `content`, which may be empty. Closed when there is not
  /// memory enough or when the content has 4 GiB or more.
  explicit TDataFile(ByteView content);
  ~TDataFile() override;

  /// In memory it fails when `offset` is not before the end.
  Status Seek(FourCharCode code, std::uint32_t offset) override;
  /// In memory it fails, without moving, when fewer than `count` bytes are left, and is kMalformed
  /// when the limit is passed. A stream gives its error indicator: 0 also when it ended before.
  Status Read(std::uint32_t count, void* buffer) override;
  /// Fails in memory and for a null buffer. A stream gives its error indicator.
  Status Write(std::uint32_t count, void* buffer) override;
  /// Fails when a file is in memory; closes anything else first. kRead takes regular files only
  /// and fails for an empty one, for one of 4 GiB or more and when memory is short.
  Status Open(const CText& name, TOpenMode mode) override;
  Status Flush() override;
  /// A new file that was not published is gone.
  int Close() override;
  int DeleteFile(const CText& name) override;
  /// In memory these two check and charge as Read does.
  Status ReadText(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                  CText& text) override;
  Status ReadInteger(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                     std::int32_t& value) override;
  /// Leaves a stream at its end; 0 when that fails. The largest number for a longer file.
  std::uint32_t GetSize() override;

  /// The block of a file in memory, in place: valid until the file is closed or scrambling
  /// changes. Checks and charges as ReadBlock does. Fails when no file is in memory.
  Status ViewBlock(FourCharCode code, std::uint32_t offset, std::uint32_t length, ByteView& view);

  /// Says whether the bytes of the file are scrambled. The image of a file in memory is transformed
  /// in place, once, when this changes, so its reads give plain bytes from then on.
  void SetScrambled(bool is_scrambled);

  /// Charges for records that a list of the file makes, before they are made.
  Status ChargeRecords(std::uint64_t bytes);

  /// All of a file in memory; empty when there is none.
  [[nodiscard]] ByteView GetImage() const { return {image_, size_}; }
  /// The same to work in. One spare byte, 0, lies behind it and may be written.
  [[nodiscard]] std::span<std::byte> GetMutableImage() { return {image_, size_}; }

  /// Gives a file opened with kCreateNew its name and closes it. Fails when anything has that name
  /// already or when the file could not be stored; it is gone then.
  Status Publish();
  /// Whether a file opened with kCreateNew could not be stored: Write failed, or Publish did for
  /// want of space, or no file can have that name on this system. When Open or Publish fails and
  /// this is false, the name could not be created.
  [[nodiscard]] bool HasWriteFailed() const { return new_file_.HasWriteFailed(); }

 protected:
  Status FetchBlock(FourCharCode code, std::uint32_t offset, std::uint32_t length, CData& scratch,
                    ByteView& view) override;

 private:
  Status OpenImage(const CText& name);
  [[nodiscard]] bool AllocateImage(std::uint64_t size);
  void TakeImage(std::uint32_t size);
  void FreeImage();
  Status ChargeRead(std::uint32_t count) {
    if (count > readable_bytes_) {
      readable_bytes_ = 0;
      return Status::kMalformed;
    }
    readable_bytes_ -= count;
    return Status::kOk;
  }
  /// Takes a block of the file in memory: moves behind it and charges for it.
  Status TakeBlock(std::uint32_t offset, std::uint32_t length, ByteView& view) {
    if (offset >= size_) return Status::kFailure;
    position_ = offset;
    if (length > size_ - offset) return Status::kFailure;
    if (const Status status = ChargeRead(length); status != Status::kOk) return status;
    view = ByteView(image_ + offset, length);
    position_ += length;
    return Status::kOk;
  }

  std::FILE* stream_ = nullptr;
  bool is_in_memory_ = false;
  std::byte* image_ = nullptr;  ///< The content and one spare byte.
  std::uint32_t size_ = 0;      ///< Bytes in the image, the spare one not counted.
  std::uint32_t position_ = 0;
  std::size_t image_capacity_ = 0;
  std::uint64_t readable_bytes_ = 0;  ///< What is left of the two limits.
  std::uint64_t record_bytes_ = 0;
  TNewFile new_file_;
};

}  // namespace zaf
