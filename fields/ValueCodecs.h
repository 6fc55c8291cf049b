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

/// A field that has one value with a spelling: an attribute or the text of a child element. A
/// derived codec only says how the value is spelled.
class TValueCodec : public TFieldCodec {
 public:
  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  /// A missing attribute or child is read as the empty text.
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;

 protected:
  using TScratch = TXmlWriteContext::TScratch;

  /// The spelling, in the field itself, in `scratch` or in a constant.
  virtual std::string_view Spell(const void* field, TScratch& scratch) const = 0;
  virtual Status Parse(void* field, std::string_view text) const = 0;
  /// Whether the forms that depend on it write the field.
  virtual bool IsSet(const void* field) const = 0;

  ~TValueCodec() = default;
};

/// When a text has a legacy section.
enum class LegacyText : std::uint8_t { kIfNotEmpty, kAlways };

/// What a NUL within the text of a legacy section does.
enum class InnerNul : std::uint8_t { kStays, kEndsText };

/// A text of any length. Set when it is not empty. Codecs of texts with a spelling of their own
/// derive from it.
class TTextCodecBase : public TValueCodec {
 public:
  constexpr explicit TTextCodecBase(LegacyText legacy = LegacyText::kIfNotEmpty,
                                    InnerNul inner_nul = InnerNul::kStays)
      : legacy_(legacy), inner_nul_(inner_nul) {}

  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  bool IsEqual(const void* field, const void* other) const override;

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
/// A text that ends at its first NUL and whose legacy section is written even when it is empty.
inline constexpr TTextCodec kPlainTextCodec{LegacyText::kAlways, InnerNul::kEndsText};

/// Which numbers of a legacy section turn a switch on.
enum class SwitchRule : std::uint8_t { kNotZero, kPositive };

/// A switch: "True" when it is on, "False" when it is off; any other word is off. `on_word` is what
/// is written for a switch that is on, where that is not what is read.
class TSwitchCodec final : public TValueCodec {
 public:
  constexpr explicit TSwitchCodec(SwitchRule rule, std::string_view on_word = "True")
      : rule_(rule), on_word_(on_word) {}

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
  std::string_view on_word_;
};

inline constexpr TSwitchCodec kSwitchCodec{SwitchRule::kNotZero};
inline constexpr TSwitchCodec kPositiveSwitchCodec{SwitchRule::kPositive};

/// A number of a record that is a switch: on when it is not zero.
template <class Number>
class TRecordSwitchCodec final : public TValueCodec {
 public:
  bool IsEqual(const void* field, const void* other) const override {
    return IsSet(field) == IsSet(other);
  }
  bool IsWord() const override { return sizeof(Number) == sizeof(std::uint32_t); }

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

/// A number, signed, in decimal. Set when it is not zero. Read as `ParseNumber` does. Codecs of
/// numbers with a spelling of their own derive from it.
class TNumberCodecBase : public TValueCodec {
 public:
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  bool IsEqual(const void* field, const void* other) const override;
  bool IsWord() const override { return true; }

 protected:
  std::string_view Spell(const void* field, TScratch& scratch) const override;
  Status Parse(void* field, std::string_view text) const override;
  bool IsSet(const void* field) const override;

  ~TNumberCodecBase() = default;
};

class TNumberCodec final : public TNumberCodecBase {};

inline constexpr TNumberCodec kNumberCodec{};

/// A four-character code, spelled by its characters up to the first NUL. Set when that is not
/// empty. A shorter text is filled up with NULs, a longer one cut.
class TCodeCodec final : public TValueCodec {
 public:
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  bool IsEqual(const void* field, const void* other) const override;
  bool IsWord() const override { return true; }

 protected:
  std::string_view Spell(const void* field, TScratch& scratch) const override;
  Status Parse(void* field, std::string_view text) const override;
  bool IsSet(const void* field) const override;
};

inline constexpr TCodeCodec kCodeCodec{};

/// A fixed-width text of a record. Set when it is not empty; a text that is too long is cut.
template <std::size_t kWidth>
class TFixedTextCodec final : public TValueCodec {
 public:
  bool IsEqual(const void* field, const void* other) const override {
    return Text(field).View() == Text(other).View();
  }

 protected:
  using TScratch = TValueCodec::TScratch;

  std::string_view Spell(const void* field, TScratch&) const override { return Text(field).View(); }
  Status Parse(void* field, std::string_view text) const override {
    static_cast<TFixedText<kWidth>*>(field)->Set(text);
    return Status::kOk;
  }
  bool IsSet(const void* field) const override { return !Text(field).IsEmpty(); }

 private:
  static const TFixedText<kWidth>& Text(const void* field) {
    return *static_cast<const TFixedText<kWidth>*>(field);
  }
};

/// A number with its word.
struct TWord {
  std::int32_t value;
  std::string_view word;
};

/// The words of a number. A value without a word is spelled, and a word that is unknown is read,
/// by the rule of the vocabulary. Where the first word stands in it does so for the
/// empty text, too.
struct TVocabulary {
  /// What stands in for a missing word.
  enum class Fallback : std::uint8_t {
    kNumber,      ///< The number in decimal, both ways.
    kFirstWord,   ///< The first word, both ways.
    kZero,        ///< Not written; an unknown word is 0.
    kRefuse,      ///< Written as the first word; read, an unknown word is kMalformed.
    kCharacters,  ///< The four characters of a code, both ways.
  };

  std::span<const TWord> words;
  Fallback fallback;

  /// The word of `value`; empty when it has none.
  [[nodiscard]] std::string_view WordOf(std::int32_t value) const;
  /// Whether the word is known; then `value` is its number.
  bool Find(std::string_view word, std::int32_t& value) const;
};

/// A number or code that is written by its word. Set when it has a word of its own.
class TWordCodec final : public TValueCodec {
 public:
  constexpr explicit TWordCodec(const TVocabulary& vocabulary) : vocabulary_(vocabulary) {}

  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  bool IsEqual(const void* field, const void* other) const override;
  bool IsWord() const override { return true; }

 protected:
  std::string_view Spell(const void* field, TScratch& scratch) const override;
  Status Parse(void* field, std::string_view text) const override;
  bool IsSet(const void* field) const override;

 private:
  const TVocabulary& vocabulary_;
};

/// The number at the start of a text: leading white space is skipped, then an optional sign and
/// digits; the rest is ignored. Modulo 2^32, signed; 0 without digits.
std::int32_t ParseNumber(std::string_view text);

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
