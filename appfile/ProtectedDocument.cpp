#include "appfile/ProtectedDocument.h"

#include <algorithm>

#include "dom/Serializer.h"
#include "foundation/Cipher.h"

namespace zaf {
namespace {

constexpr std::string_view kKeyText =
    "Zaf2Xml keeps a run-only application from being read by chance";
static_assert(kKeyText.size() == 62);

const TCipher& DocumentCipher() {
  static const TCipher cipher(kKeyText, TCipherBlock{});
  return cipher;
}

}  // namespace

Status WriteProtected(const dom::Document& document, dom::OutputBuffer& output) {
  output.Append(kProtectedLine);
  output.Append("\n");
  const std::size_t begin = output.Size();
  output.Append(kDigestSize, '\0');
  if (!dom::Serialize(document, output)) return Status::kFailure;
  const std::size_t excess = (output.Size() - begin) % kCipherBlockSize;
  if (excess != 0) output.Append(kCipherBlockSize - excess, '\n');
  if (output.HasFailed()) return Status::kFailure;
  const std::span<std::byte> bytes = std::as_writable_bytes(output.Bytes().subspan(begin));
  std::ranges::copy(ComputeDigest(bytes.subspan(kDigestSize)), bytes.begin());
  DocumentCipher().Encipher(bytes);
  return Status::kOk;
}

Status ReadProtected(std::span<std::byte> bytes, std::span<std::byte>& text) {
  if (bytes.size() < kDigestSize || bytes.size() % kCipherBlockSize != 0) return Status::kMalformed;
  DocumentCipher().Decipher(bytes);
  text = bytes.subspan(kDigestSize);
  return std::ranges::equal(ComputeDigest(text), bytes.first(kDigestSize)) ? Status::kOk
                                                                           : Status::kMalformed;
}

}  // namespace zaf
