#pragma once

#include <QString>
#include <QStringList>

// How addresses and the password are remembered between two runs. Lists have "*" between their items and none at the
// end.

// True for "name@host.xx": something before the "@", and behind the first "." that follows it at least two characters,
// with at least one between the two.
bool IsValidAddress(const QString& address);

// The list of recipients with `to` in it: the first ten of `items`, and `to` before them unless it occurs anywhere in
// that text, so up to eleven. A part of a longer address counts as known, and that is meant.
QString RecentRecipients(const QStringList& items, const QString& to);

// The list of senders with `from` at its top. The text of `from` goes wherever it stands behind, also as the end of a
// longer address, which so loses it, and that is meant.
QString RecentSenders(const QStringList& items, const QString& from);

// The codes of the characters in the 8-bit code page, "." between them; and back. Pieces that are no such number are
// skipped.
QString StoredPassword(const QString& password);
QString PasswordOf(const QString& stored);
