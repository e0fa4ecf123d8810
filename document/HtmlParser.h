// Turns HTML text into nodes of the model with libgumbo.
#pragma once

#include <QString>
#include <vector>

#include "Node.h"

class PageTree;

// The nodes that `html` makes as content of `context`, detached and without two texts side by side. What libgumbo
// doesn't know as a tag counts as BODY. Nesting is cut at the depth at which browsers cut it, counted with the depth
// of `context` in its document.
std::vector<Node*> ParseFragment(const QString& html, const Node* context);

// The same for a context that is in no document; `context` null is BODY.
std::vector<Node*> ParseFragment(const QString& html, const Tag* context, int depth = 0);

// Loads a whole page.
void ParseDocument(const QString& html, PageTree& tree);
