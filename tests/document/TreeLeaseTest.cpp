// A page that is read on another thread than its own. Compiled with the thread sanitizer as well.
#include "TreeLease.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <random>

#include "Gateway.h"
#include "HtmlParser.h"
#include "QtPrinters.h"
#include "RandomSeed.h"
#include "Serializer.h"
#include "TreeBuilder.h"

namespace {

struct Page {
  explicit Page(const QString& body) { ParseDocument("<html><body>" + body + "</body></html>", tree); }
  const Node* Paragraph(int index = 0) const {
    const Node* node = tree.root();
    while (node && !(node->IsElement(Known().p) && index-- == 0)) node = NextInTree(node);
    return node;
  }
  PageTree tree;
  Gateway gateway{tree};
};

QString LargeBody() {
  return QStringLiteral("<p align=left>Dear <b>friends</b> &amp; all</p><table><tr><td>1</td></tr></table>")
      .repeated(2000);
}

std::optional<QByteArray> BytesOf(TreeLease& lease) {
  const std::optional<PageToWrite> page = PageForFile(lease);
  return page ? std::optional(page->Bytes()) : std::nullopt;
}

TEST(TreeLease, WhatIsReadElsewhereIsTheFileOfThePage) {
  const Page page(LargeBody());
  const auto lease = page.tree.Lend();
  auto read = std::async(std::launch::async, [&] { return BytesOf(*lease); });
  EXPECT_EQ(read.get(), FileHtml(page.tree));
  EXPECT_FALSE(lease->HasEnded());
}

TEST(TreeLease, EndsWithEveryChangeOfThePage) {
  const std::pair<const char*, std::function<void(Page&)>> changes[] = {
      {"letter", [](Page& page) { page.gateway.ReplaceData(page.Paragraph()->firstChild(), 0, 1, "x"); }},
      {"attribute", [](Page& page) { page.gateway.SetAttribute(page.Paragraph(), "id", "x"); }},
      {"insert", [](Page& page) { page.gateway.Insert(page.Paragraph(), nullptr, TreeBuilder::Text("x")); }},
      {"remove", [](Page& page) { page.gateway.Remove(page.Paragraph()); }},
      {"encoding", [](Page& page) { page.tree.SetEncoding("KOI8-R"); }},
      {"scripting", [](Page& page) { page.tree.SetScripting(true); }},
      {"another page", [](Page& page) { ParseDocument("<p>b", page.tree); }},
      {"another reader", [](Page& page) { page.tree.Lend(); }}};
  for (const auto& [name, change] : changes) {
    Page page("<p>abc</p>");
    const auto lease = page.tree.Lend();
    change(page);
    EXPECT_TRUE(lease->HasEnded()) << name;
    EXPECT_FALSE(PageForFile(*lease)) << name;
  }
}

TEST(TreeLease, EndsWithThePage) {
  std::shared_ptr<TreeLease> lease;
  {
    const Page page("<p>abc</p>");
    lease = page.tree.Lend();
  }
  EXPECT_FALSE(PageForFile(*lease));
}

// Whatever the moment: what a reader brings is the page as it was lent, and never half of a change.
TEST(TreeLease, AReaderBringsThePageAsItWasLentOrNothing) {
  std::mt19937 random(RandomSeed("readers"));
  Page page(LargeBody());
  int read = 0, ended = 0;
  // Until both have been seen, on a machine of any speed.
  for (int turn = 0; turn < 60 || ((read < 5 || ended < 5) && turn < 2000); ++turn) {
    const QByteArray before = FileHtml(page.tree);
    const auto lease = page.tree.Lend();
    std::future<std::optional<QByteArray>> reader = std::async(std::launch::async, [&] { return BytesOf(*lease); });
    reader.wait_for(std::chrono::microseconds(random() % (1000 << turn % 8)));
    const Node* const p = page.Paragraph(int(random() % 500));
    ASSERT_TRUE(p);
    switch (random() % 4) {
      case 0:
        page.gateway.ReplaceData(p->firstChild(), 0, 1, "other");
        break;
      case 1:
        page.gateway.SetAttribute(p, "align", random() % 2 ? "right" : "center");
        break;
      case 2:
        page.gateway.Insert(p->parent(), p, TreeBuilder::Element(Known().hr));
        break;
      default:
        page.gateway.Remove(p);
        break;
    }
    const std::optional<QByteArray> brought = reader.get();
    EXPECT_EQ(brought.value_or(before) == before, true) << "turn " << turn;
    ++(brought ? read : ended);
  }
  EXPECT_GE(read, 5);
  EXPECT_GE(ended, 5);
}

}  // namespace
