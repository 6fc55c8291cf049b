#include "foundation/TDiskFile.h"

#include <array>
#include <bit>
#include <limits>
#include <string_view>

#include "foundation/CData.h"
#include "foundation/CText.h"
#include "foundation/CTextPtrArray.h"

namespace zaf {
namespace {

constexpr std::uint32_t kIntegerSize = 4;
constexpr std::string_view kNul("\0", 1);

void RotateLeft(std::uint32_t count, void* bytes, int bits) {
  auto* const data = static_cast<std::uint8_t*>(bytes);
  for (std::uint32_t i = 0; i < count; ++i) data[i] = std::rotl(data[i], bits);
}

/// Adds `text` at the end of a list that is being put together.
bool AppendBytes(CData& list, std::string_view text) {
  const std::uint32_t length = list.GetLength();
  if (text.size() > std::numeric_limits<std::uint32_t>::max() - length) return false;
  const auto count = static_cast<std::uint32_t>(text.size());
  return count == 0 || list.Splice(length, 0, text.data(), count) == length + count;
}

}  // namespace

TDiskFile::~TDiskFile() = default;

void TDiskFile::Scramble(std::uint32_t count, void* bytes) { RotateLeft(count, bytes, 3); }

void TDiskFile::Descramble(std::uint32_t count, void* bytes) { RotateLeft(count, bytes, 5); }

Status TDiskFile::FetchBlock(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                             CData& scratch, ByteView& view) {
  if (const Status status = ReadBlock(code, offset, length, scratch); status != Status::kOk)
    return status;
  view = scratch.Bytes();
  return Status::kOk;
}

Status TDiskFile::ReadText(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                           CText& text) {
  text.Clear();
  CData scratch;
  ByteView block;
  if (const Status status = FetchBlock(code, offset, length, scratch, block); status != Status::kOk)
    return status;
  const std::string_view characters = TextOfSection(block);
  if (characters.empty()) return Status::kOk;
  text.Assign(characters);
  return text.GetCharacterCount() == characters.size() ? Status::kOk : Status::kFailure;
}

Status TDiskFile::ReadTextList(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                               CTextPtrArray& texts) {
  CData scratch;
  ByteView block;
  if (const Status status = FetchBlock(code, offset, length, scratch, block); status != Status::kOk)
    return status;
  if (block.empty()) return Status::kOk;
  TByteReader reader(block);
  std::uint32_t count = 0;
  if (reader.ReadU32(count) != Status::kOk || count > reader.Remaining()) return Status::kMalformed;
  for (; count > 0 && reader.Remaining() > 0; --count) {
    std::string_view text;
    if (reader.ReadTerminated(text) != Status::kOk) {
      ByteView rest;
      if (reader.ReadBytes(reader.Remaining(), rest) != Status::kOk) return Status::kFailure;
      text = AsText(rest);
    }
    if (texts.Append(text) == nullptr) return Status::kFailure;
  }
  return Status::kOk;
}

Status TDiskFile::ReadInteger(FourCharCode code, std::uint32_t offset, std::uint32_t /*length*/,
                              std::int32_t& value) {
  std::array<std::byte, kIntegerSize> bytes;
  if (const Status status = ReadAt(code, offset, kIntegerSize, bytes.data()); status != Status::kOk)
    return status;
  return TByteReader(bytes).ReadI32(value);
}

Status TDiskFile::ReadBlock(FourCharCode code, std::uint32_t offset, std::uint32_t length,
                            CData& block) {
  const std::uint32_t size = GetSize();
  if (offset > size || length > size - offset) return Status::kFailure;
  if (block.Set(nullptr, length).length != length) return Status::kFailure;
  const Status status = ReadAt(code, offset, length, block.GetData());
  if (status != Status::kOk) block.Clear();
  return status;
}

Status TDiskFile::ReadAt(FourCharCode code, std::uint32_t offset, std::uint32_t count,
                         void* buffer) {
  if (const Status status = Seek(code, offset); status != Status::kOk) return status;
  return Read(count, buffer);
}

Status TDiskFile::WriteText(FourCharCode code, std::uint32_t offset, std::uint32_t& written,
                            const CText& text, TextEnd end) {
  CData section;
  if (!AppendBytes(section, text.View())) return Status::kFailure;
  if (end == TextEnd::kWithNul && !AppendBytes(section, kNul)) return Status::kFailure;
  return WriteBlock(code, offset, written, section);
}

Status TDiskFile::WriteTextList(FourCharCode code, std::uint32_t offset, std::uint32_t& written,
                                const CTextPtrArray& texts) {
  std::array<std::byte, kIntegerSize> count;
  StoreU32(texts.GetCount(), count);
  CData section;
  if (!AppendBytes(section, AsText(count))) return Status::kFailure;
  for (const CText& text : texts) {
    if (!AppendBytes(section, text.View()) || !AppendBytes(section, kNul)) return Status::kFailure;
  }
  return WriteBlock(code, offset, written, section);
}

Status TDiskFile::WriteInteger(FourCharCode code, std::uint32_t offset, std::uint32_t& written,
                               std::int32_t value) {
  std::array<std::byte, kIntegerSize> bytes;
  StoreU32(static_cast<std::uint32_t>(value), bytes);
  if (const Status status = WriteAt(code, offset, kIntegerSize, bytes.data());
      status != Status::kOk)
    return status;
  written = kIntegerSize;
  return Status::kOk;
}

Status TDiskFile::WriteBlock(FourCharCode code, std::uint32_t offset, std::uint32_t& written,
                             const CData& block) {
  CData copy(block);  // Write transforms what it is given when the file is scrambled.
  const std::uint32_t count = block.GetLength();
  if (copy.GetLength() != count) return Status::kFailure;
  char nothing = 0;
  const Status status = WriteAt(code, offset, count, count == 0 ? &nothing : copy.GetData());
  if (status == Status::kOk) written = count;
  return status;
}

Status TDiskFile::WriteAt(FourCharCode code, std::uint32_t offset, std::uint32_t count,
                          void* buffer) {
  if (const Status status = Seek(code, offset); status != Status::kOk) return status;
  return Write(count, buffer);
}

}  // namespace zaf
