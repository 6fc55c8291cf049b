#include "actions/TXmlContext.h"

#include <algorithm>
#include <random>
#include <string>
#include <utility>

namespace zaf {
namespace {

constexpr std::uint64_t kReferencedPerByte = 32;
constexpr std::uint64_t kLeastReferenced = 4 << 20;

std::uint64_t ProcessSeed() {
  static const std::uint64_t seed = [] {
    std::random_device device;
    return std::uint64_t{device()} << 32 | device();
  }();
  return seed;
}

}  // namespace

/// FNV-1a over the bytes, begun at the seed, finished with the 64-bit mixer of MurmurHash3.
std::size_t TSeededHash::operator()(std::string_view text) const {
  std::uint64_t hash = ProcessSeed();
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  hash = (hash ^ hash >> 33) * 0xFF51AFD7ED558CCDU;
  hash = (hash ^ hash >> 33) * 0xC4CEB9FE1A85EC53U;
  return static_cast<std::size_t>(hash ^ hash >> 33);
}

TOutputIndex::TOutputIndex(dom::Element outputs) {
  for (dom::Element output = outputs.getFirstChildElement("Output"); output;
       output = output.getNextSiblingElement("Output")) {
    const auto [place, is_new] = texts_.try_emplace(output.getAttribute("ID"));
    if (is_new) place->second = output.getTextContent();
  }
}

const std::string_view* TOutputIndex::Find(std::string_view id) const {
  const auto found = texts_.find(id);
  return found == texts_.end() ? nullptr : &found->second;
}

dom::Element TElementRegistry::Find(const heap::TPooledString& key) const {
  const auto found = elements_.find(key);
  return found == elements_.end() ? dom::Element() : found->second;
}

void TElementRegistry::Remember(heap::TPooledString key, dom::Element element) {
  elements_.try_emplace(std::move(key), element);
}

TReferenceBudget::TReferenceBudget(std::size_t document_size)
    : left_(std::max(kReferencedPerByte * document_size, kLeastReferenced)) {}

Status TReferenceBudget::Charge(std::size_t bytes) {
  if (bytes > left_) {
    left_ = 0;
    return Status::kMalformed;
  }
  left_ -= bytes;
  return Status::kOk;
}

dom::Element AppendDataSource(TXmlWriteContext& context) {
  const dom::Element source = context.data_sources.appendElement("DataSource");
  source.appendAttribute("ID", "DataSource." + std::to_string(context.data_source_count++));
  return source;
}

}  // namespace zaf
