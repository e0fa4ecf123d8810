// Files that are dragged in from another program.
#pragma once

#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QString>
#include <QUrl>

// The path, in native form, of the one file of this machine that is being dragged; "" for anything else, several files
// included.
inline QString DroppedFile(const QDropEvent& event) {
  const QList<QUrl> urls = event.mimeData()->urls();
  return urls.size() == 1 && urls[0].isLocalFile() ? QDir::toNativeSeparators(urls[0].toLocalFile()) : QString();
}

// Takes what is dropped, or would be, as a copy whatever keys are held: who gave a file to be moved would delete it.
inline void AcceptCopy(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}
