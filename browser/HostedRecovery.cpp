// A renderer that died loses nothing: a page that was loading is begun anew, and the model of one that was in view is
// written into a fresh one.
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineView>

#include "HTMLDocument.h"
#include "HostedWebBrowser.h"
#include "TreeCodec.h"

namespace {

constexpr int deathsInARow = 5;  // a page that kills every renderer is brought back at leisure
constexpr qint64 rowOfDeathsMs = 10000;
constexpr int leisureMs = 5000;  // less than the row's time, so that the row goes on

}  // namespace

// The channel of a page whose renderer died doesn't always come back, so there is a new one for both.
void HostedWebBrowser::RenewPage() {
  QWebEnginePage* const dead = page_;
  dead->disconnect(this);
  SetUpPage();
  dead->deleteLater();
  TakeKeysBack();
}

void HostedWebBrowser::RendererDied() {
  if (!isDead_) return;  // a new page has taken its place already
  DropQuestions();
  token_.clear();
  if (!sinceDeath_.isValid() || sinceDeath_.elapsed() > rowOfDeathsMs) deaths_ = 0;
  sinceDeath_.restart();
  ++deaths_;
  if (load_ == Load::Pending) return deaths_ > deathsInARow ? FailLoad() : LoadWanted();
  if (!document_) return;
  load_ = Load::Recovering;
  operations_ = {};
  messages_ = {};
  history_.Clear();
  recovery_.start(deaths_ > deathsInARow ? leisureMs : 0);
}

// A page without content, in the right mode and place; the model follows when its bridge reports.
void HostedWebBrowser::Recover() {
  if (load_ != Load::Recovering) return;
  RenewPage();
  const QString type = document_->tree().quirks() ? QString() : QStringLiteral("<!DOCTYPE html>");
  page_->setHtml(type + QStringLiteral("<html><head></head><body></body></html>"), QUrl(base_));
}

void HostedWebBrowser::Adopt(const QString& token) {
  token_ = token;
  load_ = Load::Done;
  adopted_ = ++batch_;
  heard_ = userSelections_ = 0;
  QJsonArray flat;
  EncodeTree(document_->tree().root(), flat);
  messages_ = {};
  messages_.append(QJsonArray{QStringLiteral("adopt"), flat, QJsonArray{scroll_.x(), scroll_.y()}, batch_});
  messages_.append(QJsonArray{QStringLiteral("keys"), takesKeys_});
  messages_.append(SelectMessage(&document_->selection().range()));
  Flush();
  emit Recovered();
}
