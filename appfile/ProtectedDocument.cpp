#include "appfile/ProtectedDocument.h"

#include <algorithm>

#include "dom/Serializer.h"
#include "foundation/Cipher.h"

namespace zaf {
namespace {

constexpr std::string_view kKeyText =
    "Zaf2Xml keeps a run-only application from being read by chance";
static_assert(kKeyText.size() == 62);
constexpr std::string_view kInitial("\0\0\0\0\0\0\0\0", kCipherBlockSize);

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
  TDigest digest;
  if (!ComputeDigest(bytes.subspan(kDigestSize), digest)) return Status::kFailure;
  std::copy(digest.begin(), digest.end(), bytes.begin());
  return TCipher(kKeyText).Encipher(kInitial, bytes) ? Status::kOk : Status::kFailure;
}

Status ReadProtected(std::span<std::byte> bytes, std::span<std::byte>& text) {
  if (bytes.size() < kDigestSize || !TCipher(kKeyText).Decipher(kInitial, bytes))
    return Status::kMalformed;
  TDigest digest;
  if (!ComputeDigest(bytes.subspan(kDigestSize), digest) ||
      !std::equal(digest.begin(), digest.end(), bytes.begin()))
    return Status::kMalformed;
  text = bytes.subspan(kDigestSize);
  return Status::kOk;
}

}  // namespace zaf
