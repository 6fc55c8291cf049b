#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "fields/TProperty.h"
#include "foundation/CText.h"
#include "foundation/TFixedText.h"

namespace zaf {

/// A field whose value is formatted as text: an attribute or the text of a child element. A derived
/// codec defines the format.
class TValueCodec : public TFieldCodec {
 public:
  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  /// A missing attribute or child is read as the empty text.
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;
  // Defaults for numbers, the most common type of value.

  SectionForm GetSectionForm() const override { return SectionForm::kNumber; }
  std::uint64_t GetUsed(const void* field, const TLegacySection& section) const override;
  void ReportReading(const TProperty& row, const void* field,
                     const TXmlReadScope& scope) const override;

 protected:
  using TScratch = TXmlWriteContext::TScratch;

  /// The spelling; the result refers to the field, to `scratch` or to a constant.
  virtual std::string_view Spell(const void* field, TScratch& scratch) const = 0;
  virtual Status Parse(void* field, std::string_view text) const = 0;
  /// Whether kChildIfSet and kAttributeIfSet write the field.
  virtual bool IsSet(const void* field) const = 0;

  ~TValueCodec() = default;
};

/// When a text's legacy section is written.
enum class LegacyText : std::uint8_t { kIfNotEmpty, kAlways };

/// The effect of a NUL within the text of a legacy section.
enum class InnerNul : std::uint8_t { kStays, kEndsText };

/// A text of any length. Set if it is not empty. The base of codecs for texts with a different
/// spelling.
class TTextCodecBase : public TValueCodec {
 public:
  constexpr explicit TTextCodecBase(LegacyText legacy = LegacyText::kIfNotEmpty,
                                    InnerNul inner_nul = InnerNul::kStays)
      : legacy_(legacy), inner_nul_(inner_nul) {}

  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  bool IsEqual(const void* field, const void* other) const override;
  SectionForm GetSectionForm() const override { return SectionForm::kText; }
  std::uint64_t GetUsed(const void* field, const TLegacySection& section) const override;

 protected:
  std::string_view Spell(const void* field, TScratch& scratch) const override;
  Status Parse(void* field, std::string_view text) const override;
  bool IsSet(const void* field) const override;

  ~TTextCodecBase() = default;

 private:
  LegacyText legacy_;
  InnerNul inner_nul_;
};

class TTextCodec final : public TTextCodecBase {
 public:
  using TTextCodecBase::TTextCodecBase;
};

inline constexpr TTextCodec kTextCodec{};
/// A text that ends at its first NUL and whose legacy section is written even if it is empty.
inline constexpr TTextCodec kPlainTextCodec{LegacyText::kAlways, InnerNul::kEndsText};

/// Which numbers of a legacy section turn a switch on.
enum class SwitchRule : std::uint8_t { kNotZero, kPositive };

/// Which switches have a legacy section.
enum class LegacySwitch : std::uint8_t { kAlways, kIfOn };

/// A switch: "True" if it is on, "False" if it is off; any other text is read as off. `on_text` is
/// what is written for on, if it differs from what is read.
class TSwitchCodec final : public TValueCodec {
 public:
  constexpr explicit TSwitchCodec(SwitchRule rule, std::string_view on_text = "True",
                                  LegacySwitch legacy = LegacySwitch::kAlways)
      : rule_(rule), legacy_(legacy), on_text_(on_text) {}

  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  bool IsEqual(const void* field, const void* other) const override;

 protected:
  std::string_view Spell(const void* field, TScratch& scratch) const override;
  Status Parse(void* field, std::string_view text) const override;
  bool IsSet(const void* field) const override;

 private:
  SwitchRule rule_;
  LegacySwitch legacy_;
  std::string_view on_text_;
};

inline constexpr TSwitchCodec kSwitchCodec{SwitchRule::kNotZero};
inline constexpr TSwitchCodec kPositiveSwitchCodec{SwitchRule::kPositive};

/// A number in a record used as a switch: on if it is not zero.
template <class Number>
class TRecordSwitchCodec final : public TValueCodec {
 public:
  bool IsEqual(const void* field, const void* other) const override {
    return IsSet(field) == IsSet(other);
  }
  bool IsNumber32() const override { return sizeof(Number) == sizeof(std::uint32_t); }

 protected:
  using TScratch = TValueCodec::TScratch;

  std::string_view Spell(const void* field, TScratch&) const override {
    return IsSet(field) ? "True" : "False";
  }
  Status Parse(void* field, std::string_view text) const override {
    *static_cast<Number*>(field) = text == "True" ? 1 : 0;
    return Status::kOk;
  }
  bool IsSet(const void* field) const override { return *static_cast<const Number*>(field) != 0; }
};

inline constexpr TRecordSwitchCodec<std::uint8_t> kByteSwitchCodec{};
inline constexpr TRecordSwitchCodec<std::int32_t> kNumberSwitchCodec{};

/// A signed 32-bit number in decimal, read by `ParseNumber`. Set if it is not zero. The base of
/// codecs for numbers and four-character codes with another spelling.
class TNumberCodecBase : public TValueCodec {
 public:
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  bool IsEqual(const void* field, const void* other) const override;
  bool IsNumber32() const override { return true; }

 protected:
  std::string_view Spell(const void* field, TScratch& scratch) const override;
  Status Parse(void* field, std::string_view text) const override;
  bool IsSet(const void* field) const override;

  ~TNumberCodecBase() = default;
};

class TNumberCodec final : public TNumberCodecBase {};

inline constexpr TNumberCodec kNumberCodec{};

/// A four-character code, spelled by its characters up to the first NUL. Set if the spelling is not
/// empty. When read, a shorter text is padded with NULs and a longer one cut.
class TCodeCodec final : public TNumberCodecBase {
 protected:
  std::string_view Spell(const void* field, TScratch& scratch) const override;
  Status Parse(void* field, std::string_view text) const override;
  bool IsSet(const void* field) const override;
};

inline constexpr TCodeCodec kCodeCodec{};

/// A fixed-width text in a record. Set if it is not empty. A text that is too long is cut.
template <std::size_t kWidth>
class TFixedTextCodecBase : public TValueCodec {
 public:
  bool IsEqual(const void* field, const void* other) const override {
    return Text(field).View() == Text(other).View();
  }
  void NoteUse(const TProperty&, const void* field, const TRecordUse& use) const override {
    use.Add(field, std::min(kWidth, Text(field).View().size() + 1));
  }

 protected:
  using TScratch = TValueCodec::TScratch;

  std::string_view Spell(const void* field, TScratch&) const override { return Text(field).View(); }
  Status Parse(void* field, std::string_view text) const override {
    static_cast<TFixedText<kWidth>*>(field)->Set(text);
    return Status::kOk;
  }
  bool IsSet(const void* field) const override { return !Text(field).IsEmpty(); }

  ~TFixedTextCodecBase() = default;

 private:
  static const TFixedText<kWidth>& Text(const void* field) {
    return *static_cast<const TFixedText<kWidth>*>(field);
  }
};

template <std::size_t kWidth>
class TFixedTextCodec final : public TFixedTextCodecBase<kWidth> {};

/// A number and its keyword.
struct TKeyword {
  std::int32_t value;
  std::string_view keyword;
};

/// The keywords of a number. The fallback decides how a value without a keyword is written and how
/// an unknown keyword is read. The empty text is an unknown keyword, too.
struct TVocabulary {
  enum class Fallback : std::uint8_t {
    kNumber,        ///< The number in decimal, both ways.
    kFirstKeyword,  ///< The first keyword, both ways.
    kZero,          ///< Written as the empty text; an unknown keyword is read as 0.
    kRefuse,      ///< Written as the first keyword, as is the empty text read; others: kMalformed.
    kCharacters,  ///< The four characters of a code, both ways.
  };

  std::span<const TKeyword> keywords;
  Fallback fallback;

  /// The keyword of `value`; empty if it has none.
  [[nodiscard]] std::string_view KeywordOf(std::int32_t value) const;
  /// Sets `value` to the keyword's number; false if the keyword is unknown.
  bool Find(std::string_view keyword, std::int32_t& value) const;
};

/// A number or code spelled by its keyword. Set if it has one.
class TKeywordCodec final : public TNumberCodecBase {
 public:
  constexpr explicit TKeywordCodec(const TVocabulary& vocabulary) : vocabulary_(vocabulary) {}

  void ReportWriting(const TProperty& row, const void* field,
                     const TXmlWriteScope& scope) const override;

 protected:
  std::string_view Spell(const void* field, TScratch& scratch) const override;
  Status Parse(void* field, std::string_view text) const override;
  bool IsSet(const void* field) const override;

 private:
  const TVocabulary& vocabulary_;
};

template <>
struct TCodecOf<CText> {
  static constexpr const TFieldCodec& kCodec = kTextCodec;
};
template <>
struct TCodecOf<bool> {
  static constexpr const TFieldCodec& kCodec = kSwitchCodec;
};
template <>
struct TCodecOf<std::uint8_t> {
  static constexpr const TFieldCodec& kCodec = kByteSwitchCodec;
};
template <>
struct TCodecOf<std::int32_t> {
  static constexpr const TFieldCodec& kCodec = kNumberCodec;
};
template <>
struct TCodecOf<FourCharCode> {
  static constexpr const TFieldCodec& kCodec = kCodeCodec;
};
template <std::size_t kWidth>
struct TCodecOf<TFixedText<kWidth>> {
  static constexpr TFixedTextCodec<kWidth> kInstance{};
  static constexpr const TFieldCodec& kCodec = kInstance;
};

}  // namespace zaf
