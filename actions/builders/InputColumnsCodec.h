#pragma once

#include <cstddef>

#include "actions/builders/CInputColumnArray.h"
#include "fields/ListCodecs.h"

namespace zaf {

/// The columns of a page with input: a record list. The items of inputs that offer a list are
/// children of the input's element.
class TInputColumnsCodec final : public TRecordListCodecBase {
 public:
  using TRecordListCodecBase::TRecordListCodecBase;

  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;
};

template <class Column, std::size_t kNames>
struct TCodecOf<TInputColumnArray<Column, kNames>> {
  static constexpr TInputColumnsCodec kInstance{kRecordType<Column>, Slicing::kUpgrade};
  static constexpr const TFieldCodec& kCodec = kInstance;
};

/// The list items of input columns, in their own legacy section. They have no XML of their own.
class TListItemsCodec final : public TFieldCodec {
 public:
  /// `records`: the codec of the legacy records.
  constexpr explicit TListItemsCodec(const TFieldCodec& records) : records_(records) {}

  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  bool IsEqual(const void* field, const void* other) const override;
  bool AppendsSections() const override { return true; }

 private:
  const TFieldCodec& records_;
};

template <std::size_t kNames>
inline constexpr TListItemsCodec kListItemsCodec{
    TCodecOf<TRecordArray<TLegacyListItem<kNames>>>::kCodec};

/// The legacy section of the list items of `Member`, a TInputColumnArray.
template <auto Member>
constexpr TProperty ListItems(FourCharCode code) {
  using Field = typename TMemberTraits<decltype(Member)>::Field;
  return ByHand<Member>(code, kListItemsCodec<Field::kNameCount>);
}

}  // namespace zaf
