// Changes of the page, both ways: those of its own scripts are told as the new state of what they touched, batches of
// the program are carried out. A batch that the program sent before it had heard of such a change may not fit any more:
// it is carried out as far as possible, and then the state of everything that it and the unheard reports touched is
// told again. The program ignores reports that are older than its own last batch, so both sides agree once the page is
// quiet.
const bridgeChanges = (tree, style, send) => {
  'use strict';
  const {idOf, nodeOf, isKnown} = tree;
  const watched = {subtree: true, childList: true, attributes: true, characterData: true};
  let applied = 0;        // number of the last batch of changes
  let reportNumber = 0;   // number of the last report of foreign changes
  let reports = [];       // those that the program hasn't acknowledged

  // --- changes by the page's scripts

  const touched = () => ({children: new Set(), attributes: new Set(), data: new Set(), added: new Set()});
  const collect = (records, into) => {
    for (const record of records) {
      // What lies in a template is told with the template as a whole.
      const template = tree.templateAround(record.target);
      if (template) {
        tree.makeUnknown(idOf(template));
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
    const isToldOf = node => node.isConnected && isKnown(node);
    for (const parent of into.children) {
      if (!isToldOf(parent)) continue;
      const list = [idOf(parent)];
      for (const child of parent.childNodes) {
        if (isKnown(child) && !(again && into.added.has(child))) {
          list.push(idOf(child));
        } else {
          const flat = [];
          tree.describe(child, flat, introduced);
          list.push(flat);
        }
      }
      message.children.push(list);
    }
    const fresh = new Set(introduced);
    for (const element of into.attributes) {
      if (!isToldOf(element) || fresh.has(idOf(element))) continue;
      const entry = [idOf(element)];
      for (const attribute of element.attributes) entry.push(tree.wire(attribute.name), tree.wire(attribute.value));
      message.attributes.push(entry);
    }
    for (const node of into.data)
      if (isToldOf(node) && !fresh.has(idOf(node))) message.data.push([idOf(node), tree.wire(node.data)]);
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
      for (const node of record.removedNodes) if (!node.isConnected) tree.forget(node);
  };
  const observer = new MutationObserver(tellForeign);
  const flush = () => tellForeign(observer.takeRecords());

  // --- changes by the program

  const moveAll = (ids, parent, before, into) => {
    for (const id of ids) {
      const node = nodeOf(id);
      if (!node || node.contains(parent)) continue;
      if (node.parentNode && node.parentNode !== parent) into.children.add(node.parentNode);
      into.added.add(node);
      parent.insertBefore(node, before);
    }
  };
  const build = (flat, into) => tree.build(flat, {at: 0}, former => {
    if (former.parentNode) into.children.add(former.parentNode);
  });
  const carryOut = (operation, into) => {
    switch (operation[0]) {
      case 'insert': {
        const parent = nodeOf(operation[1]);
        const before = operation[2] ? nodeOf(operation[2]) : null;
        const node = build(operation[3], into);
        if (!parent) return tree.forget(node);
        into.children.add(parent);
        try {
          parent.insertBefore(node, before && before.parentNode === parent ? before : null);
        } catch (e) { tree.forget(node); }
        break;
      }
      case 'remove': {
        const parent = nodeOf(operation[1]);
        const node = nodeOf(operation[2]);
        if (parent) into.children.add(parent);
        if (!node) return;
        if (node.parentNode) node.parentNode.removeChild(node);
        tree.forget(node);
        break;
      }
      case 'wrap': {
        const parent = nodeOf(operation[1]);
        const before = operation[2] && nodeOf(operation[2]);
        const wrapper = build(operation[3], into);
        if (!parent) return tree.forget(wrapper);
        into.children.add(parent);
        into.children.add(wrapper);
        into.added.add(wrapper);  // with what is in it, which the program may have elsewhere or no more
        parent.insertBefore(wrapper, before && before.parentNode === parent ? before : null);
        moveAll(operation[4], wrapper, null, into);
        break;
      }
      case 'unwrap': {
        const parent = nodeOf(operation[1]);
        const element = nodeOf(operation[2]);
        if (parent) {
          into.children.add(parent);
          const place = element && element.parentNode === parent ? element : null;
          moveAll(operation[3], parent, place, into);
          if (element) moveAll([...element.childNodes].map(tree.idFor), parent, place, into);
        }
        if (!element) return;
        if (element.parentNode) {
          into.children.add(element.parentNode);
          element.parentNode.removeChild(element);
        }
        tree.forget(element);
        break;
      }
      case 'set': case 'unset': {
        const element = nodeOf(operation[1]);
        if (!element) return;
        into.attributes.add(element);
        if (operation[0] === 'set') tree.setAttribute(element, operation[2], operation[3]);
        else element.removeAttribute(operation[2]);
        if (operation.length > 4) tree.moveLastAttribute(element, operation[4]);
        if (element === document.body && operation[2].toLowerCase() === 'text') style.restyleTables();
        break;
      }
      case 'data': {
        const node = nodeOf(operation[1]);
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
      for (const id of old.introduced) tree.makeUnknown(id);
      for (const kind of ['children', 'attributes', 'data', 'added'])
        for (const node of old.touched[kind]) into[kind].add(node);
    }
    report(into, true);
  };

  // Whether the program knows the node for certain: it was told, and that report isn't one that may still be refused.
  const isHeardOf = node => isKnown(node) && !reports.some(report => report.introduced.includes(idOf(node)));
  const hear = number => { reports = reports.filter(r => r.number > number); };
  const watch = root => observer.observe(root, watched);  // the document, or the content of a template
  const pause = () => observer.disconnect();
  // On with a page that the program made; `number` is that of the last batch in it.
  const restart = number => {
    applied = number;
    reports = [];
    watch(document);
  };

  return {apply, hear, isHeardOf, flush, watch, pause, restart, lastApplied: () => applied};
};
