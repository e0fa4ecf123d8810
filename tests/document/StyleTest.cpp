#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "StyleDeclarations.h"
#include "TestPage.h"

namespace {

QString Size(const char* style, bool quirks = true) {
  return StyleDeclarations::Parse(QString::fromLatin1(style), quirks).Value("font-size");
}
QString Family(const char* style) {
  return StyleDeclarations::Parse(QString::fromLatin1(style), true).Value("font-family");
}

QString After(const char* style, const char* property, const char* value) {
  StyleDeclarations declarations = StyleDeclarations::Parse(QString::fromLatin1(style), true);
  declarations.Set(property, value);
  return declarations.Text();
}

TEST(Style, Sizes) {
  EXPECT_EQ(Size("font-size: X-Small"), "x-small");
  EXPECT_EQ(Size("FONT-SIZE:12PT"), "12pt");
  EXPECT_EQ(Size("font-size: 2"), "2px");
  EXPECT_EQ(Size("font-size: 2", false), "");
  EXPECT_EQ(Size("font-size: 0", false), "0px");
  EXPECT_EQ(Size("font-size: 1.50em"), "1.5em");
  EXPECT_EQ(Size("font-size: big"), "");
  EXPECT_EQ(Size("font-size: -1px"), "");
  EXPECT_EQ(Size("font-size: small; font-size: nonsense"), "small");
  EXPECT_EQ(Size("font-size: small; font-size: large"), "large");
  EXPECT_EQ(Size("font-size: small !important; font-size: large"), "small");
  EXPECT_EQ(Size("font: bold 12px/2 Arial"), "12px");
  EXPECT_EQ(Size("/* font-size: small; */ color: red"), "");
  EXPECT_EQ(Size(""), "");
}

TEST(Style, Families) {
  EXPECT_EQ(Family("font-family: \"Times New Roman\""), "Times New Roman");
  EXPECT_EQ(Family("font-family: 'Arial' ,  Helvetica"), "Arial, Helvetica");
  EXPECT_EQ(Family("font-family: Arial, SANS-SERIF"), "Arial, sans-serif");
  EXPECT_EQ(Family("font-family: Times   New Roman"), "Times New Roman");
  EXPECT_EQ(Family("font-family: 3D"), "");
  EXPECT_EQ(Family("font-family: Arial,"), "");
  EXPECT_EQ(Family("font: 12px \"A; B\", c"), "A; B, c");
}

TEST(Style, SettingKeepsTheOrderAndWhatIsForeign) {
  EXPECT_EQ(After("color:red; font-size:small; x:y", "font-size", "large"), "color:red; font-size:large; x:y");
  EXPECT_EQ(After("color:red", "font-size", "2"), "color:red; font-size: 2;");
  EXPECT_EQ(After("font-size:1px; color:red; font-size:2px", "font-size", "3px"), "font-size:3px; color:red;");
  EXPECT_EQ(After("font-size:1px; color:red; font-size:2px", "font-size", ""), "color:red;");
  EXPECT_EQ(After("background: url(a;b:c.png); color: red !important", "font-size", "1px"),
            "background: url(a;b:c.png); color: red !important; font-size: 1px;");
  // A shorthand behind it would win, so the new one goes to the end.
  EXPECT_EQ(After("font-size: 1px; font: 2px a", "font-size", "3px"), "font: 2px a; font-size: 3px;");
}

// Opening a page writes its own font back, and that must not cost it anything.
TEST(Style, WhatIsntSetStaysByteForByte) {
  for (const char* before :
       {"font-family:'3 of 9 Barcode', serif", "font-family:var(--x)", "background:url(http://x/*y*/z.gif);color:red",
        "FONT-FAMILY : Arial !IMPORTANT ;;", "/* a; b:c */font-family:/*x*/Arial/*y*/", "font: 12px \"A; B\", c",
        "x:y;font-family: 3D", "a:b; c", ""}) {
    StyleDeclarations style = StyleDeclarations::Parse(QString::fromLatin1(before), true);
    style.Set("font-family", style.Value("font-family"));
    style.Set("font-size", style.Value("font-size"));
    EXPECT_EQ(style.Text(), before);
  }
  EXPECT_EQ(After("background:url(http://x/*y*/z.gif) /* ; */; color : red!important", "font-size", "1px"),
            "background:url(http://x/*y*/z.gif) /* ; */; color : red!important; font-size: 1px;");
  EXPECT_EQ(After("/*a*/ font-size : 2px /*b*/ ;x:y", "font-size", "3px"), "/*a*/ font-size : 3px /*b*/ ;x:y");
  EXPECT_EQ(After("content:'a;b", "font-size", "1px"), "content:'a;b'; font-size: 1px;") << "what was left open";
  EXPECT_EQ(After("a:url(x", "font-size", "1px"), "a:url(x); font-size: 1px;");
  EXPECT_EQ(After("a:b /* c", "font-size", "1px"), "a:b /* c*/; font-size: 1px;");
}

TEST(Style, FamilyNamesThatAreNoWordsGetQuotes) {
  EXPECT_EQ(After("", "font-family", "3 of 9 Barcode, serif"), "font-family: '3 of 9 Barcode', serif;");
  EXPECT_EQ(After("", "font-family", "Arial, Times New Roman"), "font-family: Arial, Times New Roman;");
  EXPECT_EQ(After("", "font-family", "\"A B\", 'c'"), "font-family: \"A B\", 'c';");
  EXPECT_EQ(Family("font-family: '3 of 9 Barcode', serif"), "3 of 9 Barcode, serif");
  EXPECT_EQ(Family("font-family: var(--x, Arial)"), "var(--x, Arial)");
}

TEST(Style, ASetValueIsReadBack) {
  for (const char* before : {"", "font-size: 1px", "font-size: 1px !important", "font: 2px a", "font: 2px a !important",
                             "font-size: 9px; font: 2px a", "font-size: 1px !important; font-size: 2px"}) {
    StyleDeclarations style = StyleDeclarations::Parse(QString::fromLatin1(before), true);
    style.Set("font-size", "x-large");
    EXPECT_EQ(style.Value("font-size"), "x-large") << before;
    EXPECT_EQ(StyleDeclarations::Parse(style.Text(), true).Value("font-size"), "x-large") << before;
  }
}

TEST(Style, OfTheBody) {
  TestPage page("");
  HTMLStyle style = page.document.body().style();
  style.setFontSize("");
  EXPECT_EQ(page.document.body().outerHTML(), "<body></body>") << "nothing to remove makes no attribute";
  style.setFontSize("x-small");
  style.setFontFamily("\"Times New Roman\"");
  style.setTextAlign("CENTER");
  EXPECT_EQ(style.fontFamily(), "Times New Roman");
  EXPECT_EQ(style.fontSize(), "x-small");
  EXPECT_EQ(style.textAlign(), "center");
  style.setFontSize("2");
  EXPECT_EQ(style.fontSize(), "2px");
  style.setFontSize("");
  style.setTextAlign("");
  EXPECT_EQ(style.fontSize(), "");
  EXPECT_EQ(page.document.body().getAttribute("style"), "font-family: \"Times New Roman\";");
  EXPECT_EQ(page.Problems(), QStringList());
}

}  // namespace
