// Where things are in the page: places as the program names them (a container's number, then an offset of text or the
// child behind the place) and in pixels of the view.
const bridgePlaces = (tree, style) => {
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
    const rectangle = range.getClientRects()[0];
    if (rectangle && rectangle.height) return [rectangle.left, rectangle.top];  // some engines have empty ones too
    let child = isText(container) ? null : container.childNodes[offset];
    for (let next = child; next; next = next.nextSibling) {
      const rectangle = rectangleOf(next);
      if (rectangle) return [rectangle.left, rectangle.top];
    }
    let previous = isText(container) ? container.previousSibling
                                     : child ? child.previousSibling : container.lastChild;
    for (; previous; previous = previous.previousSibling) {
      const rectangle = rectangleOf(previous);
      if (!rectangle) continue;
      // What follows something at the right side begins at the left one.
      const isAtRight = isElement(previous) && getComputedStyle(previous).float === 'right';
      return [isAtRight ? leftEdgeOf(previous.parentNode) : rectangle.right, rectangle.top];
    }
    if (isElement(container) && container !== document.body) {
      const rectangle = rectangleOf(container);
      if (rectangle) return [rectangle.left, rectangle.top];
    }
    if (!document.body) return [0, 0];
    const corner = document.body.getBoundingClientRect();
    const paddingTop = getComputedStyle(document.body).paddingTop;
    return [leftEdgeOf(document.body), corner.top + parseFloat(paddingTop || 0)];
  };
  const leftEdgeOf = element =>
    element.getBoundingClientRect().left + parseFloat(getComputedStyle(element).paddingLeft || 0);

  // --- scrolling

  let covered = 0;
  const setCovered = pixels => { covered = pixels; };
  const lineHeight = 17;  // of the caret bar
  // Scrolls the window so that a place is in view, above what lies over it. Behind the page's end there is made room.
  const reveal = (container, offset) => {
    const [left, top] = positionOf(container, offset);
    range.setStart(container, offset);
    range.collapse(true);
    const line = range.getClientRects()[0];
    const width = visualViewport.width;
    const height = Math.max(visualViewport.height - covered, 2 * lineHeight);
    const missing = (low, high, end) => high > end ? high - end : low < 0 ? low : 0;
    const right = missing(left, left + 2, width);
    const down = missing(top, top + Math.max(lineHeight, line ? line.height : 0), height);
    if (!right && !down) return;
    const ahead = right ? Math.sign(right) * width / 4 : 0;  // a line goes on, and not by a scroll for each letter
    const goal = scrollY + down;
    scrollBy({left: right + ahead, top: down, behavior: 'instant'});
    if (goal - scrollY < 1) return;
    style.makeRoom(Math.ceil(goal - scrollY));
    scrollTo({left: scrollX, top: goal, behavior: 'instant'});
  };

  // Whether everything that stands behind a child of BODY, but for what floats or is laid out by itself, ends above a
  // line of the view. `next` is the first behind it.
  const endsAbove = (next, y) => {
    for (; next; next = next.nextSibling) {
      if (isElement(next)) {
        const {float, position} = getComputedStyle(next);
        if (float !== 'none' || position === 'absolute' || position === 'fixed') continue;
      }
      const rectangle = isElement(next) || isText(next) ? rectangleOf(next) : null;
      if (rectangle && rectangle.bottom > y) return false;
    }
    return true;
  };
  // The page itself was hit below the line at which a place stands, and there is no later line: what stands behind it,
  // such as a picture at the side, is to be followed.
  const isBehindTheEnd = (container, offset, y) => {
    if (!document.body.contains(container)) return false;
    let next = container === document.body ? document.body.childNodes[offset] : container;
    if (container !== document.body) {
      while (next.parentNode !== document.body) next = next.parentNode;
      next = next.nextSibling;
    }
    let hasElement = false;
    for (let node = next; node && !hasElement; node = node.nextSibling) hasElement = isElement(node);
    if (!hasElement) return false;
    range.setStart(container, offset);
    range.collapse(true);
    const line = range.getClientRects()[0];
    return (!line || y >= line.bottom) && endsAbove(next, y);
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
      if (document.body && isBehindTheEnd(container, offset, y))
        [container, offset] = [document.body, document.body.childNodes.length];
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

  return {encode, decode, positionOf, reveal, setCovered, caretAt, isOnText};
};
