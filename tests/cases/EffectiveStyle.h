// What a text looks like after everything above it in the tree has had its say: tags, their old attributes, inline
// styles and inheritance. Follows the HTML standard's rendering rules, but for these: B and STRONG make bold whatever
// is around them, and an unvisited link is #0000FF. Style sheets, hsl() and calc() are not known.
// Shares nothing with the program's commands; legacy colours are read by the model's own rules.
#pragma once

#include <QString>

struct Node;

struct EffectiveStyle {
  // Compared between two texts.
  int weight = 400;  // as in CSS; see IsBold
  QString face;      // lower case, without quotes and blanks round the commas; "" where nothing sets one
  double size = 16;  // pixels
  QString color;     // "#rrggbb", with "/alpha" behind it when it isn't opaque; "transparent" when nothing shows
  QString link;      // HREF of the innermost link; "" outside links
  bool IsBold() const { return weight >= 600; }

  // How its characters stand in the page.
  bool keepsSpace = false;  // white space isn't collapsed
  bool isBlock = false;     // of this element alone

  // What elements further down go back to.
  double rootSize = 16;
  QString bodyColor;
  QString linkColor;
};

// Outside of everything.
EffectiveStyle InitialStyle();

// The style of an element's content. `quirks`: by the rules for pages without a document type.
EffectiveStyle StyleInside(const Node* element, const EffectiveStyle& parent, bool quirks);
