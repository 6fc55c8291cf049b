#include "foundation/TDataFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <typeinfo>
#include <utility>

#include "foundation/CData.h"
#include "foundation/CText.h"
#include "foundation/TSpares.h"
#include "foundation/WorkLimit.h"

namespace zaf {
namespace {

/// Largest image in bytes whose memory is kept for another file when a file is closed: the first
/// access to a new page costs more than reading the page from the file. Nothing is kept under
/// sanitizers, which then see an image of exactly the file's size.
#ifdef ZAF2XML_SANITIZED
constexpr std::size_t kMostKept = 0;
#else
constexpr std::size_t kMostKept = std::size_t{4} << 20;
#endif

TSpares<TFileImage> spare_images;

/// The C library's name of a mode other than kRead.
const char* StreamMode(TOpenMode mode) {
  switch (mode) {
    case TOpenMode::kWrite:
      return "wb";
    case TOpenMode::kAppend:
      return "ab";
    case TOpenMode::kReadWrite:
      return "r+b";
    case TOpenMode::kReadAppend:
      return "a+b";
    default:
      return "w+b";
  }
}

Status Result(bool is_done) { return is_done ? Status::kOk : Status::kFailure; }

}  // namespace

TDataFile::TDataFile(ByteView content) {
  if (!AllocateImage(content.size())) return;
  if (!content.empty()) std::memcpy(image_.bytes.get(), content.data(), content.size());
  TakeImage(static_cast<std::uint32_t>(content.size()));
}

TDataFile::~TDataFile() { TDataFile::Close(); }

Status TDataFile::Seek(FourCharCode /*code*/, std::uint32_t offset) {
  if (is_in_memory_) {
    if (offset >= size_) return Status::kFailure;
    position_ = offset;
    return Status::kOk;
  }
  const auto target = static_cast<long>(offset);  // Negative where long has 32 bits and it is more.
  if (stream_ == nullptr || target < 0) return Status::kFailure;
  return Result(std::fseek(stream_, target, SEEK_SET) == 0);
}

Status TDataFile::Read(std::uint32_t count, void* buffer) {
  if (count != 0 && buffer == nullptr) return Status::kFailure;
  if (!is_in_memory_) return ReadStream(count, buffer);
  if (count > size_ - position_) return Status::kFailure;
  if (const Status status = ChargeRead(count); status != Status::kOk) return status;
  if (count != 0) std::memcpy(buffer, image_.bytes.get() + position_, count);
  position_ += count;
  return Status::kOk;
}

Status TDataFile::ReadStream(std::uint32_t count, void* buffer) {
  if (stream_ == nullptr) return Status::kFailure;
  // A stream that cannot seek is read without this check.
  if (const long position = std::ftell(stream_); position >= 0) {
    const std::uint32_t size = TDataFile::GetSize();
    if (std::fseek(stream_, position, SEEK_SET) != 0) return Status::kFailure;
    if (!has_limits_) SetLimits(size);
    const auto passed = static_cast<std::uint64_t>(position);
    if (count != 0 && (passed > size || count > size - passed)) return Status::kFailure;
  }
  if (!has_limits_) SetLimits(0);
  if (const Status status = ChargeRead(count); status != Status::kOk) return status;
  const std::size_t taken = count == 0 ? 0 : std::fread(buffer, 1, count, stream_);
  if (IsScrambled()) Descramble(static_cast<std::uint32_t>(taken), buffer);
  const auto status = static_cast<Status>(std::ferror(stream_));
  return status == Status::kOk && taken < count ? Status::kFailure : status;
}

Status TDataFile::Write(std::uint32_t count, void* buffer) {
  const bool is_writable = stream_ != nullptr || new_file_.IsOpen();
  if (is_in_memory_ || !is_writable || buffer == nullptr) return Status::kFailure;
  if (IsScrambled()) Scramble(count, buffer);
  Status status = Status::kOk;
  if (stream_ != nullptr) {
    has_limits_ = false;
    static_cast<void>(std::fwrite(buffer, 1, count, stream_));
    status = static_cast<Status>(std::ferror(stream_));
  } else {
    status = Result(new_file_.Write(buffer, count));
  }
  if (IsScrambled()) Descramble(count, buffer);
  return status;
}

Status TDataFile::Open(const CText& name, TOpenMode mode) {
  if (is_in_memory_) return Status::kFailure;
  Close();
  if (mode == TOpenMode::kRead) return OpenImage(name);
  stream_ = OpenStream(name, StreamMode(mode));
  return Result(stream_ != nullptr);
}

Status TDataFile::OpenNew(const CText& name) {
  if (is_in_memory_) return Status::kFailure;
  Close();
  return Result(new_file_.Open(name));
}

Status TDataFile::OpenImage(const CText& name) {
  TInputFile file;
  if (!file.Open(name) || file.GetSize() == 0) return Status::kFailure;
  if (!AllocateImage(file.GetSize())) return Status::kFailure;
  // The file can have become shorter since it was opened, even empty.
  std::size_t count = 0;
  if (!file.Read(image_.bytes.get(), static_cast<std::size_t>(file.GetSize()), count) ||
      count == 0) {
    FreeImage();
    return Status::kFailure;
  }
  TakeImage(static_cast<std::uint32_t>(count));
  return Status::kOk;
}

bool TDataFile::AllocateImage(std::uint64_t size) {
  // The spare byte must fit the address space, too.
  constexpr std::uint64_t kMost = std::min<std::uint64_t>(
      std::numeric_limits<std::uint32_t>::max(), std::numeric_limits<std::size_t>::max() - 1);
  if (size > kMost) return false;
  const auto needed = static_cast<std::size_t>(size) + 1;
  image_ = spare_images.Take();
  if (image_.capacity >= needed) return true;
  image_ = {};
  image_.bytes.reset(static_cast<std::byte*>(heap::Allocate(needed)));
  image_.capacity = image_.bytes != nullptr ? needed : 0;
  return image_.bytes != nullptr;
}

void TDataFile::TakeImage(std::uint32_t size) {
  is_in_memory_ = true;
  size_ = size;
  position_ = 0;
  image_.bytes[size] = std::byte{0};
  if (IsScrambled()) Descramble(size, image_.bytes.get());
  SetLimits(size);
}

void TDataFile::SetLimits(std::uint32_t size) {
  readable_bytes_ = record_bytes_ = WorkLimit(size);
  has_limits_ = true;
}

void TDataFile::FreeImage() {
  if (image_.bytes != nullptr && image_.capacity <= kMostKept) spare_images.Keep(std::move(image_));
  image_ = {};
  is_in_memory_ = is_plain_image_ = false;
  size_ = position_ = 0;
}

Status TDataFile::Flush() {
  if (new_file_.IsOpen()) return Status::kOk;
  return Result(stream_ != nullptr && std::fflush(stream_) == 0);
}

int TDataFile::Close() {
  FreeImage();
  if (stream_ != nullptr) std::fclose(std::exchange(stream_, nullptr));
  new_file_.Discard();
  has_limits_ = false;
  return 0;
}

int TDataFile::DeleteFile(const CText& name) { return RemoveFile(name) ? 0 : -1; }

std::uint32_t TDataFile::GetSize() {
  if (stream_ == nullptr) return size_;
  const long end = std::fseek(stream_, 0, SEEK_END) == 0 ? std::ftell(stream_) : 0;
  constexpr std::int64_t kMost = std::numeric_limits<std::uint32_t>::max();
  return static_cast<std::uint32_t>(std::clamp<std::int64_t>(end, 0, kMost));
}

bool TDataFile::FindPlainImage() {
  is_plain_image_ = is_in_memory_ && typeid(*this) == typeid(TDataFile);
  return is_plain_image_;
}

Status TDataFile::FetchText(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                            std::string_view& text) {
  const Status status = ReadText(code, offset, length, text_);
  if (status == Status::kOk) text = text_.View();
  return status;
}

Status TDataFile::FetchBlock(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                             CData& scratch, ByteView& view) {
  return ViewBlock(code, offset, length, scratch, view);
}

Status TDataFile::ReadInteger(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                              std::int32_t& value) {
  if (!IsPlainImage()) return TDiskFile::ReadInteger(code, offset, length, value);
  ByteView block;
  const Status status = TakeBlock(offset, sizeof value, block);
  return status == Status::kOk ? TByteReader(block).ReadI32(value) : status;
}

void TDataFile::SetScrambled(bool is_scrambled) {
  if (is_scrambled == is_scrambled_) return;
  is_scrambled_ = is_scrambled;
  if (!is_in_memory_) return;
  if (is_scrambled)
    Descramble(size_, image_.bytes.get());
  else
    Scramble(size_, image_.bytes.get());
}

Status TDataFile::ChargeRecords(std::uint64_t bytes) {
  if (!has_limits_) SetLimits(GetSize());
  if (bytes > record_bytes_) {
    record_bytes_ = 0;
    return Status::kMalformed;
  }
  record_bytes_ -= bytes;
  return Status::kOk;
}

Status TDataFile::Publish(TakenName taken) { return Result(new_file_.Publish(taken)); }

}  // namespace zaf
