#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "dom/dom.h"

/// A document together with the bytes that it was parsed from.
class ParsedText {
 public:
  explicit ParsedText(std::string text)
      : text_(std::move(text)),
        document_(dom::DOMImplementation::createDocument(std::span(text_))) {}
  ParsedText(const ParsedText&) = delete;
  ParsedText& operator=(const ParsedText&) = delete;

  const dom::Document& operator*() const { return document_; }
  const dom::Document* operator->() const { return &document_; }

 private:
  std::string text_;
  dom::Document document_;
};

/// The serialised document; "(null)" for a null document.
inline std::string Serialized(const dom::Document& document) {
  if (!document) return "(null)";
  dom::OutputBuffer output;
  return dom::Serialize(document, output) ? std::string(output.View()) : "(failed)";
}

/// Parses a text and serialises the result.
inline std::string Reserialized(std::string_view text) {
  return Serialized(*ParsedText(std::string(text)));
}

/// Joins the texts.
inline std::string Join(std::initializer_list<std::string_view> texts) {
  std::string joined;
  for (const std::string_view text : texts) joined += text;
  return joined;
}

/// Repeats a text.
inline std::string Repeat(std::string_view text, std::size_t count) {
  std::string repeated;
  repeated.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) repeated += text;
  return repeated;
}
