#include "ScopedStyles.h"

#include <gtest/gtest.h>

namespace {

StyleScope Scope() {
  return {"#p2", "#p2>.body", "p2-",
          [](const QString& url) { return url == u"cat.gif" ? QStringLiteral("var(--picture1)") : QString(); }};
}
QString Rules(const QString& css) {
  return ScopeStyleSheet(css, Scope()).rules;
}

TEST(ScopedStyles, EverySelectorIsKeptToThePage) {
  struct Row {
    const char *given, *made;
  };
  const Row rows[] = {
      {"p{color:red}", "#p2 p{color:red}"},
      {"p , h1>b{color:red}", "#p2 p,#p2 h1>b{color:red}"},
      {"*{margin:0}", "#p2 *{margin:0}"},
      {".a.b #c:hover::before{x:y}", "#p2 .a.b #p2-c:hover::before{x:y}"},
      {"body{margin:0}", "#p2>.body{margin:0;}"},
      {"HTML body p{x:y}", "#p2>.body p{x:y}"},
      {"html{x:y}", "#p2{x:y;}"},
      {":root .a{x:y}", "#p2 .a{x:y}"},
      {"body.home > p{x:y}", "#p2>.body.home > p{x:y}"},
      {"tbody td{x:y}", "#p2 tbody td{x:y}"},
      {"a[title=\"x,{}y\"]{x:y}", "#p2 a[title=\"x,{}y\"]{x:y}"},
      {"a:not(.b, .c){x:y}", "#p2 a:not(.b, .c){x:y}"},
      {"a:not(body *),b{x:y}", "#p2 a:not(#p2>.body *),#p2 b{x:y}"},
      {"body :not(html) i{x:y}", "#p2>.body :not(#p2) i{x:y}"},
      {"p{content:\"}\"} b{x:y}", "#p2 p{content:\"}\"}#p2 b{x:y}"},
      {"/* p{} */ b{x:y}", "#p2 b{x:y}"},
      {"<!-- b{x:y} -->", "#p2 b{x:y}"},
      {"@media print{p{x:y} body{z:w}}", "@media print{#p2 p{x:y}#p2>.body{z:w}}"},
      {"@media print{@supports (a:b){p{x:y}}}", "@media print{@supports (a:b){#p2 p{x:y}}}"},
      {"@import 'x.css'; p{x:y}", "#p2 p{x:y}"},
      {"@charset \"x\";@font-face{a:b}@keyframes k{from{a:b}to{c:d}}p{x:y}", "#p2 p{x:y}"},
      {"p{x:y", "#p2 p{x:y}"},
      // A line end ends a string, a ")" an address without quotes, whatever is in it.
      {"p{content:\"x\n} b{x:y} i{a:\"}\"}", "#p2 p{content:\"x\n}#p2 b{x:y}#p2 i{a:\"}\"}"},
      {"p{a:url(x'y)} b{x:y} i{a:'z'}", "#p2 p{a:url(x'y)}#p2 b{x:y}#p2 i{a:'z'}"},
      {"p{a:url(x/*y)} b{x:y} i{a:url(*/z)}", "#p2 p{a:url(x/*y)}#p2 b{x:y}#p2 i{a:url(*/z)}"},
      {"p", ""},
      {"}} p{x:y}", "#p2 p{x:y}"},
      {"p{background:url(cat.gif)} b{background:url('dog.gif')}",
       "#p2 p{background:var(--picture1)}#p2 b{background:url('dog.gif')}"},
  };
  for (const Row& row : rows) EXPECT_EQ(row.made, Rules(row.given).toStdString()) << row.given;
}

TEST(ScopedStyles, TheBackgroundOfThePageIsToldApart) {
  const ScopedStyles styles = ScopeStyleSheet(
      "body{color:red;background:#eef url(cat.gif);margin:0} html{background-color:blue} p{background:red} body "
      "p{background:green}",
      Scope());
  EXPECT_EQ("background:#eef var(--picture1);background-color:blue;", styles.background.toStdString());
  EXPECT_EQ("#p2>.body{color:red;margin:0;}#p2{}#p2 p{background:red}#p2>.body p{background:green}",
            styles.rules.toStdString());
}

// Whatever the sheet is, it comes to an end, and what comes out closes what it opens.
TEST(ScopedStyles, BrokenSheetsStayWithinTheirPage) {
  const QString pieces[] = {"{",           "}",
                            "(",           ")",
                            "[",           "]",
                            "\"",          "'",
                            "\\",          ",",
                            ";",           "@media x",
                            "p",           "#a",
                            ".b",          ":c",
                            "/*",          "*/",
                            "url(",        "html",
                            "body",        " ",
                            "background:", "\n",
                            "<!--",        QStringLiteral("\u00e4")};
  quint32 random = 12345;
  for (int round = 0; round < 20000; ++round) {
    QString css;
    for (int i = 0; i < 12; ++i) {
      random = random * 1664525 + 1013904223;
      css += pieces[(random >> 16) % std::size(pieces)];
    }
    const QString rules = Rules(css);
    EXPECT_LE(rules.size(), 40 * css.size() + 40) << qPrintable(css);
    EXPECT_TRUE(rules.isEmpty() || rules.startsWith(u"#p2") || rules.startsWith(u'@')) << qPrintable(css);
  }
}

TEST(ScopedStyles, ASheetThatIsNestedWithoutEndIsLeftOut) {
  QString css;
  for (int i = 0; i < 100'000; ++i) css += "@media a{";
  EXPECT_LT(Rules(css + "p{x:y}").size(), 1000);
}

TEST(ScopedStyles, DeclarationsThatReachBeyondTheirEndAreLeftOut) {
  const std::pair<const char*, const char*> rows[] = {
      {"color:red", "color:red;"},
      {" a : b ;; c:d ", "a : b;c:d;"},
      {"background:url(\"a;}b\") /* } */ 0;x:calc(1px + (2px))", "background:url(\"a;}b\")   0;x:calc(1px + (2px));"},
      {"a:b;color:red}.x{y:z;c:d", "a:b;c:d;"},
      {"a:b;c:(d", "a:b;"},
      {"a:b;c:d)", "a:b;"},
      {"a:b;c:[d)", "a:b;"},
      {"a:b;c:\"d", "a:b;"},
      {"a:b;c:\"d\\\"", "a:b;"},
      {"a:b;c:\"d\ne", "a:b;"},
      {"a:b;c:url(d", "a:b;"},
      {"a:b;c:url(d}{e)", "a:b;c:url(d}{e);"},
      {"a:b;c:d\\", "a:b;"},
      {"a:b;c:d /* e", "a:b;c:d;"},
      {"", ""}};
  for (const auto& [given, made] : rows) EXPECT_EQ(made, ContainedDeclarations(given).toStdString()) << given;
}

TEST(ScopedStyles, AMediaQueryEndsNoRule) {
  for (const char* const good : {"", "print", "screen and (min-width: 3px), print"}) EXPECT_TRUE(IsMediaQuery(good));
  for (const char* const bad : {"print{}", "print;", "(print", "print /* x", "'print", "print}"})
    EXPECT_FALSE(IsMediaQuery(bad)) << bad;
}

TEST(ScopedStyles, BackgroundsAreTakenOutOfAStyle) {
  QString style = "color:red; Background-Image:url(\"a;b\"); font-size:2";
  EXPECT_EQ("Background-Image:url(\"a;b\");", TakeBackground(style).toStdString());
  EXPECT_EQ("color:red;font-size:2;", style.toStdString());
}

}  // namespace
