// What elements and their inline styles say of the look of text, as far as the format commands have to know it.
#pragma once

#include <QString>

#include "Node.h"

enum class FontProperty { Color, Face, Size, Background };

// The attribute of FONT; "" for the background, which has none.
QString FontAttribute(FontProperty property);
// The property of CSS.
QString StyleProperty(FontProperty property);

// Whether text in the element gets the property from the element's own kind or style, so that a FONT around it has no
// effect on it.
bool Overrides(const Node* element, FontProperty property);

// Whether the element sets the weight of its text, one way or the other.
bool SetsWeight(const Node* element);
// Whether the element is what makes its text bold: B, STRONG, or a style.
bool IsBoldElement(const Node* element);
bool HasBoldStyle(const Node* element);

// Whether text directly in the node is bold.
bool IsBold(const Node* node);

// "#RRGGBB" in capitals for an opaque colour of CSS; "" for anything else.
QString CssColor(const QString& value);

// "1" to "7" for a size as FONT takes it; "" for anything else.
QString FontSizeDigit(const QString& value);

// One declaration of an inline style.
QString StyleValue(const Node* element, const QString& property);
