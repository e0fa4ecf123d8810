// The road of a picture whose name isn't plain ASCII, in the whole program on the real engine: into a page, through
// every way in which the page is written and read, and out again.
//
// With CORVANE_LEAVE_IN set to a folder, page, pictures and pack are left there for readers of other hands.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QListWidget>
#include <QPushButton>
#include <QWebEnginePage>

#include "FOps.h"
#include "FTools.h"
#include "FWeb.h"
#include "HostedPage.h"
#include "ModMain.h"
#include "ModPackage.h"
#include "OpenProjectPanel.h"
#include "PackedFiles.h"
#include "SourceText.h"

namespace {

const QByteArray dot(
    "GIF89a\x01\0\x01\0\x80\0\0\xff\xff\xff\0\0\0,\0\0\0\0\x01\0\x01\0\0\x02\x02"
    "D\x01\0;",
    35);

class PictureNames : public testing::Test {
 protected:
  bool Start() { return modMain_.Main() && Settle(); }
  FWeb& Web() { return *modMain_.Web(); }
  Program& program() { return test_.program; }

  // Until the page in view has been read.
  bool Settle() {
    return HostedPage::WaitFor([this] { return Web().jWB->DocReady() && browser_->IsQuiet(); });
  }
  bool Choose(const QString& name) {
    auto* const action = Web().findChild<QAction*>(name);
    if (!action) return false;
    action->trigger();
    return Settle();
  }
  bool Show(int page) {
    Web().BoxPage->setCurrentIndex(page - 1);
    return Settle();
  }
  void Add(const QString& name) {
    const QString path = test_.Path("pictures/") + name;
    ASSERT_TRUE(PutFile(path, dot));
    test_.platform.dialogs.Texts = {path};
    FTools& tools = *modMain_.Tools();
    tools.AddPicture(&Web());
    if (tools.isVisible()) tools.bOKPic[0]->click();
  }

  // Gives each picture its own name for its ALT text, by the panel with the page's source.
  void NamePictures(const QStringList& names) {
    FTools& tools = *modMain_.Tools();
    tools.ShowSource();
    QString source = tools.T1->Text();
    for (const QString& name : names)
      source.replace(QStringLiteral("src=\"%1\"").arg(name), QStringLiteral("src=\"%1\" alt=\"%1\"").arg(name));
    tools.T1->SetText(source);
    tools.bCloseText[1]->click();
    ASSERT_TRUE(Settle());
    tools.bCloseText[0]->click();
  }

  // The names of the pictures that the page shows, a "?" in front of each that isn't there or is called otherwise.
  QString Shown() {
    QString text;
    bool isTold = false;
    browser_->enginePage()->runJavaScript(
        QStringLiteral("Promise.all([...document.images].map(i => i.decode().catch(() => 0)));"
                       "[...document.images].map(i => [i, decodeURIComponent(i.src.split('/').pop())])"
                       ".map(([i, n]) => (i.complete && i.naturalWidth && [n, ''].includes(i.alt) ? '' : '?') + n)"
                       ".join('|')"),
        [&](const QVariant& value) {
          text = value.toString();
          isTold = true;
        });
    HostedPage::WaitFor([&] { return isTold; });
    return text;
  }
  bool Shows(const QString& names) {
    return HostedPage::WaitFor([&] { return Shown() == names; }, 10000);
  }

  TestProgram test_;
  HostedWebBrowser* browser_ = nullptr;
  ModMain modMain_{test_.program, [this](QWidget* parent) {
                     auto made = std::make_unique<HostedWebBrowser>(parent);
                     browser_ = made.get();
                     return made;
                   }};
};

TEST_F(PictureNames, OfAnyScriptArriveEverywhere) {
  ASSERT_TRUE(Start());
  const QStringList names = {QString::fromUtf8("M\u00FCller.gif"), QString::fromUtf8("stra\u00DFe.gif"),
                             QString::fromUtf8("\u5199\u771F.png"), QString::fromUtf8("\u00E9t\u00E9.jpg")};
  for (const QString& name : names) Add(name);
  // Letters with marks are stored composed, however the picture was called where it came from.
  Add(QString::fromUtf8("u\u0308ber.png"));
  const QString all = names.join(u'|') + QString::fromUtf8("|\u00FCber.png");
  ASSERT_TRUE(Settle());
  EXPECT_TRUE(Shows(all)) << Shown().toStdString();
  NamePictures(all.split(u'|'));
  for (int time = 0; time < 3; ++time) {
    ASSERT_TRUE(Choose("mRefresh"));
    EXPECT_TRUE(Shows(all)) << time << Shown().toStdString();
  }
  ASSERT_TRUE(Choose("mSavePage"));
  ASSERT_TRUE(Choose("mNewPage"));
  EXPECT_EQ(Shown(), QString());
  ASSERT_TRUE(Show(1));
  EXPECT_TRUE(Shows(all)) << Shown().toStdString();

  test_.platform.dialogs.Texts = {QStringLiteral("names")};
  ASSERT_TRUE(Choose("mSaveProject"));
  ASSERT_TRUE(Choose("mOpenProject"));
  OpenProjectPanel& panel = *modMain_.Ops()->FrOps1;
  panel.BoxProj->setCurrentRow(0);
  panel.bOpenProj[0]->click();
  ASSERT_TRUE(Settle());
  EXPECT_TRUE(Shows(all)) << Shown().toStdString();

  const QByteArray page = FileBytes(program().project.CurPageFile());
  for (const char byte : page) ASSERT_TRUE(uchar(byte) < 0x7F) << page.toStdString();
  EXPECT_TRUE(page.contains("src=\"M&#252;ller.gif\" alt=\"M&#252;ller.gif\""));

  // A build takes the pictures that no page uses off the disk.
  QStringList expected = all.split(u'|') + QStringList{QStringLiteral("wgcard.html"), QStringLiteral("Page2.html")};
  ASSERT_TRUE(PutFile(program().project.WorkPath() + QString::fromUtf8("/unused\u00FC.gif"), dot));
  program().CurIconName = QStringLiteral("WP");
  qint32 size = 0;
  QDir().mkpath(test_.Path("desktop"));
  for (int time = 0; time < 2; ++time) {
    ASSERT_EQ(CreateWebPack(program(), test_.Path("desktop"), "pack.exe", size), PackResult::Made);
    QStringList packed;
    for (const PackedFile& file : FilesInPack(test_.Path("desktop/pack.exe"))) packed += file.name;
    packed.sort();
    expected.sort();
    EXPECT_EQ(packed.join(u'|').toStdString(), expected.join(u'|').toStdString()) << time;
  }
  ASSERT_TRUE(Choose("mRefresh"));
  EXPECT_TRUE(Shows(all)) << Shown().toStdString();

  const QString left = qEnvironmentVariable("CORVANE_LEAVE_IN");
  if (left.isEmpty()) return;
  ASSERT_TRUE(QFile::copy(test_.Path("desktop/pack.exe"), left + QStringLiteral("/pack.exe")));
  ASSERT_TRUE(QDir(left).mkdir(QStringLiteral("card")));
  for (const QString& file : QDir(program().project.WorkPath()).entryList(QDir::Files))
    ASSERT_TRUE(QFile::copy(program().project.WorkPath() + u'/' + file, left + QStringLiteral("/card/") + file));
}

}  // namespace
