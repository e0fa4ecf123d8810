// Loading: missing, odd and huge page files, quick successions, and what stays off the network.
#include <gtest/gtest.h>

#include <QDir>
#include <QTcpServer>
#include <QWebEnginePage>
#include <csignal>

#include "HostedPage.h"

TEST(HostedLoad, MissingFileGivesNoDocumentAndTheNextPageLoads) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml("<BODY>here</BODY>"));
  EXPECT_FALSE(hosted.Load(hosted.Folder() + QStringLiteral("/nowhere.html")));
  EXPECT_EQ(hosted.browser().Document(), nullptr);
  ASSERT_TRUE(hosted.LoadHtml("<BODY>back</BODY>"));
  EXPECT_TRUE(hosted.ModelHtml().contains(QStringLiteral("back")));
}

TEST(HostedLoad, AFolderOrWhatCantBeReadGivesNoDocumentAndAnEmptyView) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml("<BODY>here</BODY>"));
  const QString folder = hosted.Folder() + QStringLiteral("/folder.html");
  ASSERT_TRUE(QDir().mkdir(folder));
  const auto isEmpty = [&] { return hosted.ScriptText(QStringLiteral("document.body.innerText")).isEmpty(); };
  for (const QString& path : {folder, QStringLiteral("/proc/self/mem")}) {
    EXPECT_FALSE(isEmpty());
    EXPECT_FALSE(hosted.Load(path));
    EXPECT_EQ(hosted.browser().Document(), nullptr);
    EXPECT_TRUE(HostedPage::WaitFor(isEmpty));
    EXPECT_EQ(hosted.browser().Document(), nullptr);
    ASSERT_TRUE(hosted.LoadHtml("<BODY>back</BODY>"));
    EXPECT_TRUE(hosted.ModelHtml().contains(QStringLiteral("back")));
  }
}

TEST(HostedLoad, AGoodPageRightBehindABadOneLoads) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml("<BODY>here</BODY>"));
  for (int round = 0; round < 5; ++round) {
    hosted.browser().Navigate(hosted.Folder(), 14);
    ASSERT_TRUE(hosted.LoadHtml("<BODY>back</BODY>")) << round;
    EXPECT_FALSE(hosted.Load(hosted.Folder())) << round;
    ASSERT_TRUE(hosted.LoadHtml("<BODY>back</BODY>")) << round;
    EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml()) << round;
  }
}

TEST(HostedLoad, APageWhoseRendererDiesWhileItLoadsComesAllTheSame) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml("<BODY>here</BODY>"));
  QByteArray html = "<HTML><BODY>";
  for (int i = 0; i < 30000; ++i) html += "<P>paragraph " + QByteArray::number(i) + "</P>";
  const QString file = hosted.File(QStringLiteral("long.html"), html);
  int completes = 0;
  bool started = false;
  QObject::connect(&hosted.browser(), &WebBrowser::DocumentComplete, [&] { ++completes; });
  QObject::connect(hosted.browser().enginePage(), &QWebEnginePage::urlChanged, [&] { started = true; });
  hosted.browser().Navigate(file, 14);
  ASSERT_TRUE(HostedPage::WaitFor([&] { return started; }));
  ASSERT_EQ(completes, 0);
  ::kill(pid_t(hosted.browser().enginePage()->renderProcessPid()), SIGKILL);
  ASSERT_TRUE(HostedPage::WaitFor([&] { return completes > 0; }));
  ASSERT_NE(hosted.browser().Document(), nullptr);
  EXPECT_EQ(hosted.document().body().children().length(), 30000);
  EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml());
  EXPECT_EQ(completes, 1);
}

TEST(HostedLoad, EmptyAndBinaryFilesGiveDocumentsThatAgree) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml(""));
  EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml());
  QByteArray binary;
  for (int i = 0; i < 5000; ++i) binary += char((i * 7919) >> 3);
  ASSERT_TRUE(hosted.LoadHtml(binary));
  EXPECT_EQ(hosted.ModelHtml().toStdString(), hosted.LiveHtml().toStdString());
}

TEST(HostedLoad, HugeFileLoadsAndIsWhole) {
  HostedPage hosted;
  // Hidden, as the engine takes longer to lay out such a page than for all the rest.
  QByteArray html = "<HTML><BODY HIDDEN>";
  int count = 0;
  while (html.size() < 20 * 1000 * 1000) {
    html += "<FONT SIZE=3>A paragraph of text that is neither short nor long, number " + QByteArray::number(++count) +
            ", and it repeats itself as such paragraphs do in a page that somebody pasted together.</FONT><BR>";
  }
  html += "</BODY></HTML>";
  ASSERT_TRUE(hosted.LoadHtml(html));
  EXPECT_EQ(hosted.document().body().children().length(), 2 * count);
}

TEST(HostedLoad, OfTwoLoadsInARowOnlyTheSecondCounts) {
  HostedPage hosted;
  const QString first = hosted.File(QStringLiteral("first.html"), "<BODY>first</BODY>");
  const QString second = hosted.File(QStringLiteral("second.html"), "<BODY>second</BODY>");
  int completes = 0;
  QObject::connect(&hosted.browser(), &WebBrowser::DocumentComplete, [&] { ++completes; });
  hosted.browser().Navigate(first, 14);
  hosted.browser().Navigate(second, 14);
  ASSERT_TRUE(HostedPage::WaitFor([&] { return completes > 0; }));
  EXPECT_TRUE(hosted.ModelHtml().contains(QStringLiteral("second")));
  hosted.LiveHtml();
  EXPECT_EQ(completes, 1);
}

namespace {

// Until the page that is on its way is in view; what it tells of itself may be still to come.
void WaitUntilInView(HostedPage& hosted) {
  bool isInView = false;
  const auto connection =
      QObject::connect(hosted.browser().enginePage(), &QWebEnginePage::urlChanged, [&] { isInView = true; });
  EXPECT_TRUE(HostedPage::WaitFor([&] { return isInView; }));
  QObject::disconnect(connection);
}

// Loads a file and, before its page has told of itself, what is between and the file again.
void ExpectTheLastLoadToCount(const QString& between, int rounds) {
  HostedPage hosted;
  int completes = 0;
  QObject::connect(&hosted.browser(), &WebBrowser::DocumentComplete, [&] { ++completes; });
  for (int round = 0; round < rounds; ++round) {
    const QString name = QStringLiteral("page%1.html").arg(round);
    const QString path =
        hosted.File(name, "<BODY>first" + QByteArray("<P>paragraph</P>").repeated(20 * round) + "</BODY>");
    completes = 0;
    hosted.browser().Navigate(path, 14);
    WaitUntilInView(hosted);
    if (completes > 0) continue;  // it was faster
    if (!between.isEmpty()) hosted.browser().Navigate(hosted.File(between, "<BODY>between</BODY>"), 14);
    hosted.File(name, "<BODY>second</BODY>");
    hosted.browser().Navigate(path, 14);
    ASSERT_TRUE(HostedPage::WaitFor([&] { return completes > 0; })) << round;
    EXPECT_TRUE(hosted.ModelHtml().contains(QStringLiteral("second"))) << round;
    EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml()) << round;
    EXPECT_EQ(completes, 1) << round;
  }
}

}  // namespace

TEST(HostedLoad, OfTwoLoadsOfOneFileOnlyTheSecondCounts) {
  ExpectTheLastLoadToCount(QString(), 20);
}

TEST(HostedLoad, OfTwoLoadsOfOneFileWithAnotherBetweenOnlyTheLastCounts) {
  ExpectTheLastLoadToCount(QStringLiteral("between.html"), 20);
}

// The page into which the model was to be written is empty, and bears the same address.
TEST(HostedLoad, APageThatIsLoadedAnewWhileItIsBroughtBackIsTheFilesOwn) {
  HostedPage hosted;
  const QString path =
      hosted.File("page.html", "<BODY>whole" + QByteArray("<P>paragraph</P>").repeated(300) + "</BODY>");
  for (int round = 0; round < 10; ++round) {
    ASSERT_TRUE(hosted.Load(path));
    const QWebEnginePage* const dead = hosted.browser().enginePage();
    ::kill(pid_t(hosted.browser().enginePage()->renderProcessPid()), SIGKILL);
    ASSERT_TRUE(HostedPage::WaitFor([&] { return hosted.browser().enginePage() != dead; }));
    WaitUntilInView(hosted);
    ASSERT_TRUE(hosted.Load(path)) << round;
    EXPECT_TRUE(hosted.ModelHtml().contains(QStringLiteral("whole"))) << round;
    EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml()) << round;
  }
}

// No script can make a document type of such a name.
TEST(HostedLoad, APageWithAnOddDocumentTypeComesBackFromADeath) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml("<!DOCTYPE \"-//W3C//DTD HTML 3.2//EN\"><html><body>text</body></html>"));
  ASSERT_TRUE(hosted.KillRenderer());
  EXPECT_TRUE(hosted.LiveHtml().contains(QStringLiteral("text")));
  EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml());
}

TEST(HostedLoad, APageThatIsWrittenAnewWhileItLoadsIsThereAllTheSame) {
  HostedPage hosted;
  QTcpServer server;  // takes the picture's request and never answers
  ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
  ASSERT_TRUE(hosted.LoadHtml("<body>old<img src=\"http://127.0.0.1:" + QByteArray::number(server.serverPort()) +
                              "/a.gif\"><script>setTimeout(() => { document.open(); document.write('<body>new'); "
                              "document.close() }, 20)</script></body>"));
  EXPECT_TRUE(hosted.ModelHtml().contains(QStringLiteral("new")));
  EXPECT_EQ(hosted.ModelHtml(), hosted.LiveHtml());
}

TEST(HostedLoad, NamesWithOddCharactersLoad) {
  HostedPage hosted;
  for (const char* name : {"with blank.html", "hash#100%.html", "\xc3\xbcml\xc3\xa4ut.html", "it's [1].html"})
    EXPECT_TRUE(hosted.Load(hosted.File(QString::fromUtf8(name), "<BODY>x</BODY>"))) << name;
}

TEST(HostedLoad, OfflineKeepsThePageOffTheNetwork) {
  QTcpServer server;
  ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
  int connections = 0;
  QObject::connect(&server, &QTcpServer::newConnection, [&] { ++connections; });
  const QByteArray html =
      "<BODY><IMG SRC=\"http://127.0.0.1:" + QByteArray::number(server.serverPort()) + "/a.gif\">x</BODY>";
  HostedPage hosted;
  hosted.browser().SetOffline(true);
  ASSERT_TRUE(hosted.LoadHtml(html));
  EXPECT_EQ(connections, 0);
}

TEST(HostedLoad, PageScriptsRunAndTheirWorkIsInTheModel) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml("<BODY><SCRIPT>document.write('<B>written</B>')</SCRIPT></BODY>"));
  EXPECT_TRUE(hosted.ModelHtml().contains(QStringLiteral("<b>written</b>")));
  hosted.Script(QStringLiteral("document.body.append('later')"));
  EXPECT_EQ(hosted.ModelHtml().toStdString(), hosted.LiveHtml().toStdString());
  EXPECT_TRUE(hosted.ModelHtml().contains(QStringLiteral("later")));
}

TEST(HostedLoad, ADoctypePageIsInStandardsModeBeforeAndAfterItsRendererDied) {
  HostedPage hosted;
  ASSERT_TRUE(hosted.LoadHtml("<!DOCTYPE html><HTML><BODY>x</BODY></HTML>"));
  EXPECT_FALSE(hosted.document().tree().quirks());
  ASSERT_TRUE(hosted.KillRenderer());
  EXPECT_EQ(hosted.ScriptText(QStringLiteral("document.compatMode")), QStringLiteral("CSS1Compat"));
  const QString live = hosted.LiveHtml();
  EXPECT_TRUE(live.contains(QStringLiteral("x</body>")));
  EXPECT_EQ(hosted.ModelHtml(), live);
}
