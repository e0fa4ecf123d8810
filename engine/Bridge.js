// Runs in an isolated world of the page, which the page's own scripts neither see nor touch. It tells the program what
// the page is and what happens in it, carries out numbered batches of changes, and measures. It decides nothing about
// editing.
//
// The messages of both directions stand in BridgeMessages.h. The program calls receive().
const corvane = (() => {
  'use strict';
  const token = Math.random().toString(36).slice(2);
  // The channel's own words for calling a method of the program's object, whose answers are of no interest. Its library
  // would ask first what there is to call.
  const transport = qt.webChannelTransport;
  const invokeMethod = 6;
  transport.onmessage = () => {};
  const send = (...message) => transport.send(JSON.stringify(
      {type: invokeMethod, id: 0, object: 'port', method: 'Receive', args: [[token, ...message]]}));
  const tree = bridgeTree(content => changes.watch(content));
  const style = bridgeStyle();
  const places = bridgePlaces(tree, style);
  const changes = bridgeChanges(tree, style, send);
  let selectionNumber = 0;     // of the program's last one
  let userSelections = 0;      // how often the user, or a script of the page, has selected something since
  let lastSelection = [];      // as it was when that was last looked at
  let takesKeys = false;
  let lastUp = null;
  let complete = false;

  // --- the selection; what the user selects is newer than what the program did before it heard of that

  const selectionNow = () => {
    const selection = getSelection();
    return selection.rangeCount
      ? [selection.anchorNode, selection.anchorOffset, selection.focusNode, selection.focusOffset] : [];
  };
  const settleSelection = () => { lastSelection = selectionNow(); };  // it has changed, but not by the user
  const noteSelection = () => {
    const now = selectionNow();
    if (now.length === lastSelection.length && now.every((part, at) => part === lastSelection[at])) return;
    ++userSelections;
    lastSelection = now;
  };
  const encode = (container, offset) => places.encode(container, offset, changes.isHeardOf);
  const encodeSelection = () => {
    noteSelection();
    const selection = getSelection();
    if (!selection.rangeCount) return [selectionNumber, userSelections];
    const range = selection.getRangeAt(0);
    return [selectionNumber, userSelections, encode(range.startContainer, range.startOffset),
            encode(range.endContainer, range.endOffset)];
  };
  const select = (number, heard, start, end) => {
    selectionNumber = number;
    if (userSelections > heard) return;
    const selection = getSelection();
    const from = start && places.decode(start[0], start[1]);
    const to = end && places.decode(end[0], end[1]);
    if (from && to) selection.setBaseAndExtent(from[0], from[1], to[0], to[1]); else selection.removeAllRanges();
    settleSelection();
  };

  const measure = (id, rest, hasChanged) => {
    const place = places.decode(id, rest);
    if (!place || !place[0].isConnected) return [];
    if (hasChanged) places.reveal(place[0], place[1]);
    return places.positionOf(place[0], place[1]).map(Math.round);
  };

  // Answers with the place that the last message asks for, if it does.
  const receive = messages => {
    let place;
    let hasChanged = false;
    payOwed();
    noteSelection();
    for (const message of messages) {
      switch (message[0]) {
        case 'batch':
          changes.apply(message[1], message[2], message[3]);
          settleSelection();
          hasChanged = true;
          break;
        case 'heard': changes.hear(message[1]); break;
        case 'select': select(message[1], message[2], message[3], message[4]); break;
        case 'measure': place = measure(message[1], message[2], hasChanged); break;
        case 'keys': takesKeys = message[1]; break;
        case 'cover': places.setCovered(message[1]); break;
        case 'outline': style.outline(tree.nodeOf(message[1])); break;
        case 'adopt': adopt(message[1], message[2], message[3], message[4]); break;
        case 'tell': changes.flush(); send('told', message[1], flatPage()); break;
      }
    }
    return place;
  };

  // --- events

  const elementOf = target => {
    let node = target;
    while (node && node.nodeType !== 1) node = node.nodeType === 9 ? node.documentElement : node.parentNode;
    if (node === document.documentElement && document.body) node = document.body;
    return node;
  };
  // Of an element, and of the nearest one around it that the program has heard of for certain.
  const namesOf = element => {
    if (!element || changes.isHeardOf(element)) return element ? [tree.idOf(element)] : [];
    const [id, around] = [tree.idOf(element) || 0, encode(element, 0)[2]];
    return around ? [id, around] : [id];
  };
  // The engine gives no click where what was pressed has left the tree before the release, if only to be put elsewhere.
  // What the program does to the page meanwhile must not cost the user a click.
  let pressedAt = null;  // the last batch when the left button went down
  let owed = null;       // the release whose click hasn't come
  const tellClick = event => {
    owed = null;
    takesKeys = true;  // until the program, which knows, says otherwise: a key may be faster than it
    tell('click', event, lastUp && lastUp.isConnected ? lastUp : event.target, true);
  };
  const payOwed = () => { if (owed) tellClick(owed); };
  const tell = (type, event, target, withCaret) => {
    payOwed();
    changes.flush();
    const element = elementOf(target);
    const message = {type, target: namesOf(element), x: event.clientX || 0, y: event.clientY || 0,
                     button: event.button || 0, keyCode: event.keyCode || 0, shift: !!event.shiftKey,
                     selection: encodeSelection(), applied: changes.lastApplied(), scroll: [scrollX, scrollY]};
    if (withCaret) {
      const caret = places.caretAt(event.clientX, event.clientY, element);
      if (caret) {
        const position = places.positionOf(caret[0], caret[1]);
        message.caret = [encode(caret[0], caret[1]), Math.round(position[0]), Math.round(position[1])];
        message.onText = caret[0].parentNode === element && places.isOnText(...caret, event.clientX, event.clientY);
      }
    }
    send('event', message);
  };
  // A script that writes its page anew takes all listeners away; they are put back when the document's children change.
  const listeners = [];
  const arm = () => {
    style.arm();
    for (const [target, type, handler] of listeners) target.addEventListener(type, handler, true);
  };
  const listen = (type, handler, target = window) => {
    listeners.push([target, type, handler]);
    target.addEventListener(type, handler, true);
  };

  // The engine lets no selection begin in a link, whose text could then hardly be worked on.
  let linkPress = null;
  const caretUnder = event => {
    const caret = document.caretRangeFromPoint(event.clientX, event.clientY);
    return caret && [caret.startContainer, caret.startOffset];
  };
  listen('mousemove', event => {
    if (!linkPress || !event.isTrusted) return;
    const caret = event.buttons & 1 ? caretUnder(event) : null;
    if (caret && linkPress[0].isConnected) getSelection().setBaseAndExtent(...linkPress, ...caret);
    if (!caret) linkPress = null;
  });

  listen('mousedown', event => {
    if (!event.isTrusted) return;
    // The window's own scroll bars are no part of the document.
    if (event.clientX >= visualViewport.width || event.clientY >= visualViewport.height) return send('handled', false);
    if (event.button === 2 || (event.button === 0 && event.detail > 1)) event.preventDefault();
    // The second press of a quick row selects; the third is a first one again.
    if (event.button === 0 && event.detail % 2 === 1 && !event.shiftKey) getSelection().removeAllRanges();
    if (event.button === 0) {
      pressedAt = changes.lastApplied();
      linkPress = event.detail === 1 && event.target.closest('a[href]') ? caretUnder(event) : null;
    }
    tell('mousedown', event, event.target, false);
    send('handled', false);
  });
  listen('mouseup', event => {
    if (!event.isTrusted) return;
    lastUp = event.target;
    linkPress = null;
    tell('mouseup', event, event.target, false);
    if (event.button === 0) {
      if (pressedAt !== null && pressedAt !== changes.lastApplied()) owed = event;
      pressedAt = null;
    }
    setTimeout(() => { payOwed(); send('handled', true); });  // the click comes at once, if it does
  });
  listen('click', event => {
    event.preventDefault();
    if (!event.isTrusted || event.detail === 0) return;
    tellClick(event);
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
    // The space bar would scroll, and the tabulator take the keys away.
    if (event.isTrusted && takesKeys && (event.keyCode === 32 || event.keyCode === 9)) event.preventDefault();
  });
  listen('keyup', event => {
    if (event.isTrusted) tell('keyup', event, event.target, false);
  });
  for (const type of ['mouseover', 'mouseout'])
    listen(type, event => {
      if (event.isTrusted) tell(type, event, event.target, false);
    });
  listen('selectionchange', () => {
    if (complete) {
      changes.flush();
      send('selection', encodeSelection(), changes.lastApplied());
    }
  }, document);
  listen('scroll', event => {
    if (complete && event.target === document) send('scroll', [scrollX, scrollY], changes.lastApplied());
  }, document);
  const tellFocus = () => {
    const active = document.activeElement;
    send('focus', active instanceof HTMLElement && 'contentWindow' in active);
  };
  for (const type of ['blur', 'focus'])
    listen(type, event => { if (event.target === window) setTimeout(tellFocus); });
  new MutationObserver(arm).observe(document, {childList: true});

  // --- the document

  const flatPage = () => {
    const flat = [];
    tree.describe(document, flat, null);
    return flat;
  };
  const loaded = () => {
    if (complete) return;
    complete = true;
    changes.watch(document);
    userSelections = 0;  // not looked at yet, as that has the whole page laid out first
    send('tree', performance.timeOrigin, location.href, document.compatMode === 'BackCompat', flatPage(),
         document.characterSet);
  };
  // Puts the program's page in place of what was loaded.
  const adopt = (flat, scroll, number, freeId) => {
    changes.pause();
    tree.clear();
    tree.keepFree(freeId);
    const type = document.doctype;
    while (document.lastChild) document.removeChild(document.lastChild);
    tree.makeKnown(document, flat[1]);
    const position = {at: 3};
    for (let count = flat[2]; count > 0; --count) {
      const node = tree.build(flat, position, () => {});
      if (node.nodeType === 10 && type) {
        tree.makeKnown(type, tree.idOf(node));
        document.appendChild(type);
      } else if (node.nodeType !== 10) {
        document.appendChild(node);
      }
    }
    changes.restart(number);
    userSelections = 0;
    settleSelection();
    scrollTo(scroll[0], scroll[1]);
  };

  if (document.readyState === 'complete') loaded(); else listen('load', loaded);
  // What there is of a page that ended its own load. Whether it hadn't been told before.
  const give = () => {
    const isNew = !complete;
    loaded();
    return isNew;
  };
  return {receive, give};
})();
