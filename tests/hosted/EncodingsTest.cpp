// Pages in the encodings of the world: loaded by the engine, saved, and loaded again, time after time.
#include <gtest/gtest.h>

#include <QFile>
#include <QStringEncoder>

#include "HostedPage.h"
#include "Serializer.h"

namespace {

const QByteArray dot(
    "GIF89a\x01\0\x01\0\x80\0\0\xff\xff\xff\0\0\0,\0\0\0\0\x01\0\x01\0\0\x02\x02"
    "D\x01\0;",
    35);

struct Encoding {
  const char* label;    // as a page says it
  const char* codec;    // as the system's tables know it
  const char* letters;  // that it has
};

constexpr Encoding encodings[] = {
    {"utf-8", "UTF-8", "Gr\u00FC\u00DFe \u5199\u771F \U0001F389"},
    {"iso-8859-1", "ISO-8859-1", "Gr\u00FC\u00DFe caf\u00E9"},
    {"windows-1252", "windows-1252", "\u201Ccaf\u00E9\u201D 5 \u20AC"},
    {"iso-8859-15", "ISO-8859-15", "\u0153uvre 5 \u20AC"},
    {"iso-8859-2", "ISO-8859-2", "Za\u017C\u00F3\u0142\u0107"},
    {"windows-1250", "windows-1250", "g\u0119\u015Bl\u0105 ja\u017A\u0144"},
    {"windows-1251", "windows-1251", "\u041F\u0440\u0438\u0432\u0435\u0442"},
    {"koi8-r", "KOI8-R", "\u041C\u043E\u0441\u043A\u0432\u0430"},
    {"iso-8859-7", "ISO-8859-7", "\u039A\u03B1\u03BB\u03B7\u03BC\u03AD\u03C1\u03B1"},
    {"windows-1254", "windows-1254", "\u0130stanbul \u0131\u011F"},
    {"windows-1255", "windows-1255", "\u05E9\u05DC\u05D5\u05DD"},
    {"windows-1256", "windows-1256", "\u0645\u0631\u062D\u0628\u0627"},
    {"windows-1257", "windows-1257", "\u0105\u017Euolas"},
    {"windows-874", "windows-874", "\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35"},
    {"shift_jis", "Shift_JIS", "\u8868\u793A\u30BD\u30D5\u30C8"},
    {"euc-jp", "EUC-JP", "\u65E5\u672C\u8A9E"},
    {"iso-2022-jp", "ISO-2022-JP", "\u5199\u771F"},
    {"gb18030", "GB18030", "\u4F60\u597D\u4E16\u754C"},
    {"big5", "Big5", "\u8A31\u529F \u4E2D\u6587"},
    {"euc-kr", "EUC-KR", "\uC548\uB155"},
    {"utf-16le", "UTF-16LE", "\u5199\u771F \u00E9"},
    {"utf-16be", "UTF-16BE", "\u5199\u771F \u00E9"},
};

QByteArray Encoded(const QString& page, const Encoding& encoding) {
  QStringEncoder encoder(encoding.codec);
  EXPECT_TRUE(encoder.isValid()) << encoding.codec;
  QByteArray bytes = encoder(page);
  if (qstrncmp(encoding.codec, "UTF-16", 6) == 0)
    bytes.prepend(qstrcmp(encoding.codec, "UTF-16LE") == 0 ? "\xFF\xFE" : "\xFE\xFF");
  return bytes;
}

// The letters wherever a page may have them.
QString PageWith(const QString& letters, const QString& head) {
  return QStringLiteral(
             "<html><head>%2<title>%1</title><meta name=\"d\" content=\"%1\"><style>p:after{content:\"%1\"}</style>"
             "<script>var s = \"%1\";</script></head><body><!-- %1 --><p id=\"p\" title=\"%1\" "
             "style=\"quotes:'%1'\">%1</p><img id=\"i\" src=\"%1.gif\" alt=\"%1\"><a href=\"%1.html?q=%1\">%1</a>"
             "<pre id=\"r\">\n\n%1</pre><textarea>\n\n%1</textarea><noscript>%1</noscript>"
             "<form><input value=\"%1\"></form></body></html>")
      .arg(letters, head);
}

QString WithoutMeta(QString html) {
  const qsizetype from = html.indexOf(QLatin1String("<meta charset"));
  return from < 0 ? html : html.remove(from, html.indexOf(u'>', from) + 1 - from);
}

QString PictureWidth(HostedPage& hosted) {
  return hosted.ScriptText(QStringLiteral("String(document.getElementById('i').naturalWidth)"));
}

}  // namespace

TEST(Encodings, FiveTimesThroughTheFileChangeNoLetterAnywhere) {
  HostedPage hosted;
  for (const Encoding& encoding : encodings) {
    SCOPED_TRACE(encoding.label);
    const QString letters = QString::fromUtf8(encoding.letters);
    hosted.File(letters + QLatin1String(".gif"), dot);
    const QString page = PageWith(letters, QStringLiteral("<meta charset=\"%1\">").arg(QLatin1String(encoding.label)));
    ASSERT_TRUE(hosted.LoadHtml(Encoded(page, encoding)));
    const QString loaded = WithoutMeta(hosted.ModelHtml());
    // What was written comes back with its letters in every place but the two that are told apart here.
    EXPECT_EQ(loaded.count(letters), page.count(letters));
    EXPECT_EQ(WithoutMeta(hosted.LiveHtml()), loaded);
    EXPECT_EQ(PictureWidth(hosted), QLatin1String("1"));
    QByteArray saved = FileHtml(hosted.document().tree());
    for (int cycle = 0; cycle < 5; ++cycle) {
      ASSERT_TRUE(hosted.LoadHtml(saved)) << cycle;
      EXPECT_EQ(WithoutMeta(hosted.ModelHtml()), loaded) << cycle;
      EXPECT_EQ(PictureWidth(hosted), QLatin1String("1")) << cycle;
      const QByteArray again = FileHtml(hosted.document().tree());
      EXPECT_EQ(again, saved) << cycle;
      saved = again;
    }
  }
}

// Without any word of its encoding a page is what the engine takes it for, and stays that.
TEST(Encodings, AGuessedPageStaysWhatItWasTakenFor) {
  HostedPage hosted;
  for (const Encoding& encoding : encodings) {
    SCOPED_TRACE(encoding.label);
    ASSERT_TRUE(hosted.LoadHtml(Encoded(PageWith(QString::fromUtf8(encoding.letters), {}), encoding)));
    const QString loaded = hosted.ModelHtml();
    QByteArray saved = FileHtml(hosted.document().tree());
    for (int cycle = 0; cycle < 2; ++cycle) {
      ASSERT_TRUE(hosted.LoadHtml(saved));
      EXPECT_EQ(WithoutMeta(hosted.ModelHtml()), loaded);
      EXPECT_EQ(FileHtml(hosted.document().tree()), saved);
    }
  }
}

// What no encoding holds, and what says one and holds another.
TEST(Encodings, BrokenBytesAreLoadedAsTheEngineLoadsThemAndLoseNothingMore) {
  HostedPage hosted;
  const QByteArray text = "<p title=\"\xC3\xA9\">\xC3\xA9\xE9\xFF\x81\x80 abc</p><!--\xE9-->";
  const QByteArray pages[] = {
      "<meta charset=utf-8>" + text,
      "<meta charset=shift_jis>" + text,
      "<meta charset=iso-2022-jp>\x1B$B" + text,
      "<meta charset=iso-2022-kr>" + text,
      "<meta charset=nonsense>" + text,
      "<meta charset=koi8-r><meta charset=utf-8>" + text,
      "<meta charset=utf-16>" + text,
      "<meta charset=x-user-defined>" + text,
      QByteArray("<\0h\0t\0m\0l\0>\0a\0\xE9\0", 16),
      QByteArray("a\0b<p title='\0'>\0c<script>\0</script><!--\0-->", 43) + text,
      "\xEF\xBB\xBF<meta charset=koi8-r>" + text,
      "<p>~{VPND~} +AGE- \x1B$BF|K\\\x1B(B</p><script>'~{VPND~}'</script>",
  };
  for (const QByteArray& page : pages) {
    SCOPED_TRACE(page.left(40).toStdString());
    ASSERT_TRUE(hosted.LoadHtml(page));
    const QString loaded = WithoutMeta(hosted.ModelHtml());
    EXPECT_EQ(WithoutMeta(hosted.LiveHtml()), loaded);
    const QByteArray saved = FileHtml(hosted.document().tree());
    ASSERT_TRUE(hosted.LoadHtml(saved));
    EXPECT_EQ(WithoutMeta(hosted.ModelHtml()), loaded);
    EXPECT_EQ(FileHtml(hosted.document().tree()), saved);
  }
}

TEST(Encodings, TenMegabytesOnOneLineComeBack) {
  HostedPage hosted;
  // Hidden, as the engine takes longer to lay out such a line than for all the rest.
  ASSERT_TRUE(hosted.LoadHtml("<meta charset=iso-8859-1><p hidden title=\"\xE9\">" + QByteArray(10'000'000, '\xFC')));
  const QString loaded = hosted.ModelHtml();
  EXPECT_GT(loaded.size(), 10'000'000);
  const QByteArray saved = FileHtml(hosted.document().tree());
  ASSERT_TRUE(hosted.LoadHtml(saved));
  EXPECT_EQ(hosted.ModelHtml() == loaded, true);
  EXPECT_EQ(FileHtml(hosted.document().tree()) == saved, true);
}

// The reader of messages takes U+FEFF for a byte order mark where a text begins with it.
TEST(Encodings, AByteOrderMarkInsideOfAPageIsACharacter) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml("<p id=p title='&#xFEFF;x'>&#xFEFF;&#xFEFF;y</p><i title='&#1;a'>&#1;b</i>"));
  const QString mark = QChar(0xFEFF);
  EXPECT_EQ(hosted.document().tree().bodyNode()->firstChild()->firstChild()->data(), mark + mark + u'y');
  EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml());
  // Also where a script writes it.
  hosted.Script(QStringLiteral("p.firstChild.data = '\\uFEFFz'; p.title = '\\uFEFF'; p.lang = '\\u0001'"));
  EXPECT_TRUE(HostedPage::WaitFor([&] { return hosted.ModelHtml().contains(mark + u'z'); }));
  EXPECT_TRUE(HostedPage::WaitFor([&] { return hosted.ModelHtml() == hosted.LiveHtml(); }));
  // And the other way, what the program writes.
  hosted.document().gateway().ReplaceData(hosted.document().tree().bodyNode()->firstChild()->firstChild(), 0, 1,
                                          mark + mark);
  EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml());
}

// Trees that come of a start tag in the wrong place, and are written so that it comes there again.
TEST(Encodings, WhatStandsInFrontOfATableStandsThereAgain) {
  HostedPage hosted;
  for (const char* page :
       {"<a href=1>a<table><a href=2>b</a></table>c</a>", "<p>a<table><p>b</p></table>c", "<li>a<table><li>b</table>",
        "<h1>a<table><h2>b</h2></table></h1>", "<table><plaintext>a<b>", "<nobr>a<table><nobr>b</table>",
        "<form id=a><div><input></form><form id=b><input>x</div>y</form>",
        "<form id=a><div></form><p><form id=b><input></form></div>",
        "<button>a<table><button>b</button></table></button>"}) {
    SCOPED_TRACE(page);
    ASSERT_TRUE(hosted.LoadHtml(page));
    const QString loaded = hosted.LiveHtml();
    const QByteArray saved = FileHtml(hosted.document().tree());
    ASSERT_TRUE(hosted.LoadHtml(saved));
    EXPECT_EQ(hosted.LiveHtml(), loaded);
    EXPECT_EQ(FileHtml(hosted.document().tree()), saved);
  }
}

TEST(Encodings, AFormAmongTheRowsOfATableKeepsItsFields) {
  HostedPage hosted;
  ASSERT_TRUE(
      hosted.LoadHtml("<table><form id=f><tr><td><input id=a></td></tr></form></table><input id=b><form id=g></form>"));
  const QString owners = QStringLiteral("[a, b].map(e => e.form ? e.form.id : '-').join()");
  EXPECT_EQ(hosted.ScriptText(owners), QLatin1String("f,-"));
  ASSERT_TRUE(hosted.LoadHtml(FileHtml(hosted.document().tree())));
  EXPECT_EQ(hosted.ScriptText(owners), QLatin1String("f,-"));
}
