// Runs in an isolated world of the page, which the page's own scripts neither see nor touch. It tells the program what
// the page is and what happens in it, carries out numbered batches of changes, and measures. It decides nothing about
// editing.
//
// Messages to the program are arrays whose first item is a word; see HostedWebBrowser::Receive. The program calls
// receive(). Changes that the page's scripts make are told as the new state of what they touched. A batch that the
// program sent before it had heard of such a change may not fit any more: it is carried out as far as possible, and
// then the state of everything that it and the unheard reports touched is told again. The program ignores reports that
// are older than its own last batch, so both sides agree once the page is quiet.
'use strict';
const corvane = (() => {
  const token = Math.random().toString(36).slice(2);
  const nodeById = new Map();
  const idKey = Symbol('id');  // on the nodes themselves, where no other script sees it; faster than a map for large pages
  const known = new Set();  // ids that the program has heard of
  let nextId = 1;
  let port = null;
  const waiting = [];
  let applied = 0;        // number of the last batch of changes
  let reportNumber = 0;   // number of the last report of foreign changes
  let reports = [];       // those that the program hasn't acknowledged
  let selectionNumber = 0;
  let takesKeys = false;
  let observer = null;
  let lastUp = null;
  const templateOf = new WeakMap();  // by the fragment with its content
  const watched = {subtree: true, childList: true, attributes: true, characterData: true};
  let complete = false;

  const send = (...message) => {
    if (port) port.Receive([token, ...message]); else waiting.push([token, ...message]);
  };

  // --- nodes and their ids

  const isElement = node => node.nodeType === 1;
  const isText = node => node.nodeType === 3 || node.nodeType === 4;
  const HTML = 'http://www.w3.org/1999/xhtml';
  const SVG = 'http://www.w3.org/2000/svg';
  const MATHML = 'http://www.w3.org/1998/Math/MathML';
  const prefixes = {xlink: 'http://www.w3.org/1999/xlink', xml: 'http://www.w3.org/XML/1998/namespace',
                    xmlns: 'http://www.w3.org/2000/xmlns/'};

  const register = (node, id) => {
    nodeById.set(id, node);
    node[idKey] = id;
    if (id >= nextId) nextId = id + 1;
  };
  const idFor = node => {
    let id = node[idKey];
    if (id === undefined) {
      id = nextId;
      register(node, id);
    }
    return id;
  };
  const forEachIn = (root, visit) => {
    const walker = document.createTreeWalker(root, NodeFilter.SHOW_ALL);
    for (let node = root; node; node = walker.nextNode()) visit(node);
  };
  const forget = root => forEachIn(root, node => {
    const id = node[idKey];
    if (id === undefined) return;
    nodeById.delete(id);
    node[idKey] = undefined;
    known.delete(id);
  });

  const watchContent = template => {
    templateOf.set(template.content, template);
    if (observer) observer.observe(template.content, watched);
  };

  // The flat form of a tree; every node in it becomes known.
  const describe = (root, out, introduced) => {
    const one = node => {
      const id = idFor(node);
      known.add(id);
      if (introduced) introduced.push(id);
      switch (node.nodeType) {
        case 1: {
          const kind = node.namespaceURI === SVG ? 2 : node.namespaceURI === MATHML ? 4 : 1;
          out.push(kind, id, node.prefix ? node.nodeName : node.localName, node.attributes.length);
          for (const attribute of node.attributes) out.push(attribute.name, attribute.value);
          out.push(node.childNodes.length);
          return true;
        }
        case 3: case 4: out.push(3, id, node.data); return false;
        case 8: out.push(8, id, node.data); return false;
        case 9: out.push(9, id, node.childNodes.length); return true;
        case 10: out.push(10, id, node.name, node.publicId, node.systemId); return false;
        case 11: out.push(11, id, node.childNodes.length); return true;
        default: out.push(8, id, ''); return false;  // processing instructions
      }
    };
    const isTemplate = node => node.nodeType === 1 && node.localName === 'template' && node.namespaceURI === HTML;
    const leave = node => {
      if (!isTemplate(node)) return;
      watchContent(node);
      describe(node.content, out, introduced);
    };
    let node = root;
    for (;;) {
      if (one(node) && node.firstChild) {
        node = node.firstChild;
        continue;
      }
      for (;;) {
        leave(node);
        if (node === root) return;
        if (node.nextSibling) break;
        node = node.parentNode;
      }
      node = node.nextSibling;
    }
  };

  // What a browser's parser makes, so that scripts in it never run and any name goes.
  const parsed = html => {
    const template = document.createElement('template');
    template.innerHTML = html;
    return template.content;
  };
  const setAttribute = (element, name, value) => {
    const colon = name.indexOf(':');
    const space = element.namespaceURI !== HTML && prefixes[colon > 0 ? name.slice(0, colon) : name];
    try {
      if (space) element.setAttributeNS(space, name, value); else element.setAttribute(name, value);
    } catch (e) {
      const holder = parsed('<p ' + name + '="">').firstChild;
      const attribute = holder && holder.attributes[0];
      if (!attribute) return;
      holder.removeAttributeNode(attribute);
      attribute.value = value;
      element.setAttributeNode(attribute);
    }
  };
  const createElement = (kind, name) => {
    if (kind === 1 && name === 'script') return parsed('<script></script>').firstChild;
    if (kind === 2 && name === 'script') return parsed('<svg><script></script></svg>').firstChild.firstChild;
    try {
      return document.createElementNS(kind === 2 ? SVG : kind === 4 ? MATHML : HTML, name);
    } catch (e) {
      return parsed('<' + name + '>').firstChild || document.createElement('span');
    }
  };
  const build = (flat, position) => {
    const levels = [];
    let top = null;
    do {
      const kind = flat[position.at++];
      const id = flat[position.at++];
      let node;
      let children = 0;
      if (kind === 3) {
        node = document.createTextNode(flat[position.at++]);
      } else if (kind === 8) {
        node = document.createComment(flat[position.at++]);
      } else if (kind === 10) {
        node = document.implementation.createDocumentType(flat[position.at] || 'html', flat[position.at + 1],
                                                          flat[position.at + 2]);
        position.at += 3;
      } else if (kind === 9 || kind === 11) {
        node = document.createDocumentFragment();
        children = flat[position.at++];
      } else {
        node = createElement(kind, flat[position.at++]);
        for (let n = flat[position.at++]; n > 0; --n) setAttribute(node, flat[position.at++], flat[position.at++]);
        children = flat[position.at++];
      }
      register(node, id);
      known.add(id);
      if (!top) top = node;
      if (levels.length) {
        const level = levels[levels.length - 1];
        level.node.appendChild(node);
        --level.left;
      }
      levels.push({node, left: children});
      while (levels.length && levels[levels.length - 1].left <= 0) {
        const done = levels.pop().node;
        if (done.nodeType === 1 && done.localName === 'template' && done.namespaceURI === HTML) {
          done.content.appendChild(build(flat, position));
          watchContent(done);
        }
      }
    } while (levels.length);
    return top;
  };

  // --- places and rectangles

  const encode = (container, offset) => {
    if (!container || container[idKey] === undefined) return [0, 0];
    if (isText(container)) return [container[idKey], offset];
    const child = container.childNodes[offset];
    return [container[idKey], child ? child[idKey] || 0 : 0];
  };
  const decode = (id, rest) => {
    const container = nodeById.get(id);
    if (!container) return null;
    if (isText(container)) return [container, Math.min(rest, container.length)];
    const child = rest && nodeById.get(rest);
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

  // --- changes by the page's scripts

  const touched = () => ({children: new Set(), attributes: new Set(), data: new Set(), added: new Set()});
  const collect = (records, into) => {
    for (const record of records) {
      // What lies in a template is told with the template as a whole.
      let template = templateOf.get(record.target.getRootNode());
      if (template) {
        for (let outer; (outer = templateOf.get(template.getRootNode())); template = outer);
        known.delete(template[idKey]);
        if (template.parentNode) into.children.add(template.parentNode);
        continue;
      }
      if (record.type === 'childList') {
        into.children.add(record.target);
        for (const node of record.addedNodes) into.added.add(node);
      } else if (record.type === 'attributes') into.attributes.add(record.target);
      else into.data.add(record.target);
    }
  };
  // `again`: the program may have deleted what the page moved elsewhere, so that is told whole.
  const report = (into, again) => {
    const introduced = [];
    const message = {children: [], attributes: [], data: []};
    const isKnown = node => node.isConnected && known.has(node[idKey]);
    for (const parent of into.children) {
      if (!isKnown(parent)) continue;
      const list = [parent[idKey]];
      for (const child of parent.childNodes) {
        const id = child[idKey];
        if (id !== undefined && known.has(id) && !(again && into.added.has(child))) {
          list.push(id);
        } else {
          const flat = [];
          describe(child, flat, introduced);
          list.push(flat);
        }
      }
      message.children.push(list);
    }
    const fresh = new Set(introduced);
    for (const element of into.attributes) {
      if (!isKnown(element) || fresh.has(element[idKey])) continue;
      const entry = [element[idKey]];
      for (const attribute of element.attributes) entry.push(attribute.name, attribute.value);
      message.attributes.push(entry);
    }
    for (const node of into.data)
      if (isKnown(node) && !fresh.has(node[idKey])) message.data.push([node[idKey], node.data]);
    reports.push({number: ++reportNumber, touched: into, introduced});
    send('changes', reportNumber, applied, message);
  };
  // `records` come from the page's scripts. What left the page is forgotten once the report is on its way.
  const tellForeign = records => {
    if (!records.length) return;
    const into = touched();
    collect(records, into);
    report(into);
    for (const record of records)
      for (const node of record.removedNodes) if (!node.isConnected) forget(node);
  };
  const flush = () => { if (observer) tellForeign(observer.takeRecords()); };

  // --- changes by the program

  const moveAll = (ids, parent, before, into) => {
    for (const id of ids) {
      const node = nodeById.get(id);
      if (!node || node.contains(parent)) continue;
      if (node.parentNode && node.parentNode !== parent) into.children.add(node.parentNode);
      into.added.add(node);
      parent.insertBefore(node, before);
    }
  };
  const carryOut = (operation, into) => {
    switch (operation[0]) {
      case 'insert': {
        const parent = nodeById.get(operation[1]);
        const before = operation[2] ? nodeById.get(operation[2]) : null;
        const node = build(operation[3], {at: 0});
        if (!parent) return forget(node);
        into.children.add(parent);
        try {
          parent.insertBefore(node, before && before.parentNode === parent ? before : null);
        } catch (e) { forget(node); }
        break;
      }
      case 'remove': {
        const parent = nodeById.get(operation[1]);
        const node = nodeById.get(operation[2]);
        if (parent) into.children.add(parent);
        if (!node) return;
        if (node.parentNode) node.parentNode.removeChild(node);
        forget(node);
        break;
      }
      case 'wrap': {
        const parent = nodeById.get(operation[1]);
        const before = operation[2] && nodeById.get(operation[2]);
        const wrapper = build(operation[3], {at: 0});
        if (!parent) return forget(wrapper);
        into.children.add(parent);
        into.children.add(wrapper);
        into.added.add(wrapper);  // with what is in it, which the program may have elsewhere or no more
        parent.insertBefore(wrapper, before && before.parentNode === parent ? before : null);
        moveAll(operation[4], wrapper, null, into);
        break;
      }
      case 'unwrap': {
        const parent = nodeById.get(operation[1]);
        const element = nodeById.get(operation[2]);
        if (parent) {
          into.children.add(parent);
          const place = element && element.parentNode === parent ? element : null;
          moveAll(operation[3], parent, place, into);
          if (element) moveAll([...element.childNodes].map(idFor), parent, place, into);
        }
        if (!element) return;
        if (element.parentNode) {
          into.children.add(element.parentNode);
          element.parentNode.removeChild(element);
        }
        forget(element);
        break;
      }
      case 'set': case 'unset': {
        const element = nodeById.get(operation[1]);
        if (!element) return;
        into.attributes.add(element);
        if (operation[0] === 'set') setAttribute(element, operation[2], operation[3]);
        else element.removeAttribute(operation[2]);
        break;
      }
      case 'data': {
        const node = nodeById.get(operation[1]);
        if (!node) return;
        into.data.add(node);
        const offset = Math.min(operation[2], node.length);
        node.replaceData(offset, operation[3], operation[4]);
        break;
      }
    }
  };
  const apply = (number, heard, operations) => {
    flush();
    const into = touched();
    for (const operation of operations) carryOut(operation, into);
    observer.takeRecords();
    applied = number;
    const unheard = reports.filter(r => r.number > heard);
    reports = [];
    if (!unheard.length) return;
    for (const old of unheard) {
      for (const id of old.introduced) known.delete(id);
      for (const kind of ['children', 'attributes', 'data', 'added']) for (const node of old.touched[kind]) into[kind].add(node);
    }
    report(into, true);
  };

  const select = (number, start, end) => {
    selectionNumber = number;
    const selection = getSelection();
    const from = start && decode(start[0], start[1]);
    const to = end && decode(end[0], end[1]);
    if (from && to) selection.setBaseAndExtent(from[0], from[1], to[0], to[1]); else selection.removeAllRanges();
  };
  const measure = (id, rest) => {
    const place = decode(id, rest);
    return place && place[0].isConnected ? positionOf(place[0], place[1]).map(Math.round) : [];
  };

  // Answers with the place that the last message asks for, if it does.
  const receive = messages => {
    let place;
    for (const message of messages) {
      switch (message[0]) {
        case 'batch': apply(message[1], message[2], message[3]); break;
        case 'heard': reports = reports.filter(r => r.number > message[1]); break;
        case 'select': select(message[1], message[2], message[3]); break;
        case 'measure': place = measure(message[1], message[2]); break;
        case 'keys': takesKeys = message[1]; break;
        case 'adopt': adopt(message[1], message[2], message[3]); break;
        case 'tell': flush(); send('told', message[1], tree()); break;
      }
    }
    return place;
  };

  // --- events

  const selectionNow = () => {
    const selection = getSelection();
    if (!selection.rangeCount) return [selectionNumber];
    const range = selection.getRangeAt(0);
    return [selectionNumber, ...encode(range.startContainer, range.startOffset),
            ...encode(range.endContainer, range.endOffset)];
  };
  const elementOf = target => {
    let node = target;
    while (node && node.nodeType !== 1) node = node.nodeType === 9 ? node.documentElement : node.parentNode;
    if (node === document.documentElement && document.body) node = document.body;
    return node;
  };
  const tell = (type, event, target, withCaret) => {
    flush();
    const element = elementOf(target);
    const message = {type, target: element ? element[idKey] || 0 : 0, x: event.clientX || 0, y: event.clientY || 0,
                     button: event.button || 0, keyCode: event.keyCode || 0, shift: !!event.shiftKey,
                     selection: selectionNow(), applied, scroll: [scrollX, scrollY]};
    if (withCaret) {
      const caret = caretAt(event.clientX, event.clientY, element);
      if (caret) {
        const position = positionOf(caret[0], caret[1]);
        message.caret = [...encode(caret[0], caret[1]), Math.round(position[0]), Math.round(position[1])];
      }
    }
    send('event', message);
  };
  const listen = (type, handler) => addEventListener(type, handler, true);

  listen('mousedown', event => {
    if (!event.isTrusted) return;
    if (event.button === 2 || (event.button === 0 && event.detail > 1)) event.preventDefault();
    if (event.button === 0 && event.detail <= 1 && !event.shiftKey) getSelection().removeAllRanges();
    tell('mousedown', event, event.target, false);
  });
  listen('mouseup', event => {
    if (!event.isTrusted) return;
    lastUp = event.target;
    tell('mouseup', event, event.target, false);
  });
  listen('click', event => {
    event.preventDefault();
    if (!event.isTrusted || event.detail === 0) return;
    takesKeys = true;  // until the program, which knows, says otherwise: a key may be faster than it
    tell('click', event, lastUp && lastUp.isConnected ? lastUp : event.target, true);
  });
  listen('dblclick', event => {
    event.preventDefault();
    if (event.isTrusted) tell('dblclick', event, event.target, true);
  });
  listen('contextmenu', event => {
    event.preventDefault();
    if (event.isTrusted) tell('contextmenu', event, event.target, false);
  });
  for (const type of ['auxclick', 'dragstart', 'submit']) listen(type, event => event.preventDefault());
  listen('keydown', event => {
    if (event.isTrusted && takesKeys && event.keyCode === 32) event.preventDefault();
  });
  listen('keyup', event => {
    if (event.isTrusted) tell('keyup', event, event.target, false);
  });
  for (const type of ['mouseover', 'mouseout'])
    listen(type, event => {
      if (event.isTrusted) tell(type, event, event.target, false);
    });
  document.addEventListener('selectionchange', () => {
    if (complete) {
      flush();
      send('selection', selectionNow(), applied);
    }
  }, true);

  // --- the document

  const observe = () => {
    observer = new MutationObserver(tellForeign);
    observer.observe(document, watched);
  };
  const tree = () => {
    const flat = [];
    describe(document, flat, null);
    return flat;
  };
  const loaded = () => {
    if (complete) return;
    complete = true;
    observe();
    send('tree', location.href, document.compatMode === 'BackCompat', tree());
  };
  // Puts the program's page in place of what was loaded.
  const adopt = (flat, scroll, number) => {
    if (observer) observer.disconnect();
    nodeById.clear();
    known.clear();
    const type = document.doctype;
    while (document.lastChild) document.removeChild(document.lastChild);
    register(document, flat[1]);
    known.add(flat[1]);
    const position = {at: 3};
    for (let count = flat[2]; count > 0; --count) {
      const node = build(flat, position);
      if (node.nodeType === 10 && type) {
        register(type, node[idKey]);
        document.appendChild(type);
      } else if (node.nodeType !== 10) {
        document.appendChild(node);
      }
    }
    applied = number;
    reports = [];
    scrollTo(scroll[0], scroll[1]);
    observe();
  };

  new QWebChannel(qt.webChannelTransport, channel => {
    port = channel.objects.port;
    for (const message of waiting.splice(0)) port.Receive(message);
  });
  if (document.readyState === 'complete') loaded(); else addEventListener('load', loaded);
  return {receive};
})();
