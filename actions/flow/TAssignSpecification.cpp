#include "actions/flow/TAssignSpecification.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "fields/AssignWithLineFeeds.h"
#include "fields/WriteTextElement.h"
#include "foundation/CaseFolding.h"
#include "foundation/Heap.h"

namespace zaf {
namespace {

constexpr std::string_view kVariableElement = "AssignItem";
constexpr std::string_view kCookieElement = "Cookie";
constexpr std::string_view kScopeElement = "Scope";
constexpr std::string_view kCookieScope = "Cookie";
constexpr std::string_view kDefaultScope = "Default";

/// Reads the parts of a section one after another, up to the end of the file: the length of the
/// section is ignored.
class TPartReader {
 public:
  explicit TPartReader(const TLegacySection& section)
      : section_(section), offset_(section.offset) {}

  /// Bytes read so far.
  [[nodiscard]] std::uint64_t GetUsed() const { return offset_ - section_.offset; }
  Status ReadNumber(std::int32_t& value) {
    const TLegacySection part = Next(sizeof value);
    return part.file == nullptr ? Status::kFailure : part.Read(value);
  }
  Status ReadBytes(std::uint32_t count, ByteView& bytes) {
    const TLegacySection part = Next(count);
    return part.file == nullptr ? Status::kFailure : part.View(bytes);
  }
  template <std::size_t kWidth>
  Status ReadText(TFixedText<kWidth>& text) {
    ByteView bytes;
    const Status status = ReadBytes(kWidth, bytes);
    if (status != Status::kOk) return status;
    std::memcpy(text.bytes, bytes.data(), kWidth);
    const std::size_t used = std::min(kWidth, text.View().size() + 1);
    if (TByteAccount* const account = section_.GetAccount())
      account->SetUse(offset_ - kWidth + used, kWidth - used, ByteUse::kDropped);
    return Status::kOk;
  }

 private:
  /// The next `count` bytes; has no file when their offset exceeds 32 bits.
  TLegacySection Next(std::uint32_t count) {
    if (offset_ > UINT32_MAX) return {};
    TLegacySection part = section_;
    part.offset = static_cast<std::uint32_t>(offset_);
    part.length = count;
    offset_ += count;
    if (TByteAccount* const account = part.GetAccount())
      account->SetUse(part.offset, count, ByteUse::kCarried);
    return part;
  }

  TLegacySection section_;
  std::uint64_t offset_;
};

Status ReadItem(TPartReader& reader, TAssignItem& item) {
  std::int32_t value_length = 0;
  if (const Status status = reader.ReadNumber(value_length); status != Status::kOk) return status;
  ByteView value;
  if (const Status status = reader.ReadBytes(static_cast<std::uint32_t>(value_length), value);
      status != Status::kOk)
    return status;
  if (!AssignWithLineFeeds(AsText(value), item.value)) return Status::kFailure;
  TCookie cookie;
  for (const Status status : {reader.ReadText(item.name), reader.ReadText(item.scope),
                              reader.ReadText(cookie.expiry), reader.ReadText(cookie.path),
                              reader.ReadText(cookie.domain), reader.ReadNumber(cookie.is_secure)})
    if (status != Status::kOk) return status;
  return item.cookie.Set(cookie) ? Status::kOk : Status::kFailure;
}

/// The section content for these items.
std::string LayOut(const TAssignItemArray& items) {
  std::string bytes;
  AppendU32(items.GetCount(), bytes);
  for (const TAssignItem& item : items) {
    AppendU32(item.value.GetCharacterCount(), bytes);
    bytes.append(item.value.View());
    bytes.append(item.name.bytes, sizeof item.name).append(item.scope.bytes, sizeof item.scope);
    const TCookie& cookie = item.cookie.Get();
    bytes.append(cookie.expiry.bytes, sizeof cookie.expiry);
    bytes.append(cookie.path.bytes, sizeof cookie.path);
    bytes.append(cookie.domain.bytes, sizeof cookie.domain);
    AppendU32(static_cast<std::uint32_t>(cookie.is_secure), bytes);
  }
  return bytes;
}

/// The items of an assign action: a section of items of variable length; in XML one element each,
/// whose name distinguishes cookies from other assignments.
class TAssignItemsCodec final : public TFieldCodec {
 public:
  /// Items before one that cannot be read remain in the list.
  Status ReadLegacy(const TProperty&, void* field, const TLegacySection& section) const override {
    TPartReader reader(section);
    std::int32_t count = 0;
    if (const Status status = reader.ReadNumber(count); status != Status::kOk) return status;
    for (auto left = static_cast<std::uint32_t>(count); left > 0; --left) {
      auto item = heap::MakeUnique<TAssignItem>();
      if (item == nullptr) return Status::kFailure;
      if (const Status status = ReadItem(reader, *item); status != Status::kOk) return status;
      if (Items(field).Add(std::move(item)) == kNoIndex) return Status::kFailure;
    }
    section.ReportUnread(reader.GetUsed());
    return Status::kOk;
  }

  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override {
    const auto has_return = [](const TAssignItem& item) {
      return item.value.View().find('\r') != std::string_view::npos;
    };
    if (out.GetLosses() != nullptr && std::ranges::any_of(Items(field), has_return))
      out.GetLosses()->ReportIn(row.code, LossReason::kAddedLineFeeds, {});
    const auto write = [&] { return out.Write(row.code, AsBytes(LayOut(Items(field)))); };
    return Attempt(write, Status::kFailure);
  }

  bool AppendsSections() const override { return true; }
  void WriteXml(const TProperty&, const void* field, const TXmlWriteScope& scope) const override {
    for (const TAssignItem& item : Items(field)) {
      const bool is_cookie = item.IsCookie();
      const dom::Element element =
          scope.element.appendElement(is_cookie ? kCookieElement : kVariableElement);
      const TXmlWriteScope inner{scope.context, element, scope.action_name};
      WriteXmlRows(is_cookie ? TAssignItem::CookieProperties() : TAssignItem::VariableProperties(),
                   &item, inner);
      if (is_cookie || EqualsIgnoringCase(item.scope.View(), kDefaultScope)) continue;
      WriteTextElement(inner, kScopeElement, item.scope.View());
    }
  }

  Status ReadXml(const TProperty&, void* field, const TXmlReadScope& scope) const override {
    for (dom::Element element = scope.element.getFirstChildElement(); element;
         element = element.getNextSiblingElement()) {
      const bool is_cookie = element.getTagName() == kCookieElement;
      if (!is_cookie && element.getTagName() != kVariableElement) continue;
      element.SetRead(true);
      auto item = heap::MakeUnique<TAssignItem>();
      if (item == nullptr) return Status::kFailure;
      const Status status = ReadXmlRows(
          is_cookie ? TAssignItem::CookieProperties() : TAssignItem::VariableProperties(),
          item.get(), {scope.context, element});
      if (status != Status::kOk) return status;
      std::string joined;
      item->scope.Set(is_cookie
                          ? kCookieScope
                          : element.getFirstChildElement(kScopeElement).getTextContent(joined));
      if (Items(field).Add(std::move(item)) == kNoIndex) return Status::kFailure;
    }
    return Status::kOk;
  }

  bool IsEqual(const void* field, const void* other) const override {
    return Items(field) == Items(other);
  }

 private:
  static TAssignItemArray& Items(void* field) { return *static_cast<TAssignItemArray*>(field); }
  static const TAssignItemArray& Items(const void* field) {
    return *static_cast<const TAssignItemArray*>(field);
  }
};

constexpr TAssignItemsCodec kItemsCodec;

}  // namespace

std::span<const TProperty> TAssignSpecification::Properties() {
  static constexpr TProperty kRows[] = {
      Items<&TAssignSpecification::items_>(Code("agit"), {}, kItemsCodec),
  };
  return kRows;
}

Status TAssignSpecification::ReadXml(const TXmlReadContext& context, dom::Element element) {
  const auto read = [&] {
    if (const Status status = ReadXmlRows(Properties(), this, {context, element});
        status != Status::kOk)
      return status;
    CText tags;
    for (const TAssignItem& item : items_) AppendAssignTag(item, tags);
    SetResultsText(tags.View());
    // Last, since the element may have a results text of its own.
    return ReadCommonXml(context, element);
  };
  return Attempt(read, Status::kFailure);
}

}  // namespace zaf
