#include "ElementKind.h"

#include "PageViewFixture.h"

namespace {

TEST(ElementKinds, AreToldByTheTagInCapitals) {
  const std::pair<const char*, ElementKind> rows[] = {
      {"FONT", ElementKind::TextBlock}, {"B", ElementKind::TextPart},  {"STRONG", ElementKind::TextPart},
      {"A", ElementKind::Link},         {"IMG", ElementKind::Picture}, {"TABLE", ElementKind::Table},
      {"TR", ElementKind::Row},         {"TD", ElementKind::Cell},     {"BODY", ElementKind::Page},
      {"", ElementKind::None},          {"P", ElementKind::None},      {"TH", ElementKind::None},
      {"TBODY", ElementKind::None},     {"I", ElementKind::None},      {"font", ElementKind::None},
      {"FONTS", ElementKind::None},     {"HTML", ElementKind::None},
  };
  for (const auto& [tag, kind] : rows) EXPECT_EQ(kind, KindOf(QString::fromLatin1(tag))) << tag;
  EXPECT_EQ(ElementKind::None, KindOf(HTMLElement()));
}

TEST(ElementKinds, ALinkTakesTextAndOnlyBlocksAndPicturesMove) {
  using enum ElementKind;
  for (const ElementKind kind : {None, TextBlock, TextPart, Link, Picture, Table, Row, Cell, Page}) {
    EXPECT_EQ(kind == TextBlock || kind == TextPart || kind == Link, IsText(kind)) << int(kind);
    EXPECT_EQ(kind == TextBlock || kind == Picture, IsMovable(kind)) << int(kind);
  }
}

class TableOfAPart : public PageViewTest {};

TEST_F(TableOfAPart, IsTheFirstThatIsAtMostThreeElementsUp) {
  page_.ShowBody(
      "<TABLE id='outer'><TR id='row'><TD id='cell'><FONT id='font'>a</FONT>"
      "<TABLE id='inner'><TR><TD id='deep'>b</TD></TR></TABLE></TD></TR></TABLE>");
  EXPECT_EQ("outer", TableAround(Named("row")).id());
  EXPECT_EQ("outer", TableAround(Named("cell")).id());
  EXPECT_EQ("inner", TableAround(Named("deep")).id());
  EXPECT_FALSE(TableAround(Named("font"))) << "four up";
  EXPECT_FALSE(TableAround(Named("outer"))) << "its own isn't meant";
  EXPECT_FALSE(TableAround(Named("")));
  EXPECT_FALSE(TableAround(HTMLElement()));
}

}  // namespace
