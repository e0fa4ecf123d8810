// What goes onto the wire has line ends of one kind and nothing that a server could take for the end of the message.
#include "WireText.h"

#include "HtmlBody.h"
#include "MailUC.h"
#include "ModEmail.h"
#include "PanelFixture.h"
#include "SessionFixture.h"

namespace {

TEST(WireLineEnds, AreAllCarriageReturnAndLineFeed) {
  EXPECT_EQ("a\r\nb", WithWireLineEnds("a\nb"));
  EXPECT_EQ("a\r\nb", WithWireLineEnds("a\rb"));
  EXPECT_EQ("a\r\nb", WithWireLineEnds("a\r\nb"));
  EXPECT_EQ("\r\n\r\n\r\n\r\n", WithWireLineEnds("\n\r\r\n\n"));
  EXPECT_EQ("a\r\n", WithWireLineEnds("a\r"));
  EXPECT_EQ("", WithWireLineEnds(""));
  EXPECT_EQ("a.b", WithWireLineEnds("a.b"));
}

// The wrap counts characters, and may cut between the two of a line end.
TEST(WireLineEnds, ABreakThatFallsIntoOneGoesInFrontOfIt) {
  const QByteArray page = QByteArray(69, 'x') + "\r\n" + QByteArray(20, 'y');
  const QByteArray wrapped = WrapQuotedLines(page);
  ASSERT_EQ(QByteArray(69, 'x') + "\r=\r\n\n" + QByteArray(20, 'y'), wrapped);
  EXPECT_EQ(QByteArray(69, 'x') + "=\r\n\r\n" + QByteArray(20, 'y'), WithWireLineEnds(wrapped));
}

TEST(WireText, TakesLinesOfText) {
  for (const char* const text : {"", "a", "\r\n", "a\r\nb\r\n", ".a", "a.\r\n", "..\r\n", ". \r\n", " .\r\n", ".=\r\n",
                                 "--\r\n", "--CVN2_A_3435FE2_6617A_A", "a --CVN2_A_3435FE2_6617A_AA\r\n"})
    EXPECT_TRUE(IsWireText(text)) << text;
}

TEST(WireText, TakesNoLineOfADotAndNoBareLineEnd) {
  for (const char* const text : {".", ".\r\n", "a\r\n.", "a\r\n.\r\nb", "a\r\n\r\n.\r\n", "a\nb", "a\rb", "\n", "\r",
                                 "a\r\r\n", "a\r\n\n", "\n\r\n", "a\r", ".\n", ".\r"})
    EXPECT_FALSE(IsWireText(text)) << text;
  EXPECT_FALSE(IsWireText(QByteArrayView("a\0b", 3)));
}

TEST(WireText, TakesNoLineThatBeginsAPart) {
  for (const char* const text :
       {"--CVN2_A_3435FE2_6617A_AA", "--CVN2_A_3435FE2_6617A_AA--\r\n", "a\r\n--CVN2_B_3435FE2_6617B_BBx\r\n"})
    EXPECT_FALSE(IsWireText(text)) << text;
}

// Pages that a server could take for more than one message.
const QList<QByteArray>& Attacks() {
  static const QByteArray rest =
      "MAIL FROM:<ceo@example.org>\r\nRCPT TO:<victim@example.net>\r\nDATA\r\nSubject: smuggled\r\n\r\nevil\r\n";
  static const QList<QByteArray> attacks = {
      "<p title=\"a\r\n.\r\n" + rest + "\">",
      "a\n.\n" + rest,
      "a\r.\r" + rest,
      "a\n.\r" + rest,
      "a\r\n.\n" + rest,
      "<!--\n.\n" + rest + "-->",
      "<pre>\n.\r\n" + rest + "</pre>",
      "a\n.",
      ".\n" + rest,
      "<script>\n.\n" + rest + "</script>",
      "a" + QByteArray(1, '\0'),
      "a\n--CVN2_A_3435FE2_6617A_AA--\n",
      // The wrap puts the dot onto a line of its own.
      QByteArray(60, 'x') + " aa>.\n" + rest,
      QByteArray(40, 'x') + ' ' + QByteArray(28, 'y') + " .\n" + rest,
  };
  return attacks;
}

using Refused = Session;

TEST_F(Refused, NothingIsPreparedOfAPageThatHoldsMoreThanOneMessage) {
  for (const QByteArray& attack : Attacks()) {
    EXPECT_FALSE(MUC_.PrepareEmail(attack, "")) << attack.constData();
    EXPECT_EQ(160, MUC_.ConnectAndSend(error_)) << attack.constData();
    EXPECT_FALSE(MUC_.EmailAvailable());
  }
  EXPECT_EQ(0, Net().Opened);
  EXPECT_TRUE(MUC_.PrepareEmail("<p title=\"a\n.b\">", ""));
}

// Nor of one whose picture's name is the danger.
TEST_F(Refused, APictureBringsItsTextOnly) {
  const QString path = test_.WorkFile("a.gif");
  for (const int size : {0, 57, 100, 228, 57 * 4 * 100}) {
    ASSERT_TRUE(PutFile(path, QByteArray(size, '.')));
    EXPECT_TRUE(MUC_.PrepareEmail("<IMG SRC=\"a.gif\" >", path)) << size;
  }
}

TEST_F(Refused, ATypedNulEndsItsText) {
  const QChar nul(0);
  MUC_.SetServer(QString("mail.example.org") + nul + ".evil.example");
  MUC_.SetSubject(QString("Hello") + nul + "evil");
  MUC_.SetToEmail(QString("bob@example.net") + nul + "evil");
  Begin(4);
  Net().Bring("354 e");
  EXPECT_EQ("mail.example.org", Net().ResolvedName);
  EXPECT_FALSE(Net().Sent.contains('\0'));
  EXPECT_FALSE(Net().Sent.contains("evil"));
}

class RefusedInThePanel : public PanelTest {};

TEST_F(RefusedInThePanel, SuchAPageCountsAsUnreadable) {
  for (const QByteArray& attack : Attacks()) {
    ASSERT_TRUE(PutFile(test_.program.project.CurPageFile(), attack));
    Send();
    EXPECT_EQ(" Error. Unable to read current page file.", Status()) << attack.constData();
    EXPECT_FALSE(panel_.bEmail[2]->isEnabled());
  }
  EXPECT_EQ(0, Net().Opened);
}

TEST_F(RefusedInThePanel, LineEndsOfAnyKindGoOutAsOne) {
  ASSERT_TRUE(PutFile(test_.program.project.CurPageFile(), "<P>a\nb\rc\r\nd\n\n</P>\n"));
  Send();
  Accept();
  EXPECT_TRUE(Net().Sent.contains("\r\n\r\n<P>a\r\nb\r\nc\r\nd\r\n\r\n</P>\r\n\r\n\r\n--"));
  EXPECT_EQ(Net().Sent.count('\n'), Net().Sent.count("\r\n"));
  EXPECT_EQ(Net().Sent.count('\r'), Net().Sent.count("\r\n"));
}

}  // namespace
