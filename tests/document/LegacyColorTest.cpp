#include "LegacyColor.h"

#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "TestPage.h"

namespace {

TEST(LegacyColor, TheRulesOfTheHtmlStandard) {
  const std::pair<const char*, const char*> rows[] = {
      {"#ff8000", "#FF8000"},
      {"#FF8000", "#FF8000"},
      {"ff8000", "#FF8000"},
      {"#fff", "#FFFFFF"},
      {"fff", "#0F0F0F"},
      {"#1a2", "#11AA22"},
      {"black", "#000000"},
      {"Yellow", "#FFFF00"},
      {"LightGoldenrodYellow", "#FAFAD2"},
      {"rebeccapurple", "#663399"},
      {"grey", "#808080"},
      {"chucknorris", "#C00000"},
      {"", ""},
      {"transparent", ""},
      {"TRANSPARENT", ""},
      {" red ", "#FF0000"},
      {"#", "#000000"},
      {"   ", "#000000"},
      {"x", "#000000"},
      {"#12345", "#123450"},
      {"#123456789", "#124578"},
      {"6db6ec49efd278cd0bc92d1e5e072d68", "#6ECDE0"},
      {"zqbttv", "#00B000"},
      {"#zqbttv", "#00B000"},
      {"rgb(255,0,0)", "#002500"},
  };
  for (const auto& [value, color] : rows) EXPECT_EQ(NormalizeLegacyColor(value), color) << value;
  // Two digits for a character beyond the basic plane, and no more than 128 characters count.
  EXPECT_EQ(NormalizeLegacyColor(QString::fromUtf8("f\xF0\x9F\x98\x80"
                                                   "fff")),
            "#F00FFF");
  EXPECT_EQ(NormalizeLegacyColor(QString(128, u'f') + "000000"), NormalizeLegacyColor(QString(128, u'f')));
}

TEST(LegacyColor, NamesOfAttributes) {
  for (const char* name : {"text", "LINK", "vLink", "bgColor"}) EXPECT_TRUE(IsColorAttribute(name)) << name;
  for (const char* name : {"color", "alink", "background", ""}) EXPECT_FALSE(IsColorAttribute(name)) << name;
}

// Meant in HTMLBodyElement::setText: an empty colour empties the attribute that is there and makes none.
TEST(LegacyColor, WritingNothingEmptiesWhatIsThereAndMakesNone) {
  TestPage page("");
  HTMLBodyElement body = page.document.body();
  body.setText("");
  body.setVLink("");
  page.document.setBgColor("");
  EXPECT_EQ(body.outerHTML(), "<body></body>");
  body.setVLink("#00ff00");
  body.setLink("blue");
  page.document.setBgColor("#abcdef");
  EXPECT_EQ(body.vLink(), "#00FF00");
  EXPECT_EQ(body.link(), "#0000FF");
  EXPECT_EQ(page.document.bgColor(), "#ABCDEF");
  EXPECT_EQ(body.outerHTML(), "<body vlink=\"#00ff00\" link=\"blue\" bgcolor=\"#abcdef\"></body>");
  body.setVLink("");
  EXPECT_EQ(body.vLink(), "");
  EXPECT_EQ(body.outerHTML(), "<body vlink=\"\" link=\"blue\" bgcolor=\"#abcdef\"></body>");
  EXPECT_EQ(page.Problems(), QStringList());
}

}  // namespace
