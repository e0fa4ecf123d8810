#include "EmailKinds.h"

#include <QJsonArray>
#include <QLocale>
#include <QTimeZone>
#include <functional>

#include "Base64.h"
#include "EmailDefaults.h"
#include "HtmlBody.h"
#include "KindTable.h"
#include "MailUC.h"
#include "TestPlatform.h"

namespace {

// One byte text in, another out.
KindTable::Player PlayText(QByteArray (*routine)(const QByteArray&), const QString& field) {
  return [=](const QJsonObject& one) {
    CaseCheck check;
    check.Equal("result", one["result"], ByteText(routine(BytesOf(one[field]))));
    return check.Outcome();
  };
}

QByteArray FromHex(const QJsonValue& hex) {
  return QByteArray::fromHex(hex.toString().toLatin1());
}

CaseOutcome PlayBase64(const QJsonObject& one) {
  TestProgram test;
  const LineBreaks breaks = one["break_lines"].toBool() ? LineBreaks::Every76 : LineBreaks::None;
  const QByteArray bytes = FromHex(one["hex"]);
  QByteArray text;
  if (one["is_file"].toBool()) {
    if (!PutFile(test.WorkFile("a.gif"), bytes)) return {{}, "the file can't be written"};
    AppendBase64OfFile(text, test.WorkFile("a.gif"), breaks);
  } else {
    text = EncodeBase64(bytes, breaks);
  }
  CaseCheck check;
  check.Equal("result", one["result"], ByteText(text));
  return check.Outcome();
}

CaseOutcome PlayUnbase64(const QJsonObject& one) {
  CaseCheck check;
  check.Equal("hex", one["hex"], QString::fromLatin1(DecodeBase64(BytesOf(one["text"])).toHex()));
  return check.Outcome();
}

QDateTime MomentOf(const QString& text) {
  QDateTime moment = QLocale::c().toDateTime(text, QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"));
  moment.setTimeZone(QTimeZone::utc());
  return moment;
}

// In the system's form, of which the message's is made.
QString SystemGuid(QString text) {
  return text.isEmpty() ? text : u'{' + text.replace(u'.', u'-') + u'}';
}

// Lets the server say yes to everything up to the message; what it was sent behind DATA.
QByteArray SentMessage(ScriptedSockets& sockets) {
  for (const char* reply : {"220 x\r\n", "250 x\r\n", "250 x\r\n", "250 x\r\n"}) sockets.Bring(reply);
  sockets.Sent.clear();
  sockets.Bring("354 x\r\n");
  return sockets.Sent;
}

CaseOutcome PlayMessage(const QJsonObject& one) {
  TestProgram test;
  TestPlatform& platform = test.platform;
  for (const QJsonValue guid : one["guids"].toArray()) platform.stamps.Guids += SystemGuid(guid.toString());
  platform.stamps.Moment = MomentOf(one["date"].toString());
  QStringList paths;
  for (const QJsonValue value : one["pictures"].toArray()) {
    const QJsonObject picture = value.toObject();
    const QString path = test.WorkFile(picture["name"].toString());
    paths += path;
    if (!picture["hex"].isNull() && !PutFile(path, FromHex(picture["hex"]))) return {{}, "no picture can be written"};
  }
  MailUC MUC(platform.services);
  MUC.SetFromName(one["from_name"].toString());
  MUC.SetFromEmail(one["from_email"].toString());
  MUC.SetToName(one["to_name"].toString());
  MUC.SetToEmail(one["to_email"].toString());
  MUC.SetSubject(one["subject"].toString());
  MUC.SetServer(one["server"].toString());
  MUC.PrepareEmail(BytesOf(one["html"]), paths.join(u'*'));
  QString error;
  MUC.StartUp(error);
  MUC.ConnectAndSend(error);
  CaseCheck check;
  check.Equal("error", QString(), error);
  check.Equal("wire", one["wire"], ByteText(SentMessage(platform.sockets)));
  check.Equal("guids left", 0, int(platform.stamps.Guids.size()));
  check.Equal("file", one["file"], ByteText(MUC.EmailFileText()));
  return check.Outcome();
}

// Plays the notices of one conversation and writes down what came of each.
class Conversation {
 public:
  Conversation(MailUC& MUC, ScriptedSockets& sockets) : sockets_(sockets) {
    QObject::connect(&MUC, &MailUC::OnSendComplete, &context_, [this](bool success, const QByteArray& text) {
      events_.append(QJsonObject{{"after_step", int(sent_.size())}, {"complete", success}, {"text", ByteText(text)}});
    });
  }

  void Play(const QJsonArray& steps) {
    for (const QJsonValue step : steps) {
      sockets_.Sent.clear();
      sockets_.SendTakes.clear();
      const bool wasOpen = sockets_.IsOpen();
      PlayStep(step.toObject());
      const bool isMessage = sockets_.Sent.startsWith("From: ") && sockets_.Sent.endsWith("\r\n.\r\n");
      sent_.append(isMessage ? QJsonValue("<MESSAGE>") : ByteText(sockets_.Sent));
      if (wasOpen && !sockets_.IsOpen()) disconnected_ = int(sent_.size()) - 1;
    }
  }

  void Compare(CaseCheck& check, const QJsonObject& session) const {
    check.Equal("sent", session["sent"], sent_);
    check.Equal("events", session["events"], events_);
    check.Equal("disconnected", session["disconnected"], disconnected_);
  }

 private:
  void PlayStep(const QJsonObject& step) {
    if (step.contains("send_takes")) sockets_.SendTakes = {step["send_takes"].toInt()};
    if (step.contains("recv")) sockets_.Bring(BytesOf(step["recv"]));
    if (step.contains("recv_error")) sockets_.FailReading(ScriptedSockets::kBroken);
    if (step.contains("recv_again")) sockets_.FailReading(ScriptedSockets::kWouldBlock);
    if (step.contains("close")) sockets_.Bring(QByteArray());
    if (step.contains("writable")) sockets_.BecomeWritable();
  }

  ScriptedSockets& sockets_;
  QObject context_;
  QJsonArray sent_, events_;
  QJsonValue disconnected_;
};

CaseOutcome PlaySmtp(const QJsonObject& one) {
  TestProgram test;
  ScriptedSockets& sockets = test.platform.sockets;
  MailUC MUC(test.platform.services);
  MUC.SetServer("mail.example.org");
  CaseCheck check;
  QString error;
  MUC.StartUp(error);
  for (const QJsonValue value : one["sessions"].toArray()) {
    const QJsonObject session = value.toObject();
    using Setter = void (MailUC::*)(const QString&);
    const std::pair<const char*, Setter> fields[] = {{"from_email", &MailUC::SetFromEmail},
                                                     {"to_email", &MailUC::SetToEmail},
                                                     {"user_name", &MailUC::SetUserName},
                                                     {"password", &MailUC::SetPassword}};
    for (const auto& [name, setter] : fields) {
      if (!session[name].isNull()) (MUC.*setter)(session[name].toString());
    }
    MUC.PrepareEmail("<HTML><BODY>x</BODY></HTML>", QString());
    check.Equal("connected", MailUC::kGood, MUC.ConnectAndSend(error));
    Conversation talk(MUC, sockets);
    talk.Play(session["steps"].toArray());
    talk.Compare(check, session);
  }
  return check.Outcome();
}

CaseOutcome PlayAddress(const QJsonObject& one) {
  CaseCheck check;
  check.Equal("ok", one["ok"], IsValidAddress(one["address"].toString()));
  return check.Outcome();
}

CaseOutcome PlayPassword(const QJsonObject& one) {
  CaseCheck check;
  if (one["direction"] == QLatin1String("store")) {
    check.Equal("stored", one["stored"], StoredPassword(one["password"].toString()));
  } else {
    check.Equal("direction", one["direction"], "load");
    check.Equal("password", one["password"], PasswordOf(one["stored"].toString()));
  }
  return check.Outcome();
}

CaseOutcome PlayRecents(const QJsonObject& one) {
  QStringList items;
  for (const QJsonValue item : one["items"].toArray()) items += item.toString();
  CaseCheck check;
  check.Equal("to10", one["to10"], RecentRecipients(items, one["text"].toString()));
  check.Equal("from10", one["from10"], RecentSenders(items, one["text"].toString()));
  return check.Outcome();
}

}  // namespace

void RegisterEmailKinds(KindTable& table) {
  table.Add("wrap", PlayText(WrapQuotedLines, "text"));
  table.Add("htmlbody", PlayText(EncodeHtmlBody, "html"));
  table.Add("base64", PlayBase64);
  table.Add("unbase64", PlayUnbase64);
  table.Add("message", PlayMessage);
  table.Add("smtp", PlaySmtp);
  table.Add("address", PlayAddress);
  table.Add("password", PlayPassword);
  table.Add("recents", PlayRecents);
}
