// What the page looks like here and nowhere else: rules in a style sheet that is no part of the document's tree.
const bridgeStyle = () => {
  'use strict';
  const sheet = new CSSStyleSheet();
  let room = 0;    // pixels behind the page's end, so that its last line can be scrolled above what lies over the view
  let version = 0;
  const rules = () => {
    const all = [];
    if (room) all.push(`html::after { content: ""; display: block; clear: both; height: ${room}px; }`);
    // In quirks mode tables take the colour of BODY's attribute, and aren't told when that changes.
    if (version) all.push(`table { --corvane-version: ${version}; }`);
    sheet.replaceSync(all.join('\n'));
  };
  // Once for each document of the window, and again where a script has written the page anew.
  const arm = () => {
    const adopted = document.adoptedStyleSheets;
    if (!adopted.includes(sheet)) document.adoptedStyleSheets = [...adopted, sheet];
  };
  // Round one element. A rule would need something in the page to find it by.
  const drawn = {outline: '2px solid #2F7FD3', outlineOffset: '1px'};
  let outlined = null;
  rules();
  arm();
  return {
    arm,
    makeRoom: pixels => {
      room += pixels;
      rules();
    },
    outline: element => {
      if (outlined) outlined.cancel();
      outlined = element ? element.animate([drawn, drawn], {duration: 1, fill: 'both'}) : null;
      if (outlined) outlined.pause();
    },
    restyleTables: () => {
      ++version;
      rules();
    },
  };
};
