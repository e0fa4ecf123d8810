// Brings into the model what the page's own scripts have changed in the live page.
#pragma once

#include <QJsonObject>

class Gateway;

// `changes` tells the new state of what was touched:
//   "children": [[parent id, child, ...], ...], a child being its id or, where the model doesn't know it, its tree
//   "attributes": [[element id, name, value, ...], ...]
//   "data": [[text or comment id, data], ...]
// Live ranges follow by the rules for removals, insertions and replaced data. Nodes that only moved keep their
// identity. What doesn't fit the model is passed over.
void ApplyForeignChanges(Gateway& gateway, const QJsonObject& changes);
