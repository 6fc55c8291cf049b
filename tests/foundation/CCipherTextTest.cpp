#include <gtest/gtest.h>

#include "foundation/CCipherText.h"

namespace zaf {
namespace {

TEST(CipherText, FormIsFixed) {
  CCipherText text("seven77");
  text.Encipher();
  EXPECT_EQ(text.View(), "ZC1:0176cbfedf2c0be3");
  text = "eight888";
  text.Encipher();
  EXPECT_EQ(text.View(), "ZC1:ead3687b73a1fc09d95723ff864a3f3a");
  text.Decipher();
  EXPECT_EQ(text.View(), "eight888");
}

TEST(CipherText, WhatDoesNotDecipherStays) {
  // Without the mark, with an upper-case digit, with half a byte, cut, with other padding, with
  // more padding than a block.
  for (const std::string_view kept :
       {"0176cbfedf2c0be3", "ZC1:0176CBFEDF2C0BE3", "ZC1:0176cbfedf2c0be", "ZC1:0176cbfedf2c0b",
        "ZC1:0176cbfedf2c0be4", "ZC1:", "ZC1:f9cb5f2e3d8f2bde5b9860de6ea1e89c"}) {
    CCipherText text(kept);
    text.Decipher();
    EXPECT_EQ(text.View(), kept);
  }
}

}  // namespace
}  // namespace zaf
