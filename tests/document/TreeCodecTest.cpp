#include "TreeCodec.h"

#include <gtest/gtest.h>

#include "HTMLDocument.h"
#include "HtmlParser.h"
#include "QtPrinters.h"

namespace {

TEST(TreeCodec, ATreeComesBackAsItWas) {
  HTMLDocument document;
  ParseDocument(
      "<!DOCTYPE html PUBLIC 'p' 's'><!--c--><p id=x>a&nbsp;<svg "
      "viewBox=1><g/></svg><math><mi>m</math><template>t<template>u"
      "</template></template><br>b",
      document.tree());
  QJsonArray wire;
  EncodeTree(document.tree().root(), wire);
  int from = 0;
  Node* const copy = DecodeTree(wire, from);
  ASSERT_TRUE(copy);
  EXPECT_EQ(from, wire.size());
  QJsonArray again;
  EncodeTree(copy, again);
  EXPECT_EQ(again, wire);
  DestroyTree(copy);
}

TEST(TreeCodec, WhatIsNoTreeIsRefused) {
  HTMLDocument document;
  ParseDocument("<!DOCTYPE html><!--c--><p id=x>a<template>t</template>", document.tree());
  QJsonArray wire;
  EncodeTree(document.tree().root(), wire);
  for (int length = 0; length < wire.size(); ++length) {
    QJsonArray cut = wire;
    while (cut.size() > length) cut.removeLast();
    int from = 0;
    EXPECT_EQ(DecodeTree(cut, from), nullptr) << length;
  }
  const QJsonArray nonsense[] = {
      {}, {7, 1}, {"x"}, {1, 5, 3}, {1, 1, "b", -1, 0}, {3, 1e300, "x"}, {3, 2147483647, "x"}};
  for (const QJsonArray& one : nonsense) {
    int from = 0;
    Node* const tree = DecodeTree(one, from);
    if (tree) DestroyTree(tree);
    EXPECT_EQ(tree != nullptr, one == QJsonArray({1, 1, "b", -1, 0}));
  }
}

// The reader of messages would drop a U+FEFF in front.
TEST(TreeCodec, ATextThatBeginsWithAByteOrderMarkIsGuarded) {
  const QString mark = QChar(0xFEFF);
  const QString guard = QChar(1);
  EXPECT_EQ(ToWire(mark + u'a'), guard + mark + u'a');
  EXPECT_EQ(ToWire(guard), guard + guard);
  EXPECT_EQ(ToWire("a" + mark), "a" + mark);
  for (const QString& text : {mark, guard, QString(), guard + mark, mark + mark, QStringLiteral("a")})
    EXPECT_EQ(FromWire(ToWire(text)), text);
}

}  // namespace
