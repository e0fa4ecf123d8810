#include "PageText.h"

#include <gtest/gtest.h>

#include "HtmlLexer.h"

namespace {

QString FromUtf8(const char* text) {
  return QString::fromUtf8(text);
}

QString Text(const char* text) {
  QString page;
  AppendPageText(page, FromUtf8(text), PagePart::Text);
  return page;
}
QString Value(const char* text) {
  QString page;
  AppendPageText(page, FromUtf8(text), PagePart::Value);
  return page;
}
QByteArray Source(const char* source, const char* encoding = "") {
  return SourceFileBytes(FromUtf8(source), encoding);
}

TEST(PageText, WhatLiesAboveAsciiIsADecimalReference) {
  EXPECT_EQ(Text("P\u00E1gina \U0001F436\u20AC\x7F"), "P&#225;gina &#128054;&#8364;&#127;");
  EXPECT_EQ(Value("M\u00FCller\uFEFF.gif"), "M&#252;ller&#65279;.gif");
  EXPECT_EQ(Text("a\u00A0b"), "a&nbsp;b");
  EXPECT_EQ(Text("a<b>&\"'"), "a&lt;b&gt;&amp;\"'");
  EXPECT_EQ(Value("a<b>&\"'"), "a<b>&amp;&quot;'");
}

TEST(PageText, ControlsAreReferences) {
  EXPECT_EQ(Text("a\rb\x01\x1B\fc\td\ne"), "a&#13;b&#1;&#27;&#12;c\td\ne");
  EXPECT_EQ(Value("a\rb"), "a&#13;b");
}

TEST(PageText, AControlWhoseReferenceMeansAnotherCharacterStays) {
  EXPECT_EQ(Text("a\u0085\u0080\u009F"), FromUtf8("a\u0085\u0080\u009F"));
}

TEST(PageText, HalfACharacterIsAReplacementAndNoQuestionMark) {
  QString page;
  AppendPageText(page, QString("a") + QChar(0xD800) + "b" + QChar(0xDC00) + QChar(0), PagePart::Text);
  EXPECT_EQ(page, "a&#65533;b&#65533;&#65533;");
}

// A line of one "." would end the message in which the page is sent.
TEST(PageText, ADotBesideALineEndIsAReference) {
  EXPECT_EQ(Text("a.\n.b.c\n..\n."), "a&#46;\n&#46;b.c\n&#46;&#46;\n&#46;");
  EXPECT_EQ(Text(".a."), ".a.");
  QString page;
  AppendPageText(page, u"a.", PagePart::Text);
  AppendPageText(page, u"\nb\n", PagePart::Text);
  AppendPageText(page, u".", PagePart::Text);
  EXPECT_EQ(page, "a&#46;\nb\n&#46;") << "over the border of two texts";
}

TEST(PageText, AnAsciiPageIsWrittenAsItStands) {
  const QString page = "<html><head><meta charset=\"iso-8859-1\" /></head></html>";
  EXPECT_EQ(PageFileBytes(page, {}), page.toLatin1());
}

TEST(PageText, APageWithMoreSaysUtf8InItsFirstMeta) {
  const auto file = [](const char* head) { return PageFileBytes(FromUtf8(head) + FromUtf8("<!--\u00E9-->"), {}); };
  const QByteArray rest = "<!--\xC3\xA9-->";
  EXPECT_EQ(file("<html><head><title>t</title>"), "<html><head><meta charset=\"utf-8\" /><title>t</title>" + rest);
  EXPECT_EQ(file("<html><body>"), "<html><meta charset=\"utf-8\" /><body>" + rest);
  EXPECT_EQ(file("<!-- --> <!DOCTYPE html>\n<p>"), "<!-- --> <!DOCTYPE html><meta charset=\"utf-8\" />\n<p>" + rest);
  EXPECT_EQ(file("text"), "<meta charset=\"utf-8\" />text" + rest);
  EXPECT_EQ(file("<head><meta name=\"a\"><meta charset=\"koi8-r\"><meta charset=\"koi8-r\">"),
            "<head><meta name=\"a\"><meta charset=\"utf-8\"><meta charset=\"koi8-r\">" + rest);
  EXPECT_EQ(file("<head><META content='text/html;Charset = x-sjis; a' HTTP-EQUIV=Content-Type>"),
            "<head><META content='text/html;Charset = utf-8; a' HTTP-EQUIV=Content-Type>" + rest);
  EXPECT_EQ(file("<head><meta content=\"a;charset=big5\" charset=big5 http-equiv=content-type>"),
            "<head><meta content=\"a;charset=utf-8\" charset=utf-8 http-equiv=content-type>" + rest);
  EXPECT_EQ(file("<head><meta charset=big5 content=\"a;charset=big5\" http-equiv=content-type>"),
            "<head><meta charset=utf-8 content=\"a;charset=utf-8\" http-equiv=content-type>" + rest)
      << "in either order";
  EXPECT_EQ(file("<head><meta charset=UTF-8>"), "<head><meta charset=UTF-8>" + rest);
}

// Shift_JIS reads U+001A as another control, and ISO-2022-JP takes U+001B for the beginning of Japanese.
TEST(PageText, AControlThatHasNoReferenceIsntLeftToTheEncoding) {
  EXPECT_EQ(Source("<meta charset=shift_jis><!--\x1A-->"), "<meta charset=utf-8><!--\x1A-->");
  EXPECT_EQ(Source("<script>'\x1B$B'</script>"), "<meta charset=\"utf-8\" /><script>'\x1B$B'</script>");
  EXPECT_EQ(Source("<script>\t\n</script>"), "<script>\t\n</script>");
}

TEST(PageText, AMetaThatNobodyReadsIsntWhereItIsSaid) {
  const QString far = "<html><head></head><body>" + QString("<p>x</p>").repeated(200) + "<meta charset=\"koi8-r\">";
  const QByteArray file = PageFileBytes(far + QChar(0xE9), {});
  EXPECT_TRUE(file.startsWith("<html><head><meta charset=\"utf-8\" /></head>"));
  EXPECT_TRUE(file.contains("koi8-r"));
  EXPECT_EQ(DecodePage(file).encoding, "UTF-8");
}

TEST(PageText, APageWhoseQueriesNeedItsEncodingSaysThat) {
  EXPECT_TRUE(DependsOnEncoding(u"HREF", u"a?b=\u00E9"));
  EXPECT_FALSE(DependsOnEncoding(u"href", u"\u00E9?b"));
  EXPECT_FALSE(DependsOnEncoding(u"alt", u"a?\u00E9"));
  EXPECT_EQ(PageFileBytes("<head>", "Shift_JIS"), "<head><meta charset=\"Shift_JIS\" />");
  EXPECT_EQ(PageFileBytes("<head>", "UTF-16LE"), "<head><meta charset=\"utf-8\" />");
  EXPECT_EQ(PageFileBytes("<head>", "windows-1252"), "<head>") << "that is what it is taken for in any case";
  EXPECT_EQ(PageFileBytes("<head><meta charset=\"latin1\">", "windows-1252"), "<head><meta charset=\"latin1\">");
  EXPECT_EQ(PageFileBytes("<head><meta charset=\"big5\">", "windows-1252"), "<head><meta charset=\"windows-1252\">");
  EXPECT_EQ(PageFileBytes("<head>", "replacement"), "<head>");
}

TEST(PageText, TypedSourceIsWrittenAsReferencesOutsideOfRawText) {
  EXPECT_EQ(Source("<p title='\u00E9' alt=\u00E9>\u00E9 &eacute; a & b</p>"),
            "<p title='&#233;' alt=&#233;>&#233; &eacute; a & b</p>");
  EXPECT_EQ(Source("<title>\u00E9</title><textarea>\u00E9</textarea>"),
            "<title>&#233;</title><textarea>&#233;</textarea>");
  EXPECT_EQ(Source("1 < 2 <3> </ \u00E9"), "<meta charset=\"utf-8\" />1 < 2 <3> </ \xC3\xA9")
      << "no tag, and a comment that nothing ends";
  EXPECT_EQ(Source("<!-->\u00E9"), "<!-->&#233;") << "a comment that ends at once";
  EXPECT_EQ(Source("<!--->\u00E9"), "<!--->&#233;");
  EXPECT_EQ(Source("<script><!-- <script> --></script>\u00E9"), "<script><!-- <script> --></script>&#233;")
      << "the comment's end is that of the script within too";
  EXPECT_EQ(Source("<a href='x?\u00E9'>", "KOI8-R"), "<meta charset=\"KOI8-R\" /><a href='x?&#233;'>");
  EXPECT_EQ(Source("<a title=\"<script>\">\u00E9"), "<a title=\"<script>\">&#233;");
  for (const char* raw : {"<script>\u00E9</script>", "<script><!-- <script>\u00E9</script> \u00E9 --></script>",
                          "<style>\u00E9</style>", "<!--\u00E9-->", "<xmp>\u00E9</xmp>", "<noscript>\u00E9</noscript>",
                          "<plaintext>\u00E9</p>", "<!x \u00E9>", "<?\u00E9?>", "<svg><![CDATA[>\u00E9]]></svg>",
                          "<svg><title><!--\u00E9--></title></svg>", "<b \u00E9=1>", "<iframe>\u00E9</iframe>"}) {
    const QByteArray file = Source(raw);
    EXPECT_TRUE(file.contains("\xC3\xA9")) << raw;
    EXPECT_TRUE(file.contains("<meta charset=\"utf-8\" />")) << raw;
  }
}

TEST(PageText, PagesAreReadAsABrowserReadsThem) {
  const auto read = [](const QByteArray& bytes) {
    const PageContent content = DecodePage(bytes);
    return content.encoding + ": " + content.text;
  };
  EXPECT_EQ(read("abc"), "windows-1252: abc");
  EXPECT_EQ(read(""), "windows-1252: ");
  EXPECT_EQ(read("\xC3\xA9"), FromUtf8("UTF-8: \u00E9"));
  EXPECT_EQ(read("\xE9"), FromUtf8("windows-1252: \u00E9"));
  EXPECT_EQ(read("a\xC3"), FromUtf8("windows-1252: a\u00C3")) << "cut off in the middle it isn't UTF-8";
  EXPECT_EQ(read("\x80\x93\xFF"), FromUtf8("windows-1252: \u20AC\u201C\u00FF"));
  EXPECT_EQ(read("\xEF\xBB\xBF\xEF\xBB\xBF\xC3\xA9"), FromUtf8("UTF-8: \uFEFF\u00E9"));
  EXPECT_EQ(read(QByteArray("\xFF\xFE"
                            "a\0b\0",
                            6)),
            "UTF-16LE: ab");
  EXPECT_EQ(read(QByteArray("\xFE\xFF\0a\0b", 6)), "UTF-16BE: ab");
  EXPECT_EQ(read("\xEF\xBB\xBF<meta charset=koi8-r>\xC3\xA9"), FromUtf8("UTF-8: <meta charset=koi8-r>\u00E9"));
  EXPECT_EQ(read("<meta charset=windows-1251>\xFF"), FromUtf8("windows-1251: <meta charset=windows-1251>\u044F"));
  EXPECT_EQ(read("<meta charset=sjis>\x83\x5C"), FromUtf8("Shift_JIS: <meta charset=sjis>\u30BD"));
  EXPECT_EQ(read("<meta charset=gb2312>\x81\x40"), FromUtf8("GBK: <meta charset=gb2312>\u4E02"));
  EXPECT_EQ(read("<meta charset=utf-16>\xC3\xA9"), FromUtf8("UTF-8: <meta charset=utf-16>\u00E9"));
  EXPECT_EQ(read("<meta charset=utf-16be>\xC3\xA9"), FromUtf8("UTF-8: <meta charset=utf-16be>\u00E9"));
  EXPECT_EQ(read("<meta charset=nonsense><meta charset=koi8-u>\xD1"),
            FromUtf8("KOI8-U: <meta charset=nonsense><meta charset=koi8-u>\u044F"));
  EXPECT_EQ(read("<meta charset=utf-8>\xE9!"), FromUtf8("UTF-8: <meta charset=utf-8>\uFFFD!"));
  EXPECT_EQ(read("<meta http-equiv=refresh content='0;charset=big5'>\xE9"),
            FromUtf8("windows-1252: <meta http-equiv=refresh content='0;charset=big5'>\u00E9"));
}

TEST(PageText, WhereAMetaIsLookedFor) {
  const QString meta = "<meta charset=koi8-r>";
  const QString filling = QString("x").repeated(1100);
  EXPECT_EQ(EncodingSaid(meta), "KOI8-R");
  EXPECT_EQ(EncodingSaid(u"<meta charset=' \tkoi8-r '>"), "KOI8-R");
  const QString content = "<meta http-equiv=content-type content='text/html; charset=%1'>";
  EXPECT_EQ(EncodingSaid(content.arg("\"koi8-r\" x")), "KOI8-R");
  EXPECT_EQ(EncodingSaid(content.arg("\"koi8-r")), "") << "a quote that nothing ends";
  EXPECT_EQ(EncodingSaid("<body>" + meta), "KOI8-R");
  EXPECT_EQ(EncodingSaid("<!--" + meta + "-->"), "");
  EXPECT_EQ(EncodingSaid("<script>'" + meta + "'</script>"), "");
  EXPECT_EQ(EncodingSaid("<noscript>" + meta + "</noscript>"), "KOI8-R");
  EXPECT_EQ(EncodingSaid("<head><style>" + filling + "</style>" + meta), "KOI8-R") << "HEAD to its end";
  EXPECT_EQ(EncodingSaid("<head></head><body>" + filling + "<p>" + meta), "");
  EXPECT_EQ(EncodingSaid("<body>" + filling.left(1017) + meta), "KOI8-R");
  EXPECT_EQ(EncodingSaid("<body>" + filling.left(1018) + meta), "") << "behind 1024 characters";
}

TEST(PageText, NamesAreReadInEveryFormThatAPageMayHold) {
  EXPECT_EQ(DecodePageName("M&#252;ller.gif"), FromUtf8("M\u00FCller.gif"));
  EXPECT_EQ(DecodePageName("&#x718A;.gif"), FromUtf8("\u718A.gif"));
  EXPECT_EQ(DecodePageName("&#128054;&#128;&#150&nbsp;"), FromUtf8("\U0001F436\u20AC\u2013\u00A0"));
  EXPECT_EQ(DecodePageName("&#252;\xC3\xA9"), FromUtf8("\u00FC\u00E9"));
  EXPECT_EQ(DecodePageName("&#252;\xE9"), FromUtf8("\u00FC\u00E9"));
  EXPECT_EQ(DecodePageName("\xE7\x8C\xAB.gif"), FromUtf8("\u732B.gif"));
  EXPECT_EQ(DecodePageName("\xE9.gif"), FromUtf8("\u00E9.gif"));
  EXPECT_EQ(DecodePageName("\x80\x8E\x94.gif"), FromUtf8("\u20AC\u017D\u201D.gif"));
  EXPECT_EQ(DecodePageName("\xE7\x8C"), FromUtf8("\u00E7\u0152")) << "cut off in the middle of a character";
  EXPECT_EQ(DecodePageName("\xC0\x80"), FromUtf8("\u00C0\u20AC")) << "an overlong form";
  EXPECT_EQ(DecodePageName(""), "");
  EXPECT_EQ(DecodePageName("&#;&#x;&#1114112;&#55296;&"), FromUtf8("&#;&#x;\uFFFD\uFFFD&"));
}

// A picture "a&b.gif" is never found by the list of names, and that is meant.
// Meant in DecodePageName: "&amp;" in a name stays as it is, so a picture "a&b.gif" is never found by the list of
// names.
TEST(PageText, ReferencesBelowStayAsTheyAre) {
  EXPECT_EQ(DecodePageName("a&amp;b&#38;&#46;gif"), "a&amp;b&#38;&#46;gif");
  EXPECT_EQ(DecodePageName("&#125;&#126;&#127;"), "&#125;&#126;\x7F");
}

TEST(PageText, ANameComesBackFromEveryFormThatItIsGiven) {
  for (const char* name : {"cat.gif", "M\u00FCller.gif", "stra\u00DFe.gif", "\u5199\u771F.png", "\U0001F436.jpg"})
    for (const QByteArray& form : PageNameForms(FromUtf8(name)))
      if (!form.contains('?')) {
        EXPECT_EQ(DecodePageName(form), FromUtf8(name)) << form.constData();
      }
  EXPECT_EQ(PageNameForms("cat.gif"), QList<QByteArray>{"cat.gif"});
}

// Meant in PageNameForms: a picture with "&" in its name, which pages write as "&amp;", isn't found in them.
TEST(PageText, AnAmpersandOfANameIsNotLookedForAsPagesWriteIt) {
  EXPECT_EQ(PageNameForms("a&b.gif"), QList<QByteArray>{"a&b.gif"});
  EXPECT_EQ(PageNameForms("a&amp;b.gif"), QList<QByteArray>{"a&amp;b.gif"});
}

TEST(PageText, TypedTextIsWrittenWithItsMarkup) {
  EXPECT_EQ(EncodePageText("plain <b>&amp;"), "plain <b>&amp;");
  EXPECT_EQ(EncodePageText(FromUtf8("P\u00E1gina")), "P&#225;gina");
  EXPECT_EQ(EncodePageText(""), "");
}

// How each piece ends, told by what stands behind it.
TEST(HtmlLexer, PiecesEndWhereABrowserEndsThem) {
  const auto behind = [](const char* html) {
    const QString text = QString::fromUtf8(html);
    HtmlLexer lexer(text);
    HtmlPiece piece;
    lexer.Next(piece);
    if (piece.kind == HtmlPiece::Kind::StartTag) lexer.Next(piece);
    return text.mid(piece.to);
  };
  EXPECT_EQ(behind("<!--a--!>x-->"), "x-->");
  EXPECT_EQ(behind("<!--->x-->"), "x-->");
  EXPECT_EQ(behind("<script><!--<script></script>--></script>x"), "</script>x");
  EXPECT_EQ(behind("<script><!--<script>--></script>x"), "</script>x");
  EXPECT_EQ(behind("<script><!--><script></script>x"), "</script>x");
  EXPECT_EQ(behind("<noembed><b></noembed>x"), "</noembed>x");
}

TEST(HtmlLexer, AnEqualsSignMayBeginAnAttributesName) {
  const QString text = "<p =a=b>";
  HtmlLexer lexer(text);
  HtmlPiece piece;
  ASSERT_TRUE(lexer.Next(piece));
  ASSERT_EQ(piece.attributes.size(), 1U);
  EXPECT_EQ(piece.attributes[0].name, u"=a");
}

TEST(PageText, OtherLineEndsThanATextBoxKnowsAreReferences) {
  EXPECT_EQ(SourceToEdit(FromUtf8("a\u2028b\u2029c\rd\n")), "a&#8232;b&#8233;c&#13;d\n");
}

// Whatever a text is made of, its pieces one behind the other are that text.
TEST(HtmlLexer, ThePiecesAreTheWholeText) {
  static const char* const parts[] = {"<",          ">",           "</",      "<!--",       "-->",   "--!>",      "<!",
                                      "<?",         "a",           "=",       "\"",         "'",     " ",         "/",
                                      "<script>",   "</script>",   "<title>", "<b",         "<svg>", "<![CDATA[", "]]>",
                                      "<textarea>", "</textarea>", "\n",      "<plaintext>"};
  unsigned random = 1;
  for (int round = 0; round < 20000; ++round) {
    QString html;
    for (int count = 0; count < 12; ++count) {
      random = random * 1103515245u + 12345u;
      html += QLatin1String(parts[(random >> 16) % std::size(parts)]);
    }
    HtmlLexer lexer(html);
    HtmlPiece piece;
    qsizetype at = 0;
    while (lexer.Next(piece)) {
      ASSERT_EQ(piece.from, at) << html.toStdString();
      ASSERT_GT(piece.to, piece.from) << html.toStdString();
      for (const HtmlPiece::Attribute& attribute : piece.attributes)
        ASSERT_TRUE(piece.from < attribute.from && attribute.from <= attribute.to && attribute.to <= piece.to)
            << html.toStdString();
      at = piece.to;
    }
    ASSERT_EQ(at, html.size()) << html.toStdString();
  }
}

}  // namespace
