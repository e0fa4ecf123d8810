#include <gtest/gtest.h>

#include <QTextDocument>
#include <cmath>

#include "AsciiText.h"
#include "CodePage.h"
#include "Colors.h"
#include "Numbers.h"
#include "PlainTip.h"
#include "Twips.h"

namespace {

TEST(RoundEven, HalvesGoToTheEvenNumber) {
  EXPECT_EQ(2, RoundEven(2.5));
  EXPECT_EQ(4, RoundEven(3.5));
  EXPECT_EQ(-2, RoundEven(-2.5));
  EXPECT_EQ(25, RoundEven(24.75));
  EXPECT_EQ(0, RoundEven(0.5));
}

TEST(CodePage, IsLatinToItsLastByteWithSignsOfItsOwnBetween) {
  EXPECT_EQ("\x7F\xA0\xFF", ToCodePage(QString::fromUtf8("\u007F\u00A0\u00FF")));
  EXPECT_EQ("\x80\x9F\x81", ToCodePage(QString::fromUtf8("\u20AC\u0178\u0081")));
  EXPECT_EQ("????", ToCodePage(QString::fromUtf8("\u0080\u0100\u732B\U0001F431")));
  EXPECT_EQ(QString::fromUtf8("\u007F\u20AC\u0178\u00A0\u00FF"), FromCodePage("\x7F\x80\x9F\xA0\xFF"));
}

TEST(IsNumeric, TakesTheFormsOfANumber) {
  for (const char* text : {"0", "12", " 12 ", "+5", "-5", "1.5", ".5", "5.", "1e3", "1E+3", "1d3", "1D-3", "-.5e2"}) {
    EXPECT_TRUE(IsNumeric(text)) << text;
  }
}

TEST(IsNumeric, RefusesEverythingElse) {
  for (const char* text : {"",   " ",  ".",   "+",    "-",   "1,5", "1 2", "1.2.3", "abc",   "12a", "50%",
                           "e3", "1e", "1e+", "0x10", "--1", "- 1", "inf", "nan",   "1e3.5", "\t1", "1\n"}) {
    EXPECT_FALSE(IsNumeric(text)) << text;
  }
  EXPECT_FALSE(IsNumeric(QString::fromUtf8("\u0661")));
  EXPECT_FALSE(IsNumeric(QString::fromUtf8("\u00A05")));
}

TEST(NumericValue, ReadsEitherExponent) {
  EXPECT_EQ(1500.0, NumericValue(" 1.5D3 ").value_or(-1));
  EXPECT_EQ(0.0015, NumericValue("1.5e-3").value_or(-1));
  EXPECT_EQ(-7.0, NumericValue("-7").value_or(-1));
  EXPECT_TRUE(std::isinf(NumericValue("1e999").value_or(-1)));
  EXPECT_FALSE(NumericValue("x"));
}

TEST(ToInteger16, RoundsAndRefusesWhatDoesNotFit) {
  EXPECT_EQ(2, ToInteger16("2.5").value_or(-1));
  EXPECT_EQ(32767, ToInteger16("32767.4").value_or(-1));
  EXPECT_EQ(-32768, ToInteger16("-32768").value_or(-1));
  EXPECT_FALSE(ToInteger16("32767.5"));
  EXPECT_FALSE(ToInteger16("1e999"));
  EXPECT_FALSE(ToInteger16(""));
}

TEST(ToInteger32, HoldsSignedColours) {
  EXPECT_EQ(-2147483647 - 1, ToInteger32("-2147483648").value_or(-1));
  EXPECT_EQ(2147483647, ToInteger32("2147483647").value_or(-1));
  EXPECT_FALSE(ToInteger32("2147483648"));
}

TEST(Twips, FifteenToThePixel) {
  EXPECT_EQ(1, TwipsToPixels(15));
  EXPECT_EQ(17, TwipsToPixels(260));
  EXPECT_EQ(51, TwipsToPixels(770));
  EXPECT_EQ(27, TwipsToPixels(400));
  EXPECT_EQ(0, TwipsToPixels(7.5));
  EXPECT_EQ(2, TwipsToPixels(22.5));
  EXPECT_EQ(-1, TwipsToPixels(-15));
  EXPECT_EQ(255, PixelsToTwips(17));
}

TEST(AsciiText, CapitalsOfAsciiLettersOnly) {
  const QString text = QString::fromUtf8("az\u0131i\u00E9\u00DF{`");
  EXPECT_EQ(QString::fromUtf8("AZ\u0131I\u00E9\u00DF{`"), UpperAscii(text));
  EXPECT_EQ(QByteArray("A\xE9Z"), UpperAscii(QByteArray("a\xE9z")));
}

TEST(AsciiText, FindsTheFirstMatchInAnyCase) {
  EXPECT_EQ(2, FindNoCase(QByteArray("x<SrC=src="), QByteArray("src=")));
  EXPECT_EQ(6, FindNoCase(QByteArray("x<SrC=src="), QByteArray("SRC="), 3));
  EXPECT_EQ(-1, FindNoCase(QByteArray("abc"), QByteArray("abcd")));
  EXPECT_EQ(-1, FindNoCase(QByteArray("abc"), QByteArray("b"), 99));
  EXPECT_EQ(1, FindNoCase(QByteArray("abc"), QByteArray(), 1));
  EXPECT_EQ(-1, FindNoCase(QString::fromUtf8("\u0130"), QString("i")));
  EXPECT_EQ(-1, FindNoCase(QString::fromUtf8("\u00E9"), QString::fromUtf8("\u00C9")));
  EXPECT_TRUE(EqualsNoCase("Project1", "pROJECT1"));
  EXPECT_FALSE(EqualsNoCase("Project1", "Project1 "));
}

TEST(AsciiText, TrimCutsBlanksAndNothingElse) {
  EXPECT_EQ("a b", TrimBlanks(QString("  a b ")));
  EXPECT_EQ("\t a", TrimBlanks(QString("\t a ")));
  EXPECT_EQ("\r\n", TrimBlanks(QString(" \r\n ")));
  EXPECT_EQ(QString(QChar(0xA0)), TrimBlanks(QString(QChar(0xA0))));
  EXPECT_EQ("", TrimBlanks(QString("   ")));
  EXPECT_EQ(QByteArray("x"), TrimBlanks(QByteArray(" x")));
}

TEST(ColorToHtml, PutsRedFirst) {
  EXPECT_EQ("#FF0000", ColorToHtml(255));
  EXPECT_EQ("#0000FF", ColorToHtml(16711680));
  EXPECT_EQ("#000000", ColorToHtml(0));
  EXPECT_EQ("#E1E1E1", ColorToHtml(0xE1E1E1));
  EXPECT_EQ("#563412", ColorToHtml(0x7F123456));
}

// Meant in ColorToHtml: a system colour reads as black.
TEST(ColorToHtml, EveryNegativeNumberIsBlack) {
  EXPECT_EQ("#000000", ColorToHtml(-1));
  EXPECT_EQ("#000000", ColorToHtml(static_cast<qint32>(0x800000FF)));
  EXPECT_EQ("#000000", ColorToHtml(-2147483647 - 1));
}

TEST(HtmlToColor, ReadsEitherCaseWithAndWithoutTheSign) {
  EXPECT_EQ(255, HtmlToColor("#FF0000"));
  EXPECT_EQ(16711680, HtmlToColor("#0000ff"));
  EXPECT_EQ(16777215, HtmlToColor("FFFFFF"));
  EXPECT_EQ(65535, HtmlToColor("#FFFF00"));
}

// Meant in HtmlToColor: a short text is filled on the left, so "#FF" is blue.
TEST(HtmlToColor, ShortTextsAreFilledOnTheLeft) {
  EXPECT_EQ(16711680, HtmlToColor("#FF"));
  EXPECT_EQ(16711680, HtmlToColor("FF"));
  EXPECT_EQ(0xCCBB0A, HtmlToColor("#ABBCC"));
}

TEST(HtmlToColor, OfALongTextTheLastSixCharactersCount) {
  EXPECT_EQ(0x785634, HtmlToColor("#12345678"));
  EXPECT_EQ(255, HtmlToColor("zzFF0000"));
}

// Meant in HtmlToColor: the name of a colour reads as black.
TEST(HtmlToColor, NamesGiveBlack) {
  EXPECT_EQ(0, HtmlToColor("red"));
  EXPECT_EQ(0, HtmlToColor("black"));
  EXPECT_EQ(0, HtmlToColor("#12345G"));
  EXPECT_EQ(0, HtmlToColor("#-12345"));
  EXPECT_EQ(0, HtmlToColor("##FF0000#"));
  EXPECT_EQ(0, HtmlToColor(""));
  EXPECT_EQ(0, HtmlToColor("#"));
  EXPECT_EQ(0, HtmlToColor("F"));
}

TEST(PlainTip, ShowsMarkupAsItIs) {
  for (const char* text : {"x<b>y</b>", "a&amp;b", "C:\\<new>\\a.gif", "two\nlines"}) {
    ASSERT_TRUE(Qt::mightBeRichText(PlainTip(text))) << text;
    QTextDocument shown;
    shown.setHtml(PlainTip(text));
    EXPECT_EQ(text, shown.toPlainText());
  }
  EXPECT_EQ("", PlainTip(""));
}

}  // namespace
