// Where things are in the page: places as the program names them (a container's number, then an offset of text or the
// child behind the place) and in pixels of the view.
const bridgePlaces = tree => {
  'use strict';
  const {idOf, nodeOf} = tree;
  const isElement = node => node.nodeType === 1;
  const isText = node => node.nodeType === 3 || node.nodeType === 4;

  // As a pair, and as another pair where a node in the first one is such that the program may not have heard of it: the
  // nearest place that it knows, outwards and then onwards. `isHeardOf` tells.
  const encode = (container, offset, isHeardOf) => {
    if (!container) return [];
    let child = isText(container) ? null : container.childNodes[offset] || null;
    const place = [idOf(container) || 0, isText(container) ? offset : child ? idOf(child) || 0 : 0];
    if (isHeardOf(container) && (!child || isHeardOf(child))) return place;
    while (container && !isHeardOf(container)) {
      child = container.nextSibling;
      container = container.parentNode;
    }
    while (child && !isHeardOf(child)) child = child.nextSibling;
    return container ? [...place, idOf(container), child ? idOf(child) : 0] : place;
  };
  const decode = (id, rest) => {
    const container = nodeOf(id);
    if (!container) return null;
    if (isText(container)) return [container, Math.min(rest, container.length)];
    const child = rest && nodeOf(rest);
    if (!child || child.parentNode !== container) return [container, container.childNodes.length];
    return [container, Array.prototype.indexOf.call(container.childNodes, child)];
  };
  const range = document.createRange();  // one for all, as each that is alive costs time at every change
  const rectangleOf = node => {
    if (isElement(node)) return node.getClientRects().length ? node.getBoundingClientRect() : null;
    range.selectNode(node);
    const rectangles = range.getClientRects();
    return rectangles.length ? range.getBoundingClientRect() : null;
  };
  const positionOf = (container, offset) => {
    range.setStart(container, offset);
    range.collapse(true);
    const rectangles = range.getClientRects();
    if (rectangles.length) return [rectangles[0].left, rectangles[0].top];
    let child = isText(container) ? null : container.childNodes[offset];
    for (let next = child; next; next = next.nextSibling) {
      const rectangle = rectangleOf(next);
      if (rectangle) return [rectangle.left, rectangle.top];
    }
    let previous = isText(container) ? container.previousSibling
                                     : child ? child.previousSibling : container.lastChild;
    for (; previous; previous = previous.previousSibling) {
      const rectangle = rectangleOf(previous);
      if (rectangle) return [rectangle.right, rectangle.top];
    }
    if (isElement(container) && container !== document.body) {
      const rectangle = rectangleOf(container);
      if (rectangle) return [rectangle.left, rectangle.top];
    }
    if (!document.body) return [0, 0];
    const style = getComputedStyle(document.body);
    const corner = document.body.getBoundingClientRect();
    return [corner.left + parseFloat(style.paddingLeft || 0), corner.top + parseFloat(style.paddingTop || 0)];
  };

  // The place in the text nearest to a point of the view. Where the page itself was hit and the place would lie in a
  // table, it lies behind (or before) that table, so that text can follow a table at the end of a page.
  const caretAt = (x, y, target) => {
    const range = document.caretRangeFromPoint(x, y);
    if (!range) return null;
    let container = range.startContainer;
    let offset = range.startOffset;
    if (target === document.body || target === document.documentElement) {
      let table = null;
      for (let node = container; node && node !== document.body; node = node.parentNode)
        if (node.nodeName === 'TABLE') table = node;
      if (table) {
        const box = table.getBoundingClientRect();
        const before = y < box.top || (y < box.bottom && x < box.left);
        container = table.parentNode;
        offset = Array.prototype.indexOf.call(container.childNodes, table) + (before ? 0 : 1);
      }
    }
    return [container, offset];
  };

  // Whether a point of the view lies on the letters around a place.
  const isOnText = (container, offset, x, y) => {
    if (!isText(container)) return false;
    range.setStart(container, Math.max(0, offset - 1));
    range.setEnd(container, Math.min(container.length, offset + 1));
    return [...range.getClientRects()].some(r => x >= r.left && x <= r.right && y >= r.top && y <= r.bottom);
  };

  return {encode, decode, positionOf, caretAt, isOnText};
};
