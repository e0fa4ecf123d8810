// What a message is made of: base64, the page's quoting and wrapping, picture parts, and both forms of the whole.
#include <gtest/gtest.h>

#include <QRegularExpression>

#include "Base64.h"
#include "HtmlBody.h"
#include "MessageComposer.h"
#include "OneLine.h"
#include "TestPlatform.h"

namespace {

QByteArray OfFile(const QByteArray& bytes) {
  TestProgram test;
  EXPECT_TRUE(PutFile(test.WorkFile("a.gif"), bytes));
  QByteArray text;
  AppendBase64OfFile(text, test.WorkFile("a.gif"), LineBreaks::Every76);
  return text;
}

// Meant in EncodeBase64: up to 76 bytes stand on one line, however long it gets.
TEST(Base64, UpTo76BytesStandOnOneLineOfUpTo104Characters) {
  for (const int size : {57, 58, 76}) EXPECT_FALSE(OfFile(QByteArray(size, 'x')).contains('\n')) << size;
  EXPECT_EQ(104, OfFile(QByteArray(76, 'x')).size());
  EXPECT_EQ(76, OfFile(QByteArray(77, 'x')).indexOf("\r\n"));
}

TEST(Base64, LinesAreBrokenAfter76Characters) {
  const QList<QByteArray> lines = OfFile(QByteArray(100, 'x')).split('\n');
  ASSERT_EQ(2, lines.size());
  EXPECT_EQ(77, lines[0].size());
  EXPECT_EQ(60, lines[1].size());
}

// Meant in EncodeBase64: two NUL characters stand behind a last line that is full.
TEST(Base64, AFullLastLineLeavesTwoNulsBehindIt) {
  const QByteArray text = OfFile(QByteArray(228, 'x'));
  EXPECT_EQ(304 + 3 * 2 + 2, text.size());
  EXPECT_EQ(2, text.count('\0'));
  EXPECT_TRUE(text.endsWith(QByteArray("\0\0", 2)));
  EXPECT_EQ(3, text.count("\r\n"));
  for (int size = 77; size < 400; ++size)
    EXPECT_EQ((size + 2) / 3 % 19 == 0 ? 2 : 0, OfFile(QByteArray(size, 'x')).count('\0')) << size;
}

TEST(Base64, IsWhatOthersMakeOfTheSameBytes) {
  QByteArray bytes;
  for (int size = 0; size < 600; ++size) {
    EXPECT_EQ(bytes.toBase64(), EncodeBase64(bytes, LineBreaks::None)) << size;
    QByteArray broken = EncodeBase64(bytes, LineBreaks::Every76);
    EXPECT_EQ(bytes.toBase64(), broken.replace("\r\n", "").replace('\0', "")) << size;
    EXPECT_EQ(bytes, DecodeBase64(bytes.toBase64())) << size;
    bytes += char(size * 7 + size / 256);
  }
}

TEST(Base64, ALargeFileIsEncodedLikeAShortOne) {
  QByteArray bytes;
  while (bytes.size() < 57 * 4096 * 2 + 100) bytes += QByteArray::number(bytes.size());
  for (const int size : {57 * 4096 - 1, 57 * 4096, 57 * 4096 + 1, 57 * 4096 * 2, 57 * 4096 * 2 + 77}) {
    const QByteArray part = bytes.left(size);
    EXPECT_EQ(EncodeBase64(part, LineBreaks::Every76), OfFile(part)) << size;
    EXPECT_EQ(part.toBase64(), OfFile(part).replace("\r\n", "").replace('\0', "")) << size;
  }
}

TEST(Base64, AFileThatCannotBeReadGivesNothing) {
  QByteArray text = "before";
  AppendBase64OfFile(text, "/nowhere/at/all.gif", LineBreaks::Every76);
  EXPECT_EQ("before", text);
}

TEST(Body, OnlyTheEqualsSignIsQuoted) {
  const QByteArray odd = "a\xE4\x80\xFF.\t \r\nb  \r\n.\r\nc\x01";
  EXPECT_EQ(odd, EncodeHtmlBody(odd));
  EXPECT_EQ("X=3DY", EncodeHtmlBody("X=Y"));
  EXPECT_EQ("=3D=3D3D", EncodeHtmlBody("==3D"));
}

TEST(Body, BlanksAroundThePageGoAndLineEndsStay) {
  EXPECT_EQ("<p> a </p>", EncodeHtmlBody("   <p> a </p>  "));
  EXPECT_EQ("\n<p>\t\r\n", EncodeHtmlBody(" \n<p>\t\r\n"));
}

// Meant in EncodeHtmlBody: every SRC leads to a part of the message, those of scripts and frames too.
TEST(Body, EverySrcLeadsToAPartScriptsAndFramesToo) {
  EXPECT_EQ("<SCRIPT SRC=3D\"cid:a.js\"></SCRIPT>", EncodeHtmlBody("<SCRIPT src=\"a.js\"></SCRIPT>"));
  EXPECT_EQ("<IFRAME SRC=3D\"cid:http://x/\">", EncodeHtmlBody("<IFRAME Src=\"http://x/\">"));
  EXPECT_EQ("<p data-SRC=3D\"cid:n\">", EncodeHtmlBody("<p data-sRc=\"n\">"));
}

// Meant in EncodeHtmlBody: only the first background in the page's text goes along, be it that of a cell.
TEST(Body, OnlyTheFirstBackgroundLeadsToAPart) {
  EXPECT_EQ("<td BACKGROUND=3D\"cid:t.gif\"><BODY BACKGROUND=3D\"b.gif\">",
            EncodeHtmlBody("<td background=\"t.gif\"><BODY BACKGROUND=\"b.gif\">"));
}

TEST(Body, ATextOf75CharactersIsNotWrappedOneOf76Is) {
  EXPECT_EQ(QByteArray(75, 'x'), WrapQuotedLines(QByteArray(75, 'x')));
  EXPECT_EQ(QByteArray(70, 'x') + "=\r\n" + QByteArray(6, 'x'), WrapQuotedLines(QByteArray(76, 'x')));
  EXPECT_EQ(QByteArray(70, 'x') + "=\r\n" + QByteArray(76, 'x'), WrapQuotedLines(QByteArray(146, 'x')));
  EXPECT_EQ(QByteArray(70, 'x') + "=\r\n" + QByteArray(70, 'x') + "=\r\n" + QByteArray(7, 'x'),
            WrapQuotedLines(QByteArray(147, 'x')));
}

// Meant in WrapQuotedLines: a line that is broken behind a ">" brings the break into the page.
TEST(Body, AHardBreakBehindAClosingBracketEntersThePage) {
  const QByteArray wrapped = WrapQuotedLines("<B>" + QByteArray(90, 'x'));
  EXPECT_TRUE(wrapped.startsWith("<B>\r\nxxx"));
}

TEST(Body, ASoftBreakFollowsTheLastBlank) {
  const QByteArray wrapped = WrapQuotedLines("one two " + QByteArray(90, 'x'));
  EXPECT_TRUE(wrapped.startsWith("one two =\r\nxxx"));
}

// Meant in WrapQuotedLines: a line may be cut inside of a quoted sign.
TEST(Body, ACutMayFallInsideAQuotedSign) {
  EXPECT_EQ(QByteArray(68, 'x') + "=3=\r\nD" + QByteArray(9, 'x'),
            WrapQuotedLines(QByteArray(68, 'x') + "=3D" + QByteArray(9, 'x')));
}

TEST(Body, NoLineIsLongerThan71ButTheLast) {
  QByteArray text;
  for (int i = 0; i < 3000; ++i) text += "<IMG> aaaa bbbbbbbbbbbbb"[i * i % 24];
  const QList<QByteArray> lines = WrapQuotedLines(text).split('\n');
  ASSERT_GT(lines.size(), 40);
  for (qsizetype i = 0; i + 1 < lines.size(); ++i) EXPECT_LE(lines[i].chopped(1).size(), 71);
  EXPECT_LE(lines.last().size(), 76);
}

class Composer : public ::testing::Test {
 protected:
  void Prepare(const QByteArray& html, const QStringList& pictures = {}) {
    QStringList paths;
    for (const QString& name : pictures) {
      paths += test_.WorkFile(name);
      if (name.startsWith("gone")) continue;
      EXPECT_TRUE(PutFile(paths.last(), "picture " + name.toUtf8()));
    }
    composer_.PrepareEmail(html, paths.join('*'));
  }
  QByteArray Wire() { return composer_.WirePieces(fields_).join(); }
  QByteArray File() { return composer_.BuildMessageFile(fields_); }
  // What stands between two texts.
  static QByteArray Between(const QByteArray& text, const QByteArray& from, const QByteArray& to) {
    const qsizetype start = text.indexOf(from) + from.size();
    EXPECT_GE(start, from.size()) << from.constData();
    return text.mid(start, text.indexOf(to, start) - start);
  }

  TestProgram test_;
  MessageComposer composer_{test_.platform.stamps};
  MessageFields fields_{"Ann Lee", "ann@example.org", "Bob", "bob@example.net", "Hello", "mail.example.org"};
};

TEST_F(Composer, AMessageWithoutPicturesHasOneBoundaryAndTwoParts) {
  Prepare("<HTML><BODY>Hi</BODY></HTML>");
  EXPECT_EQ(
      "From: Ann Lee <ann@example.org>\r\nTo: Bob <bob@example.net>\r\nSubject: Hello\r\n"
      "Date: Sun, 06 Nov 1994 08:49:37 GMT\r\n"
      "Message-ID: <00000000.0000.0000.0000.000000000001@mail.example.org>\r\nMIME-Version: 1.0\r\n"
      "Content-Type: multipart/alternative;\r\n\tboundary=\"CVN2_A_3435FE2_6617A_AA\"\r\nX-Mailer: Corvane v. 2\r\n\r\n"
      "--CVN2_A_3435FE2_6617A_AA\r\nContent-Type: text/plain;\r\n\tcharset=\"iso-8859-1\"\r\n"
      "Content-Transfer-Encoding: quoted-printable\r\n\r\nThis is a web greeting message made with Corvane.\r\n"
      "It may only be viewed as HTML email, but your email program\r\ndoes not appear to read HTML format.\r\n\r\n"
      "--CVN2_A_3435FE2_6617A_AA\r\nContent-Type: text/html;\r\n\tcharset=\"iso-8859-1\"\r\n"
      "Content-Transfer-Encoding: quoted-printable\r\n\r\n<HTML><BODY>Hi</BODY></HTML>\r\n\r\n"
      "--CVN2_A_3435FE2_6617A_AA--\r\n.\r\n",
      Wire());
}

TEST_F(Composer, EachPictureHasAnIdOfItsOwn) {
  Prepare("<IMG SRC=\"a.gif\" ><IMG SRC=\"b.gif\" >", {"a.gif", "b.gif"});
  const QByteArray wire = Wire();
  EXPECT_TRUE(wire.contains("<IMG SRC=3D\"cid:00000000.0000.0000.0000.000000000001\" >"));
  EXPECT_TRUE(wire.contains("<IMG SRC=3D\"cid:00000000.0000.0000.0000.000000000002\" >"));
  EXPECT_TRUE(
      wire.contains("\tName=\"a.gif\"\r\nContent-Transfer-Encoding: base64\r\n"
                    "Content-ID: <00000000.0000.0000.0000.000000000001>\r\n\r\ncGljdHVyZSBhLmdpZg==\r\n\r\n"));
}

TEST_F(Composer, AMessageWithPicturesIsBuiltLineByLine) {
  Prepare("<IMG SRC=\"a.gif\" ><IMG SRC=\"b.gif\" >", {"a.gif", "b.gif"});
  const QByteArray first = "00000000.0000.0000.0000.000000000001", second = "00000000.0000.0000.0000.000000000002";
  EXPECT_EQ(
      "From: Ann Lee <ann@example.org>\r\nTo: Bob <bob@example.net>\r\nSubject: Hello\r\n"
      "Date: Sun, 06 Nov 1994 08:49:37 GMT\r\n"
      "Message-ID: <00000000.0000.0000.0000.000000000003@mail.example.org>\r\nMIME-Version: 1.0\r\n"
      "Content-Type: multipart/related;\r\n\tboundary=\"CVN2_A_3435FE2_6617A_AA\";\r\n"
      "\ttype=\"multipart/alternative\"\r\nX-Mailer: Corvane v. 2\r\n\r\n"
      "--CVN2_A_3435FE2_6617A_AA\r\nContent-Type: multipart/alternative;\r\n"
      "\tboundary=\"CVN2_B_3435FE2_6617B_BB\"\r\n\r\n"
      "--CVN2_B_3435FE2_6617B_BB\r\nContent-Type: text/plain;\r\n\tcharset=\"iso-8859-1\"\r\n"
      "Content-Transfer-Encoding: quoted-printable\r\n\r\nThis is a web greeting message made with Corvane.\r\n"
      "It may only be viewed as HTML email, but your email program\r\ndoes not appear to read HTML format.\r\n\r\n"
      "--CVN2_B_3435FE2_6617B_BB\r\nContent-Type: text/html;\r\n\tcharset=\"iso-8859-1\"\r\n"
      "Content-Transfer-Encoding: quoted-printable\r\n\r\n"
      "<IMG SRC=3D\"cid:" +
          first + "\" ><IMG SRC=3D\"cid:" + second +
          "\" >\r\n\r\n"
          "--CVN2_B_3435FE2_6617B_BB--\r\n\r\n"
          "--CVN2_A_3435FE2_6617A_AA\r\nContent-Type: image/gif;\r\n\tName=\"a.gif\"\r\n"
          "Content-Transfer-Encoding: base64\r\nContent-ID: <" +
          first +
          ">\r\n\r\ncGljdHVyZSBhLmdpZg==\r\n\r\n"
          "--CVN2_A_3435FE2_6617A_AA\r\nContent-Type: image/gif;\r\n\tName=\"b.gif\"\r\n"
          "Content-Transfer-Encoding: base64\r\nContent-ID: <" +
          second +
          ">\r\n\r\ncGljdHVyZSBiLmdpZg==\r\n\r\n"
          "--CVN2_A_3435FE2_6617A_AA--\r\n.\r\n",
      Wire());
}

TEST_F(Composer, ASplitReferenceKeepsTheFilesName) {
  const QByteArray name = "long_name_of_a_picture_file.gif";
  Prepare(QByteArray(40, 'x') + "SRC=\"" + name + "\"" + QByteArray(30, 'x'), {name});
  EXPECT_TRUE(Wire().contains("SRC=3D\"cid:long_name_of_a_pict=\r\nure_file.gif\""));
  EXPECT_FALSE(Between(Wire(), "text/html", "_BB--").contains("0000.000000000001"));
}

// Meant in MessageComposer::PrepareEmail: a picture that the page shows twice is attached twice, and nothing refers to
// the second one.
TEST_F(Composer, APictureUsedTwiceIsAttachedTwiceAndTheSecondIdIsReferredToNowhere) {
  Prepare("<IMG SRC=\"a.gif\" ><IMG SRC=\"a.gif\" >", {"a.gif", "a.gif"});
  EXPECT_EQ(2, Wire().count("Name=\"a.gif\""));
  EXPECT_EQ(2, Wire().count("cid:00000000.0000.0000.0000.000000000001"));
  EXPECT_EQ(0, Wire().count("cid:00000000.0000.0000.0000.000000000002"));
  EXPECT_EQ(1, Wire().count("Content-ID: <00000000.0000.0000.0000.000000000002>"));
}

// Meant in MessageComposer::PrepareEmail: a picture's name that begins another one is replaced in both.
TEST_F(Composer, ANameThatBeginsAnotherNameIsReplacedInBoth) {
  Prepare("<IMG SRC=\"a.gif\" ><IMG SRC=\"a.gif.gif\" >", {"a.gif", "a.gif.gif"});
  EXPECT_TRUE(Wire().contains("cid:00000000.0000.0000.0000.000000000001.gif\""));
  EXPECT_FALSE(Wire().contains("cid:00000000.0000.0000.0000.000000000002"));
}

TEST_F(Composer, TheKindOfAPictureIsTheEndingOfItsNameAsItStands) {
  Prepare("x", {"a.png", "b.JPEG", "c.GIF", "d.jpg", "e", "f.jpeg", "g.Jpeg"});
  QStringList kinds;
  const QRegularExpression pattern("Content-Type: image/([^;]*);");
  auto found = pattern.globalMatch(QString::fromLatin1(Wire()));
  while (found.hasNext()) kinds += found.next().captured(1);
  EXPECT_EQ(QStringList({"png", "jpg", "GIF", "jpg", "e", "jpg", "jpg"}), kinds);
}

TEST_F(Composer, NoIdLeavesTheNameInItsPlaceAndNoneInTheHead) {
  test_.platform.stamps.Guids = {"", ""};
  Prepare("<IMG SRC=\"a.gif\" >", {"a.gif"});
  EXPECT_TRUE(Wire().contains("Message-ID: <@mail.example.org>\r\n"));
  EXPECT_TRUE(Wire().contains("Content-ID: <a.gif>"));
  EXPECT_TRUE(Wire().contains("\"cid:a.gif\""));
}

TEST_F(Composer, AnIdOfMoreThan30CharactersLosesItsBracesAndAShorterOneIsNone) {
  test_.platform.stamps.Guids = {"{" + QString(29, 'a') + "}", "{" + QString(28, 'b') + "}"};
  Prepare("x");
  EXPECT_TRUE(Wire().contains("Message-ID: <" + QByteArray(29, 'a') + "@mail.example.org>\r\n"));
  EXPECT_TRUE(Wire().contains("Message-ID: <@mail.example.org>\r\n"));
}

// Meant in MessageComposer::PrepareEmail: a picture that isn't there is left out without a word.
TEST_F(Composer, AMissingPictureIsLeftOutWithoutAWord) {
  Prepare("<IMG SRC=\"gone.gif\" >", {"gone.gif"});
  EXPECT_FALSE(Wire().contains("image/"));
  EXPECT_TRUE(Wire().contains("\"cid:gone.gif\""));
  EXPECT_TRUE(Wire().contains("multipart/alternative;\r\n\tboundary=\"CVN2_A_3435FE2_6617A_AA\"\r\nX-Mailer"));
}

TEST_F(Composer, AFolderIsNoPicture) {
  composer_.PrepareEmail("x", test_.program.project.WorkPath() + " * " + test_.program.project.WorkPath() + "/**");
  EXPECT_FALSE(Wire().contains("image/"));
}

TEST_F(Composer, APictureWhoseNameIsInAnyScriptGoesAlong) {
  for (const char* const name : {"\xC3\xA4.gif", "\xD0\x96.gif", "\xE6\x97\xA5.png"}) {
    test_.platform.stamps.Given = 0;
    Prepare(QByteArray("<IMG SRC=\"") + name + "\" >", {QString::fromUtf8(name)});
    EXPECT_TRUE(Wire().contains("\"cid:00000000.0000.0000.0000.000000000001\"")) << name;
    EXPECT_EQ(1, Wire().count("Content-ID: <00000000.0000.0000.0000.000000000001>")) << name;
  }
  // The same letter as an older page holds it.
  test_.platform.stamps.Given = 0;
  Prepare("<IMG SRC=\"\xE4.gif\" >", {QString::fromUtf8("\xC3\xA4.gif")});
  EXPECT_TRUE(Wire().contains("\"cid:00000000.0000.0000.0000.000000000001\""));
}

// Meant in MessageComposer::WirePieces: a line that begins with a dot gets no second one on its way.
TEST_F(Composer, NoLineOfTheMessageGetsASecondDot) {
  Prepare("a\r\n.b\r\n..c\r\n. \r\nd");
  EXPECT_TRUE(Wire().contains("\r\n\r\na\r\n.b\r\n..c\r\n. \r\nd\r\n\r\n--"));
}

// Meant in MessageComposer::BuildMessageFile: head and end of a saved message differ from the form that is sent.
TEST_F(Composer, TheSavedFormDiffersInItsHeadAndItsEnd) {
  Prepare("<IMG SRC=\"a.gif\" >", {"a.gif"});
  const QByteArray wire = Wire(), file = File();
  EXPECT_TRUE(
      file.startsWith("FROM: Ann Lee<ann@example.org>\r\nTO: Bob<bob@example.net>\r\nSubject: Hello\r\n"
                      "Date: Sun, 06 Nov 1994 08:49:37 GMT\r\nMIME-Version: 1.0\r\nContent-Type: "));
  EXPECT_FALSE(file.contains("Message-ID"));
  const auto behindHead = [](const QByteArray& form) { return form.mid(form.indexOf("Content-Type: ")); };
  EXPECT_EQ(behindHead(wire), behindHead(file) + "\r\n.\r\n");
  EXPECT_TRUE(file.endsWith("\r\n--CVN2_A_3435FE2_6617A_AA--"));
  Prepare("x");
  EXPECT_EQ(behindHead(Wire()), behindHead(File()) + ".\r\n");
}

TEST_F(Composer, EmptyNamesLeaveTwoBlanksOnTheWireAndNoneInTheFile) {
  fields_.FromName = fields_.ToName = fields_.Subject = "";
  Prepare("x");
  EXPECT_TRUE(Wire().startsWith("From:  <ann@example.org>\r\nTo:  <bob@example.net>\r\nSubject: \r\n"));
  EXPECT_TRUE(File().startsWith("FROM: <ann@example.org>\r\nTO: <bob@example.net>\r\nSubject: \r\n"));
}

TEST_F(Composer, SavingTakesNoId) {
  Prepare("x");
  Wire();
  EXPECT_EQ(1, test_.platform.stamps.Given);
  File();
  EXPECT_EQ(1, test_.platform.stamps.Given);
}

TEST_F(Composer, WithoutAClockTheLocalTimeStandsInTheHead) {
  test_.platform.stamps.Moment = QDateTime();
  Prepare("x");
  const QByteArray date = Between(Wire(), "\r\nDate: ", "\r\n");
  EXPECT_FALSE(date.isEmpty());
  EXPECT_FALSE(date.endsWith("GMT"));
}

TEST_F(Composer, TheNameOfAPictureBringsNoLineIntoItsHead) {
  const QString name = "a\r\nX-Bad: 1\r\n\r\n.gif";
  Prepare("x", {name});
  EXPECT_TRUE(Wire().contains("\tName=\"a\"\r\nContent-Transfer-Encoding"));
  EXPECT_FALSE(Wire().contains("X-Bad"));
}

TEST(RealStamps, AreAsAMessageWantsThem) {
  HostStamps stamps;
  const QRegularExpression guid("^\\{[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\}$");
  EXPECT_TRUE(guid.match(stamps.NewGuid()).hasMatch());
  EXPECT_NE(stamps.NewGuid(), stamps.NewGuid());
  EXPECT_EQ(Qt::UTC, stamps.Now().timeSpec());
  MessageComposer composer(stamps);
  composer.PrepareEmail("x", "");
  const QRegularExpression date(
      "^Date: (Mon|Tue|Wed|Thu|Fri|Sat|Sun), \\d\\d (Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) \\d{4} "
      "\\d\\d:\\d\\d:\\d\\d GMT\r$",
      QRegularExpression::MultilineOption);
  // Whatever the language of the desktop.
  const QLocale before;
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_TRUE(date.match(QString::fromLatin1(composer.WirePieces({}).join())).hasMatch());
  QLocale::setDefault(before);
}

TEST(OneLineOf, EndsAtTheFirstLineBreak) {
  EXPECT_EQ("a", OneLine("a\r\nb"));
  EXPECT_EQ("a", OneLine("a\nb\r"));
  EXPECT_EQ("", OneLine("\ra"));
  EXPECT_EQ("a", OneLine(QString("a") + QChar(0) + "b"));
  EXPECT_EQ("a b", OneLine("a b"));
  EXPECT_EQ("", OneLine(""));
}

}  // namespace
