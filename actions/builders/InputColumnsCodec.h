#pragma once

#include <cstddef>
#include <string_view>

#include "actions/builders/CInputColumnArray.h"
#include "fields/ListCodecs.h"

namespace zaf {

/// The part of the codec of input columns that does not depend on the type of the records: a record
/// list whose items, those of the inputs that offer a list, stand in the element of the input.
class TInputColumnsCodecBase : public TRecordListCodecBase {
 public:
  using TRecordListCodecBase::TRecordListCodecBase;

  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;

 protected:
  ~TInputColumnsCodecBase() = default;
};

template <class Column>
class TInputColumnsCodec final : public TInputColumnsCodecBase {
 public:
  constexpr TInputColumnsCodec() : TInputColumnsCodecBase(kRecordType<Column>, Slicing::kUpgrade) {}
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

template <class Column>
inline constexpr TInputColumnsCodec<Column> kInputColumnsCodec{};

template <std::size_t kNames>
inline constexpr TListItemsCodec kListItemsCodec{
    TCodecOf<TRecordArray<TLegacyListItem<kNames>>>::kCodec};

/// The columns of a page with input, `Member` is a TInputColumnArray.
template <auto Member>
constexpr TProperty InputColumns(FourCharCode code, std::string_view name, std::string_view item) {
  using Field = typename TMemberTraits<decltype(Member)>::Field;
  return List<Member>(code, name, item, kInputColumnsCodec<typename Field::TColumn>);
}

/// The legacy section of their list items.
template <auto Member>
constexpr TProperty ListItems(FourCharCode code) {
  using Field = typename TMemberTraits<decltype(Member)>::Field;
  return ByHand<Member>(code, kListItemsCodec<Field::kNameCount>);
}

}  // namespace zaf
