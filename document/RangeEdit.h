// The two edits that everything else is made of: taking out what lies between two points, and putting nodes in.
#pragma once

#include <vector>

#include "BoundaryPoint.h"

class Gateway;

// Deletes the content of `range`, which is one of the page's live ranges, and collapses it to its start. Elements
// go only when both their tags lie inside, and of a table that lies inside in part the rows and cells stay, emptied,
// unless the range was set round them; a range over nothing but edges of blocks and cells deletes nothing. Texts that
// come to stand side by side become one.
void DeleteContent(Gateway& gateway, LiveRange& range);

// Puts detached nodes in at `at` and returns the place behind the last of them: inside the text when that is a text,
// else behind the node. Text at a place inside or at an end of a text goes into that text.
BoundaryPoint InsertNodes(Gateway& gateway, const BoundaryPoint& at, const std::vector<Node*>& nodes);

// Takes one node out and joins the texts on both sides of it.
void RemoveNode(Gateway& gateway, const Node* node);
