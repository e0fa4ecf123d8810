// The nodes of the page, each with the number by which the page and the program speak of it, and the flat form in which
// trees of them travel. `watchContent` is called with the fragment of each template that turns up.
const bridgeTree = watchContent => {
  'use strict';
  const nodeById = new Map();
  // On the nodes themselves, where no other script sees it; faster than a map for large pages.
  const idKey = Symbol('id');
  const known = new Set();  // ids that the program has heard of
  let nextId = 1;
  const templateOf = new WeakMap();  // by the fragment with its content

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
  const idOf = node => node[idKey];  // undefined where the node has none
  const nodeOf = id => nodeById.get(id);
  const isKnown = node => known.has(node[idKey]);
  const makeKnown = (node, id) => {
    register(node, id);
    known.add(id);
  };
  // Ids below that one may come back with nodes that the program has taken out.
  const keepFree = id => { nextId = Math.max(nextId, id); };
  const makeUnknown = id => known.delete(id);
  const clear = () => {
    nodeById.clear();
    known.clear();
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

  // The outermost of the templates in whose content the node lies.
  const templateAround = node => {
    let template = templateOf.get(node.getRootNode());
    for (let outer = template; outer; outer = templateOf.get(template.getRootNode())) template = outer;
    return template;
  };
  const foundTemplate = template => {
    templateOf.set(template.content, template);
    watchContent(template.content);
  };

  // A text on its way: where the reader of messages would drop its first character, or it looks as if that had
  // happened, there is one more in front.
  const guard = '\u0001';
  const wire = text => {
    const first = text.charCodeAt(0);
    return first === 0xFEFF || first === 1 ? guard + text : text;
  };
  const unwire = text => text.charCodeAt(0) === 1 ? text.slice(1) : text;

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
          for (const attribute of node.attributes) out.push(wire(attribute.name), wire(attribute.value));
          out.push(node.childNodes.length);
          return true;
        }
        case 3: case 4: out.push(3, id, wire(node.data)); return false;
        case 8: out.push(8, id, wire(node.data)); return false;
        case 9: out.push(9, id, node.childNodes.length); return true;
        case 10: out.push(10, id, node.name, node.publicId, node.systemId); return false;
        case 11: out.push(11, id, node.childNodes.length); return true;
        default: out.push(8, id, ''); return false;  // processing instructions
      }
    };
    const isTemplate = node => node.nodeType === 1 && node.localName === 'template' && node.namespaceURI === HTML;
    const leave = node => {
      if (!isTemplate(node)) return;
      foundTemplate(node);
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
  // The last attribute changes places with none: those that stood at `index` and behind it stand behind it again.
  const moveLastAttribute = (element, index) => {
    for (const attribute of [...element.attributes].slice(index, -1)) {
      element.removeAttributeNode(attribute);
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
  // `displaced` is called with each node that has borne the number of one in the tree until now: what the program took
  // out and puts in again, while the page's scripts have moved it elsewhere. It has no number any more.
  const build = (flat, position, displaced) => {
    const levels = [];
    let top = null;
    do {
      const kind = flat[position.at++];
      const id = flat[position.at++];
      let node;
      let children = 0;
      if (kind === 3) {
        node = document.createTextNode(unwire(flat[position.at++]));
      } else if (kind === 8) {
        node = document.createComment(unwire(flat[position.at++]));
      } else if (kind === 10) {
        // Stands for the document's own, which stays: no script can make one with the names that parsers let pass.
        node = document.implementation.createDocumentType('html', '', '');
        position.at += 3;
      } else if (kind === 9 || kind === 11) {
        node = document.createDocumentFragment();
        children = flat[position.at++];
      } else {
        node = createElement(kind, flat[position.at++]);
        for (let n = flat[position.at++]; n > 0; --n)
          setAttribute(node, unwire(flat[position.at++]), unwire(flat[position.at++]));
        children = flat[position.at++];
      }
      if (id) {  // what lies in a template has none
        const former = nodeById.get(id);
        if (former) {
          former[idKey] = undefined;
          displaced(former);
        }
        makeKnown(node, id);
      }
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
          done.content.appendChild(build(flat, position, displaced));
          foundTemplate(done);
        }
      }
    } while (levels.length);
    return top;
  };

  return {idFor, idOf, nodeOf, isKnown, makeKnown, makeUnknown, clear, forget, templateAround, describe, build,
          setAttribute, moveLastAttribute, keepFree, wire};
};
