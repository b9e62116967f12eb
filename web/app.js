// The clerk's front end: one generic renderer over the forms' descriptions. The server owns
// every screen; this page draws the topmost form, sends what the clerk does as the generic
// actions a script would use (type, key, click, choose, select...), and draws the answer.
'use strict';

const $ = (sel) => document.querySelector(sel);

// ---- the tab's identity and the requests -------------------------------------------------

// Every browser tab signs in on its own: its id names its cookie, and its CSRF token goes
// with every request that changes something.
const tabId = sessionStorage.getItem('kivTab') || (() => {
  const bytes = new Uint8Array(16);
  crypto.getRandomValues(bytes);
  const id = Array.from(bytes, (b) => b.toString(16).padStart(2, '0')).join('');
  sessionStorage.setItem('kivTab', id);
  return id;
})();
let csrf = sessionStorage.getItem('kivCsrf') || '';
let state = null;       // the last state the server sent
let pending = 0;        // requests not answered yet
let chain = Promise.resolve();

function setBusy(on) {
  pending += on ? 1 : -1;
  document.body.dataset.pending = String(pending);
  clearTimeout(setBusy.timer);
  if (pending > 0) setBusy.timer = setTimeout(() => document.body.classList.add('busy'), 150);
  else document.body.classList.remove('busy');
}

async function request(method, path, params) {
  const headers = { 'X-Kiv-Tab': tabId };
  let body;
  if (method === 'POST') {
    headers['X-CSRF-Token'] = csrf;
    headers['Content-Type'] = 'application/x-www-form-urlencoded';
    const form = new URLSearchParams();
    for (const [k, v] of params || []) form.append(k, v);
    body = form.toString();
  }
  setBusy(true);
  try {
    const res = await fetch(path, { method, headers, body, credentials: 'same-origin' });
    let json = {};
    try { json = await res.json(); } catch (e) { json = { error: 'The server sent an answer this page cannot read.' }; }
    return { status: res.status, json };
  } catch (e) {
    return { status: 0, json: { error: 'The server cannot be reached.' } };
  } finally {
    setBusy(false);
  }
}

// Requests from one tab go one at a time, in the order the clerk made them.
function enqueue(fn) {
  chain = chain.then(fn).catch((e) => showBanner(String(e)));
  return chain;
}

function takeAnswer(res) {
  if (res.status === 401 && res.json.signin) { signedOut(res.json.error); return; }
  if (res.json && 'form' in res.json) render(res.json);
  else if (res.json && res.json.error) showBanner(res.json.error);
}

function act(verb, ...args) {
  return enqueue(async () => {
    const params = [['verb', verb], ...args.map((a) => ['arg', String(a)])];
    takeAnswer(await request('POST', '/api/act', params));
  });
}
function callScreen(screen, ...args) {
  return enqueue(async () => takeAnswer(await request('POST', '/api/call', [['screen', screen], ...args.map((a) => ['arg', a])])));
}
function answerBox(button) {
  return enqueue(async () => takeAnswer(await request('POST', '/api/answer', [['button', button]])));
}

function showBanner(text) {
  const b = $('#banner');
  b.textContent = text || '';
  b.hidden = !text;
}

// ---- small helpers over the description ----------------------------------------------------

const P = (node, name) => (node.props && node.props[name] !== undefined ? node.props[name] : '');
const isTrue = (v) => v === 'True';
const shown = (node) => P(node, 'Visible') !== 'False';
const enabled = (node) => P(node, 'Enabled') !== 'False';

// "KEY=Text|KEY=Text" lists (combo items, tabs, status panels).
function pairs(text) {
  if (text === '') return [];
  return text.split('|').map((part) => {
    const i = part.indexOf('=');
    return i < 0 ? { key: '', text: part } : { key: part.slice(0, i), text: part.slice(i + 1) };
  });
}

// A caption with its "&" accelerator: the text shown, the letter underlined.
function captionNodes(caption) {
  const frag = document.createDocumentFragment();
  let accel = '';
  let text = '';
  for (let i = 0; i < caption.length; i++) {
    const ch = caption[i];
    if (ch === '&' && i + 1 < caption.length) {
      i++;
      if (caption[i] === '&') { text += '&'; continue; }
      if (text) frag.append(text);
      text = '';
      if (!accel) accel = caption[i].toLowerCase();
      const u = document.createElement('u');
      u.textContent = caption[i];
      frag.append(u);
      continue;
    }
    text += ch;
  }
  if (text) frag.append(text);
  return { frag, accel };
}
const plainCaption = (caption) => caption.replace(/&(.)/g, '$1');

// The server counts a text box's caret in UTF-8 bytes; the page in UTF-16 units.
const encoder = new TextEncoder();
function byteToIndex(text, bytes) {
  let used = 0;
  let i = 0;
  for (const ch of text) {
    if (used >= bytes) break;
    used += encoder.encode(ch).length;
    i += ch.length;
  }
  return i;
}
const indexToByte = (text, index) => encoder.encode(text.slice(0, index)).length;

function el(tag, cls, text) {
  const e = document.createElement(tag);
  if (cls) e.className = cls;
  if (text !== undefined) e.textContent = text;
  return e;
}

// ---- keys --------------------------------------------------------------------------------

const keyNames = {
  Enter: 'Enter', Escape: 'Esc', Tab: 'Tab', Delete: 'Delete', Backspace: 'Backspace', ' ': 'Space',
  Home: 'Home', End: 'End', ArrowLeft: 'Left', ArrowRight: 'Right', ArrowUp: 'Up', ArrowDown: 'Down',
};
for (let i = 1; i <= 12; i++) keyNames['F' + i] = 'F' + i;

// The key name the server reads ("Ctrl+D", "Shift+Tab"), or '' for a key it has no name for.
function keyName(e) {
  let name = keyNames[e.key];
  if (!name && e.key.length === 1 && (e.ctrlKey || e.altKey)) name = e.key.toUpperCase();
  if (!name) return '';
  let prefix = '';
  if (e.ctrlKey) prefix += 'Ctrl+';
  if (e.altKey) prefix += 'Alt+';
  if (e.shiftKey && name.length > 1) prefix += 'Shift+';
  return prefix + name;
}
const isCharacter = (e) => e.key.length === 1 && !e.ctrlKey && !e.altKey && !e.metaKey;

// ---- rendering ---------------------------------------------------------------------------

let accelerators = new Map();   // letter -> what Alt+letter does
let openMenu = null;            // the top menu whose list is open
let restoring = false;          // focus moved by the renderer, not the clerk

function render(s) {
  state = s;
  showBanner(s.error);
  $('#who').textContent = s.user ? 'Signed in as ' + s.user : '';
  $('#signout').hidden = !s.user;
  const main = $('#main');
  const scrolls = {};
  main.querySelectorAll('.grid').forEach((g) => { scrolls[g.dataset.name] = g.scrollTop; });
  main.replaceChildren();
  accelerators = new Map();
  openMenu = null;
  renderMenuBar.tops = null;
  if (!s.form) {
    renderHome(main, s);
  } else {
    $('#caption').textContent = s.depth > 1 ? `${s.depth} screens open` : '';
    document.title = P(s.form, 'Caption') + ' - Customers';
    main.append(renderForm(s.form));
  }
  main.querySelectorAll('.grid').forEach((g) => {
    if (scrolls[g.dataset.name] !== undefined) g.scrollTop = scrolls[g.dataset.name];
  });
  renderBox(s.box);
  if (!s.box) restoreFocus(s);
}

function restoreFocus(s) {
  if (!s.form) return;
  const name = P(s.form, 'ActiveControl');
  const target = name && document.querySelector(`[data-name="${CSS.escape(name)}"]`);
  if (!target) return;
  // Inside a group (tab strip, option group, date picker) the selected item takes the focus.
  const focusable = target.matches('input,select,textarea,button,.grid')
    ? target
    : target.querySelector('button.selected') || target.querySelector('input:checked') ||
      target.querySelector('input, select, textarea, button');
  if (!focusable) return;
  restoring = true;
  focusable.focus({ preventScroll: false });
  restoring = false;
  if (focusable.dataset.caret !== undefined) {
    const start = byteToIndex(focusable.value, Number(focusable.dataset.caret));
    const end = byteToIndex(focusable.value, Number(focusable.dataset.caret) + Number(focusable.dataset.sellen));
    try { focusable.setSelectionRange(start, end); } catch (e) { /* not a text input */ }
  }
  if (focusable.classList.contains('grid')) {
    const cur = focusable.querySelector('tr.current');
    if (cur) cur.scrollIntoView({ block: 'nearest' });
  }
}

function renderForm(form) {
  const win = el('div', 'window');
  win.dataset.form = form.name;
  const title = el('div', 'titlebar');
  title.append(el('span', 'title', P(form, 'Caption')));
  const close = el('button', 'close', '\u2715');
  close.type = 'button';
  close.title = 'Close';
  close.tabIndex = -1;
  close.setAttribute('aria-label', 'Close');
  close.addEventListener('click', () => act('close'));
  title.append(close);
  win.append(title);
  const menus = form.children.filter((c) => c.type === 'MenuItem' && shown(c));
  if (menus.length) win.append(renderMenuBar(menus));
  const body = el('div', 'body');
  renderChildren(body, dialogButtonsLast(form.children.filter((c) => c.type !== 'MenuItem' && c.type !== 'StatusBar')));
  win.append(body);
  for (const bar of form.children.filter((c) => c.type === 'StatusBar' && shown(c))) win.append(renderStatusBar(bar));
  return win;
}

// The run of buttons holding the form's default or cancel button (OK, Save, Cancel...) goes
// to the bottom of the window, below whatever a page added to the form after it.
function dialogButtonsLast(children) {
  const isDialogButton = (c) => c.type === 'CommandButton' && (isTrue(P(c, 'Default')) || isTrue(P(c, 'Cancel')));
  const at = children.findIndex((c) => isDialogButton(c) && shown(c));
  if (at < 0) return children;
  let first = at;
  let last = at;
  const button = (i) => children[i] && children[i].type === 'CommandButton';
  while (button(first - 1)) first--;
  while (button(last + 1)) last++;
  if (last === children.length - 1) return children;
  const run = children.slice(first, last + 1);
  return [...children.slice(0, first), ...children.slice(last + 1), ...run];
}

// Lays out a container's children: runs of fields in a two-column grid, runs of buttons in a
// row, everything else (frames, grids, tab strips, panels) one under another. A label whose
// name ends like a sibling's (lblLastName, txtLastName) becomes that field's caption; a tab
// strip is drawn above the frames it switches.
function renderChildren(container, children) {
  children = children.filter(shown);
  const strip = children.findIndex((c) => c.type === 'TabStrip');
  const firstFrame = children.findIndex((c) => c.type === 'Frame' || c.type === 'Panel');
  if (strip > firstFrame && firstFrame >= 0) {
    const [t] = children.splice(strip, 1);
    children.splice(firstFrame, 0, t);
  }
  const suffix = (n) => n.name.replace(/^[a-z]+/, '').toLowerCase();
  const labelFor = new Map();
  const used = new Set();
  for (const c of children) {
    if (c.type !== 'Label') continue;
    // A label names the control it captions ("Buddy"); otherwise the names' endings pair them.
    const buddy = P(c, 'Buddy');
    const mate = buddy
      ? children.find((o) => o.name === buddy)
      : children.find((o) => o !== c && o.type !== 'Label' && suffix(o) === suffix(c));
    if (mate && !labelFor.has(mate.name)) { labelFor.set(mate.name, c); used.add(c.name); }
  }
  let fields = null;
  let buttons = null;
  const flush = () => { fields = null; buttons = null; };
  for (const c of children) {
    if (used.has(c.name)) continue;
    if (c.type === 'CommandButton') {
      if (!buttons) { fields = null; buttons = el('div', 'buttons'); container.append(buttons); }
      buttons.append(renderControl(c));
      continue;
    }
    if (['TextBox', 'ComboBox', 'CheckBox', 'OptionGroup', 'OptionButton', 'DatePicker', 'Label', 'Image'].includes(c.type)) {
      if (!fields) { buttons = null; fields = el('div', 'fields'); container.append(fields); }
      const label = labelFor.get(c.name);
      const control = renderControl(c);
      if (c.type === 'Label' && !label) { control.classList.add('note'); fields.append(control); continue; }
      if (c.type === 'CheckBox') { control.classList.add('check'); fields.append(control); continue; }
      const cap = el('label', 'caption');
      if (label) {
        const { frag, accel } = captionNodes(P(label, 'Caption'));
        cap.append(frag);
        if (accel) accelerators.set(accel, { kind: 'focus', name: c.name });
      }
      fields.append(cap);
      if (isTrue(P(c, 'MultiLine')) || c.type === 'OptionGroup') control.classList.add('span');
      fields.append(control);
      continue;
    }
    flush();
    container.append(renderControl(c));
  }
}

function renderControl(c) {
  const make = renderers[c.type] || renderUnknown;
  const e = make(c);
  e.dataset.name = c.name;
  const tip = P(c, 'ToolTipText');
  if (tip) e.title = tip;
  return e;
}

function sendKeysFrom(e, c) {
  // Keys the screens have rules for go to the server; the page does nothing on its own.
  const name = keyName(e);
  if (!name) return false;
  e.preventDefault();
  act('key', c.name, name);
  return true;
}

function focusReport(c) {
  return () => {
    if (restoring || !state || !state.form || P(state.form, 'ActiveControl') === c.name) return;
    act('focus', c.name);
  };
}

const renderers = {
  Label(c) {
    const e = el('div', 'label');
    e.append(captionNodes(P(c, 'Caption')).frag);
    return e;
  },

  TextBox(c) {
    const multi = isTrue(P(c, 'MultiLine'));
    const e = el(multi ? 'textarea' : 'input');
    if (!multi) e.type = P(c, 'PasswordChar') ? 'password' : 'text';
    if (multi) e.rows = 3;
    e.value = P(c, 'Text');
    e.dataset.caret = P(c, 'SelStart') || '0';
    e.dataset.sellen = P(c, 'SelLength') || '0';
    e.disabled = !enabled(c);
    e.readOnly = isTrue(P(c, 'Locked'));
    e.spellcheck = false;
    e.autocomplete = 'off';
    const max = Number(P(c, 'MaxLength'));
    if (max > 0) e.maxLength = max;
    e.addEventListener('focus', focusReport(c));
    e.addEventListener('keydown', (ev) => {
      if (ev.ctrlKey && ['a', 'c', 'v', 'x', 'z'].includes(ev.key.toLowerCase()) && !ev.altKey) return; // the browser's own
      if (isCharacter(ev)) {
        ev.preventDefault();
        typeInto(e, c, ev.key);
        return;
      }
      if (ev.key === 'Backspace' || ev.key === 'Delete') {
        ev.preventDefault();
        if (syncCaret(e, c)) act('key', c.name, keyName(ev));
        return;
      }
      sendKeysFrom(ev, c);
    });
    e.addEventListener('paste', (ev) => {
      ev.preventDefault();
      const text = (ev.clipboardData || window.clipboardData).getData('text');
      const v = e.value;
      act('paste', c.name, v.slice(0, e.selectionStart) + text + v.slice(e.selectionEnd));
    });
    e.addEventListener('cut', (ev) => {
      ev.preventDefault();
      navigator.clipboard && navigator.clipboard.writeText(e.value.slice(e.selectionStart, e.selectionEnd));
      act('paste', c.name, e.value.slice(0, e.selectionStart) + e.value.slice(e.selectionEnd));
    });
    return e;
  },

  CommandButton(c) {
    const e = el('button');
    e.type = 'button';
    const { frag, accel } = captionNodes(P(c, 'Caption'));
    e.append(frag);
    if (accel) accelerators.set(accel, { kind: 'click', name: c.name });
    e.disabled = !enabled(c);
    if (isTrue(P(c, 'Default'))) e.classList.add('default');
    e.addEventListener('click', (ev) => { ev.preventDefault(); act('click', c.name); });
    e.addEventListener('focus', focusReport(c));
    e.addEventListener('keydown', (ev) => {
      if (ev.key === 'Enter' || ev.key === ' ') { ev.preventDefault(); act('click', c.name); return; }
      sendKeysFrom(ev, c);
    });
    return e;
  },

  CheckBox(c) {
    const wrap = el('div');
    const box = el('input');
    box.type = 'checkbox';
    box.id = 'chk-' + c.name;
    box.checked = P(c, 'Value') === '1';
    box.indeterminate = P(c, 'Value') === '2';
    box.disabled = !enabled(c);
    const label = el('label');
    label.htmlFor = box.id;
    const { frag, accel } = captionNodes(P(c, 'Caption'));
    label.append(frag);
    if (accel) accelerators.set(accel, { kind: 'click', name: c.name });
    box.addEventListener('click', (ev) => { ev.preventDefault(); act('click', c.name); });
    box.addEventListener('focus', focusReport(c));
    box.addEventListener('keydown', (ev) => {
      if (ev.key === ' ') { ev.preventDefault(); act('click', c.name); return; }
      sendKeysFrom(ev, c);
    });
    wrap.append(box, label);
    return wrap;
  },

  OptionButton(c) {
    const wrap = el('div', 'options');
    const r = el('input');
    r.type = 'radio';
    r.checked = isTrue(P(c, 'Value'));
    r.disabled = !enabled(c);
    r.id = 'opt-' + c.name;
    const label = el('label');
    label.htmlFor = r.id;
    label.append(captionNodes(P(c, 'Caption')).frag);
    r.addEventListener('click', (ev) => { ev.preventDefault(); act('click', c.name); });
    r.addEventListener('keydown', (ev) => sendKeysFrom(ev, c));
    wrap.append(r, label);
    return wrap;
  },

  OptionGroup(c) {
    const wrap = el('div', 'options');
    wrap.setAttribute('role', 'radiogroup');
    const captions = P(c, 'Captions') === '' ? [] : P(c, 'Captions').split('|');
    const value = Number(P(c, 'Value'));
    captions.forEach((cap, i) => {
      const r = el('input');
      r.type = 'radio';
      r.name = 'grp-' + c.name;
      r.id = `grp-${c.name}-${i}`;
      r.checked = i === value;
      r.disabled = !enabled(c);
      r.tabIndex = i === value || (value < 0 && i === 0) ? 0 : -1;
      const label = el('label');
      label.htmlFor = r.id;
      label.append(captionNodes(cap).frag);
      r.addEventListener('click', (ev) => { ev.preventDefault(); act('click', c.name, String(i)); });
      r.addEventListener('focus', focusReport(c));
      r.addEventListener('keydown', (ev) => {
        const step = { ArrowRight: 1, ArrowDown: 1, ArrowLeft: -1, ArrowUp: -1 }[ev.key];
        if (step) {
          ev.preventDefault();
          act('click', c.name, String((i + step + captions.length) % captions.length));
          return;
        }
        sendKeysFrom(ev, c);
      });
      const item = el('span');
      item.append(r, label);
      wrap.append(item);
    });
    return wrap;
  },

  ComboBox(c) {
    const items = pairs(P(c, 'Items'));
    if (P(c, 'Style') === '0') return editableCombo(c, items);
    const e = el('select');
    const index = Number(P(c, 'ListIndex'));
    items.forEach((item, i) => {
      const o = el('option', '', item.text || '\u00a0');
      o.value = String(i);
      e.append(o);
    });
    if (index < 0) {
      const none = el('option', '', P(c, 'Text'));
      none.value = '-1';
      none.hidden = true;
      e.prepend(none);
    }
    e.value = String(index);
    e.disabled = !enabled(c);
    e.addEventListener('focus', focusReport(c));
    e.addEventListener('change', () => {
      const item = items[Number(e.value)];
      if (item) act('choose', c.name, item.key !== '' ? item.key : item.text);
    });
    e.addEventListener('keydown', (ev) => {
      if (['ArrowUp', 'ArrowDown', 'Home', 'End'].includes(ev.key) && !ev.altKey) return; // the list moves itself
      if (isCharacter(ev)) return;  // type-ahead in the list
      sendKeysFrom(ev, c);
    });
    return e;
  },

  DatePicker(c) {
    const wrap = el('div', 'date');
    const input = el('input');
    input.type = 'date';
    input.value = P(c, 'Value');
    input.disabled = !enabled(c);
    input.addEventListener('focus', focusReport(c));
    input.addEventListener('change', () => act('date', c.name, input.value || 'none'));
    input.addEventListener('keydown', (ev) => {
      if (['Enter', 'Escape', 'Tab'].includes(ev.key) || (ev.ctrlKey && ev.key.length === 1)) sendKeysFrom(ev, c);
    });
    wrap.append(input);
    if (isTrue(P(c, 'CheckBox'))) {
      // The picker's own check box: unticked means no date.
      const none = el('input');
      none.type = 'checkbox';
      none.id = 'none-' + c.name;
      none.checked = P(c, 'Value') === '';
      none.disabled = !enabled(c);
      none.addEventListener('click', (ev) => {
        ev.preventDefault();
        if (none.checked) act('date', c.name, 'none');
        else act('date', c.name, new Date().toISOString().slice(0, 10));
      });
      const label = el('label', '', 'none');
      label.htmlFor = none.id;
      wrap.append(none, label);
    }
    return wrap;
  },

  TabStrip(c) {
    const e = el('div', 'tabs');
    e.setAttribute('role', 'tablist');
    const selected = Number(P(c, 'SelectedIndex'));
    pairs(P(c, 'Tabs')).forEach((tab, i) => {
      const b = el('button', i + 1 === selected ? 'selected' : '');
      b.type = 'button';
      b.setAttribute('role', 'tab');
      b.append(captionNodes(tab.text).frag);
      b.tabIndex = i + 1 === selected ? 0 : -1;
      b.disabled = !enabled(c);
      b.addEventListener('click', () => act('click', c.name, String(i + 1)));
      b.addEventListener('focus', focusReport(c));
      b.addEventListener('keydown', (ev) => {
        if (ev.key === 'ArrowRight' || ev.key === 'ArrowLeft') {
          ev.preventDefault();
          const count = pairs(P(c, 'Tabs')).length;
          act('click', c.name, String(((i + (ev.key === 'ArrowRight' ? 1 : -1) + count) % count) + 1));
          return;
        }
        sendKeysFrom(ev, c);
      });
      e.append(b);
    });
    return e;
  },

  Frame(c) {
    const e = el('fieldset', 'frame');
    const caption = P(c, 'Caption');
    if (caption) {
      const legend = el('legend');
      legend.append(captionNodes(caption).frag);
      e.append(legend);
    }
    e.disabled = !enabled(c);
    renderChildren(e, c.children);
    return e;
  },

  Panel(c) {
    const e = el('div', 'panel');
    renderChildren(e, c.children);
    return e;
  },

  Image(c) {
    const e = el('div', 'image');
    const pic = P(c, 'Picture');
    // An image without a picture (an indicator with no icon set) takes no room.
    if (pic === '(none)' || pic === '') {
      e.classList.add('empty');
      return e;
    }
    e.textContent = '…';
    fetch('/api/picture?control=' + encodeURIComponent(c.name) + '&v=' + encodeURIComponent(pic), {
      headers: { 'X-Kiv-Tab': tabId },
    }).then((r) => (r.ok ? r.blob() : null)).then((blob) => {
      e.textContent = '';
      if (!blob) { e.classList.add('empty'); return; }
      const img = el('img');
      img.alt = 'Photograph';
      img.src = URL.createObjectURL(blob);
      e.append(img);
    });
    return e;
  },

  Grid: renderGrid,
};

// A list the clerk may also type into: the text goes to the screen when the clerk leaves the
// box or presses a key the screen has a rule for; a text that is an item chooses the item.
function editableCombo(c, items) {
  const e = el('input');
  e.value = P(c, 'Text');
  e.disabled = !enabled(c);
  e.autocomplete = 'off';
  const options = el('datalist');
  options.id = 'items-' + c.name;
  for (const item of items) { const o = el('option'); o.value = item.text; options.append(o); }
  e.setAttribute('list', options.id);
  let sent = e.value;
  const commit = () => {
    if (e.value === sent) return;
    sent = e.value;
    const item = items.find((i) => i.text === e.value);
    if (item) act('choose', c.name, item.key !== '' ? item.key : item.text);
    else act('paste', c.name, e.value);
  };
  e.addEventListener('change', commit);
  e.addEventListener('focus', focusReport(c));
  e.addEventListener('keydown', (ev) => {
    if (isCharacter(ev) || ['Backspace', 'Delete', 'ArrowLeft', 'ArrowRight', 'ArrowUp', 'ArrowDown', 'Home', 'End'].includes(ev.key)) return;
    if (ev.ctrlKey && ['a', 'c', 'v', 'x', 'z'].includes(ev.key.toLowerCase())) return;
    commit();
    sendKeysFrom(ev, c);
  });
  const wrap = el('span', 'combo');
  wrap.append(e, options);
  return wrap;
}

function renderUnknown(c) {
  const e = el('div', 'panel');
  if (c.children.length) renderChildren(e, c.children);
  else e.textContent = `${c.name} (${c.type})`;
  return e;
}

// ---- text typing -------------------------------------------------------------------------

// Brings the server's caret and selection to where the clerk put them with the mouse, so a
// key or a character lands where the clerk sees the caret. False when the whole text is to
// be replaced by a paste (the selection was made here, not known to the server).
function syncCaret(e, c) {
  if (pending > 0) return true;  // the page is behind the server: type where the server is
  const start = indexToByte(e.value, e.selectionStart);
  const end = indexToByte(e.value, e.selectionEnd);
  const serverStart = Number(e.dataset.caret);
  const serverEnd = serverStart + Number(e.dataset.sellen);
  if (start === serverStart && end === serverEnd) return true;
  if (start !== end) {
    // A selection made here: the text without it, then the caret where it began.
    act('paste', c.name, e.value.slice(0, e.selectionStart) + e.value.slice(e.selectionEnd));
    moveCaret(c, e.value.slice(0, e.selectionStart) + e.value.slice(e.selectionEnd), e.selectionStart);
    return false;
  }
  moveCaret(c, e.value, e.selectionStart);
  return true;
}

function moveCaret(c, text, index) {
  act('key', c.name, 'End');
  const back = [...text.slice(index)].length;
  for (let i = 0; i < back; i++) act('key', c.name, 'Left');
}

function typeInto(e, c, ch) {
  syncCaret(e, c);
  act('type', c.name, ch);
}

// ---- grids -------------------------------------------------------------------------------

function renderGrid(c) {
  const wrap = el('div', 'grid');
  wrap.tabIndex = 0;
  const rows = Number(P(c, 'Rows'));
  const fixedRows = Number(P(c, 'FixedRows'));
  const cells = P(c, 'Cells') === '' ? [] : P(c, 'Cells').split('\n').map((l) => l.split('\t'));
  const hiddenCols = new Set(P(c, 'HiddenCols').split(',').filter(Boolean).map(Number));
  const hiddenRows = new Set(P(c, 'HiddenRows').split(',').filter(Boolean).map(Number));
  const selected = new Set(P(c, 'SelectedRows').split(',').filter(Boolean).map(Number));
  const current = Number(P(c, 'Row'));
  const currentCol = Number(P(c, 'Col'));
  const editable = Number(P(c, 'Editable')) > 0;
  const formatAlign = P(c, 'FormatString').split('|').map((f) => ({ '<': 'l', '>': 'r', '^': 'c' }[f[0]] || 'l'));
  const colAlign = P(c, 'ColAlignments').split(',');
  const align = (col) => colAlign[col] || formatAlign[col] || 'l';
  const lists = P(c, 'ColComboLists').split('\n');
  const levels = P(c, 'OutlineLevels').split(',').map(Number);
  const nodes = P(c, 'OutlineNodes').split(',');
  const styles = P(c, 'RowStyles').split(',');
  const outlined = levels.some((l) => l > 0);
  const firstShown = [...Array(Number(P(c, 'Cols'))).keys()].find((col) => !hiddenCols.has(col));
  const table = el('table');
  const thead = el('thead');
  const tbody = el('tbody');
  for (let r = 0; r < rows && r < cells.length; r++) {
    if (hiddenRows.has(r)) continue;
    const tr = el('tr');
    const header = r < fixedRows;
    if (!header) {
      if (selected.has(r)) tr.classList.add('selected');
      if (r === current) tr.classList.add('current');
      if (styles[r]) tr.classList.add('style-' + styles[r]);
    }
    cells[r].forEach((text, col) => {
      if (hiddenCols.has(col)) return;
      const td = el(header ? 'th' : 'td', align(col));
      if (!header && outlined && col === firstShown) {
        // The outline: indented by level, a box that opens or closes a node's rows.
        td.style.paddingLeft = `${0.45 + 1.1 * (levels[r] || 0)}rem`;
        const hasChildren = r + 1 < rows && (levels[r + 1] || 0) > (levels[r] || 0);
        const box = el('span', 'outline', hasChildren || nodes[r] === 'c' ? (nodes[r] === 'c' ? '\u229e' : '\u229f') : '');
        box.addEventListener('click', (ev) => { ev.stopPropagation(); act('expand', c.name, String(r)); });
        td.append(box);
      }
      const check = /^\[(x| )\]( |$)/.exec(text);
      if (check && !header) {
        const box = el('input');
        box.type = 'checkbox';
        box.checked = check[1] === 'x';
        box.tabIndex = -1;
        box.addEventListener('click', (ev) => {
          ev.preventDefault();
          ev.stopPropagation();
          if (editable) act('edit', c.name, r, `${col}`, check[1] === 'x' ? 'False' : 'True');
        });
        td.append(box, text.slice(4));
      } else {
        td.append(text);
      }
      if (!header && r === current && col === currentCol) td.classList.add('cell-current');
      if (!header && editable) {
        td.addEventListener('dblclick', (ev) => { ev.stopPropagation(); editCell(td, c, r, col, text, lists[col] || ''); });
      }
      tr.append(td);
    });
    if (!header) {
      tr.addEventListener('click', (ev) => {
        // Ctrl adds or removes a row, Shift takes the run from the current row; the grid
        // refuses a second row when it selects one row at a time.
        if (ev.ctrlKey || ev.shiftKey) {
          const rowsNow = new Set(selected);
          if (ev.shiftKey) for (let i = Math.min(current, r); i <= Math.max(current, r); i++) rowsNow.add(i);
          else if (rowsNow.has(r)) rowsNow.delete(r); else rowsNow.add(r);
          rowsNow.delete(r);
          act('select', c.name, [r, ...rowsNow].join(','));
          return;
        }
        act('select', c.name, String(r));
      });
      if (!editable) tr.addEventListener('dblclick', () => act('dblclick', c.name, String(r)));
    }
    (header ? thead : tbody).append(tr);
  }
  table.append(thead, tbody);
  wrap.append(table);
  wrap.addEventListener('focus', focusReport(c));
  wrap.addEventListener('keydown', (ev) => {
    if (editable && ev.key === 'F2') {
      ev.preventDefault();
      const td = wrap.querySelector('td.cell-current');
      if (td) editCell(td, c, current, currentCol, cells[current] ? cells[current][currentCol] : '', lists[currentCol] || '');
      return;
    }
    if (isCharacter(ev)) { ev.preventDefault(); act('key', c.name, ev.key === ' ' ? 'Space' : ev.key); return; }
    if (ev.key === 'PageDown' || ev.key === 'PageUp') return;
    sendKeysFrom(ev, c);
  });
  return wrap;
}

// Edits one cell in place: a list when the column has one ("a|b", items "#key;text", a
// leading "|" lets the clerk type other text too), a text box otherwise.
function editCell(td, c, row, col, text, list) {
  const free = list === '' || list.startsWith('|');
  const items = list.split('|').filter(Boolean).map((item) => (item.startsWith('#') ? item.slice(item.indexOf(';') + 1) : item));
  let input;
  if (free) {
    input = el('input');
    if (items.length) {
      const options = el('datalist');
      options.id = `list-${c.name}-${col}`;
      for (const item of items) { const o = el('option'); o.value = item; options.append(o); }
      td.append(options);
      input.setAttribute('list', options.id);
    }
  } else {
    input = el('select');
    for (const item of items) input.append(el('option', '', item));
  }
  input.value = text;
  td.replaceChildren(...td.querySelectorAll('datalist'), input);
  input.focus();
  if (input.select) input.select();
  let done = false;
  const finish = (save) => {
    if (done) return;
    done = true;
    if (save && input.value !== text) act('edit', c.name, String(row), String(col), input.value);
    else render(state);
  };
  input.addEventListener('keydown', (ev) => {
    ev.stopPropagation();
    if (ev.key === 'Enter') { ev.preventDefault(); finish(true); }
    if (ev.key === 'Escape') { ev.preventDefault(); finish(false); }
  });
  input.addEventListener('blur', () => finish(true));
}

// ---- menus and the status bar --------------------------------------------------------------

function renderMenuBar(menus) {
  const bar = el('nav', 'menubar');
  bar.setAttribute('role', 'menubar');
  const tops = [];
  menus.forEach((m, i) => {
    const holder = el('div', 'menu');
    const b = el('button');
    b.type = 'button';
    b.dataset.name = m.name;
    const { frag, accel } = captionNodes(P(m, 'Caption'));
    b.append(frag);
    b.disabled = !enabled(m);
    b.tabIndex = -1;
    if (accel) accelerators.set(accel, { kind: 'menu', index: i });
    const toggle = () => (openMenu && openMenu.index === i ? closeMenu() : showMenu(i));
    b.addEventListener('click', toggle);
    holder.append(b);
    bar.append(holder);
    tops.push({ holder, button: b, node: m, index: i });
  });
  bar.tops = tops;
  renderMenuBar.tops = tops;
  return bar;
}

function showMenu(index) {
  closeMenu();
  const top = renderMenuBar.tops && renderMenuBar.tops[index];
  if (!top) return;
  if (!top.node.children.length) { act('click', top.node.name); return; }
  const list = menuList(top.node.children);
  top.holder.append(list);
  top.button.classList.add('open');
  openMenu = { index, list, top };
  const first = list.querySelector('button:not(:disabled)');
  if (first) first.focus();
}

function closeMenu() {
  if (!openMenu) return;
  openMenu.list.remove();
  openMenu.top.button.classList.remove('open');
  openMenu = null;
}

function menuList(items) {
  const list = el('div', 'dropdown');
  list.setAttribute('role', 'menu');
  for (const item of items.filter(shown)) {
    const caption = P(item, 'Caption');
    if (caption === '-') { list.append(el('hr')); continue; }
    const b = el('button', isTrue(P(item, 'Checked')) ? 'checked' : '');
    b.type = 'button';
    b.dataset.name = item.name;
    b.setAttribute('role', 'menuitem');
    b.append(captionNodes(caption).frag);
    b.disabled = !enabled(item);
    if (item.children.length) {
      b.append(' \u25b8');
      const holder = el('div', 'submenu');
      holder.append(b);
      b.addEventListener('click', () => {
        if (holder.querySelector('.dropdown')) return;
        const sub = menuList(item.children);
        holder.append(sub);
        const first = sub.querySelector('button:not(:disabled)');
        if (first) first.focus();
      });
      list.append(holder);
      continue;
    }
    b.addEventListener('click', () => { closeMenu(); act('click', item.name); });
    list.append(b);
  }
  list.addEventListener('keydown', (ev) => {
    const buttons = [...list.querySelectorAll(':scope > button:not(:disabled), :scope > .submenu > button:not(:disabled)')];
    const at = buttons.indexOf(document.activeElement);
    if (ev.key === 'ArrowDown' || ev.key === 'ArrowUp') {
      ev.preventDefault();
      ev.stopPropagation();
      const next = buttons[(at + (ev.key === 'ArrowDown' ? 1 : -1) + buttons.length) % buttons.length];
      if (next) next.focus();
    } else if (ev.key === 'Escape') {
      ev.preventDefault();
      ev.stopPropagation();
      closeMenu();
      restoreFocus(state);
    } else if ((ev.key === 'ArrowRight' || ev.key === 'ArrowLeft') && openMenu) {
      ev.preventDefault();
      ev.stopPropagation();
      const count = renderMenuBar.tops.length;
      showMenu((openMenu.index + (ev.key === 'ArrowRight' ? 1 : -1) + count) % count);
    } else if (ev.key.length === 1 && !ev.ctrlKey) {
      const letter = ev.key.toLowerCase();
      const hit = buttons.find((b) => { const u = b.querySelector('u'); return u && u.textContent.toLowerCase() === letter; });
      if (hit) { ev.preventDefault(); ev.stopPropagation(); hit.click(); }
    }
  });
  return list;
}

function renderStatusBar(c) {
  const bar = el('div', 'statusbar');
  bar.dataset.name = c.name;
  const simple = P(c, 'SimpleText');
  const panels = pairs(P(c, 'Panels'));
  if (!panels.length || simple) bar.append(el('span', '', simple));
  else for (const p of panels) bar.append(el('span', '', p.text));
  return bar;
}

// ---- message boxes -----------------------------------------------------------------------

const icons = { critical: '\u2715', question: '?', exclamation: '!', information: 'i' };

function renderBox(box) {
  const overlay = $('#overlay');
  overlay.replaceChildren();
  overlay.hidden = !box;
  if (!box) return;
  const dlg = el('div', 'msgbox');
  dlg.setAttribute('role', 'alertdialog');
  dlg.setAttribute('aria-modal', 'true');
  dlg.append(el('div', 'title', box.title || 'Customers'));
  const content = el('div', 'content');
  if (box.icon) content.append(el('div', 'icon ' + box.icon, icons[box.icon]));
  content.append(el('div', 'prompt', box.prompt));
  dlg.append(content);
  const row = el('div', 'buttons');
  const buttons = box.buttons.map((text) => {
    const b = el('button', '', text);
    b.type = 'button';
    b.dataset.answer = text;
    b.addEventListener('click', () => answerBox(text));
    row.append(b);
    return b;
  });
  dlg.append(row);
  dlg.addEventListener('keydown', (ev) => {
    if (ev.key === 'Escape') {
      ev.preventDefault();
      const safe = ['Cancel', 'No', 'OK'].find((t) => box.buttons.includes(t));
      if (safe && box.buttons.includes('Cancel') || box.buttons.length === 1) answerBox(safe || box.buttons[0]);
      return;
    }
    if (ev.key === 'Tab') {
      ev.preventDefault();
      const at = buttons.indexOf(document.activeElement);
      buttons[(at + (ev.shiftKey ? -1 : 1) + buttons.length) % buttons.length].focus();
      return;
    }
    if (ev.key === 'ArrowRight' || ev.key === 'ArrowLeft') {
      ev.preventDefault();
      const at = buttons.indexOf(document.activeElement);
      buttons[(at + (ev.key === 'ArrowLeft' ? -1 : 1) + buttons.length) % buttons.length].focus();
      return;
    }
    const letter = ev.key.length === 1 ? ev.key.toLowerCase() : '';
    const hit = letter && box.buttons.find((t) => t[0].toLowerCase() === letter);
    if (hit) { ev.preventDefault(); answerBox(hit); }
  });
  overlay.append(dlg);
  buttons[Math.min(box.default, buttons.length - 1)].focus();
}

// ---- keyboard across the page --------------------------------------------------------------

document.addEventListener('keydown', (ev) => {
  if (!state || !state.form || state.box) return;
  if (ev.altKey && !ev.ctrlKey && ev.key.length === 1) {
    const hit = accelerators.get(ev.key.toLowerCase());
    if (!hit) return;
    ev.preventDefault();
    ev.stopPropagation();
    if (hit.kind === 'menu') showMenu(hit.index);
    else act(hit.kind, hit.name);
    return;
  }
  // F10 opens the menu bar, as on the desktop; the key goes no further.
  if (ev.key === 'F10' && !ev.shiftKey && !ev.ctrlKey && renderMenuBar.tops && renderMenuBar.tops.length) {
    ev.preventDefault();
    ev.stopPropagation();
    showMenu(0);
    return;
  }
  if (openMenu && ev.key === 'Escape') { ev.preventDefault(); ev.stopPropagation(); closeMenu(); restoreFocus(state); }
}, true);

document.addEventListener('mousedown', (ev) => {
  if (openMenu && !openMenu.top.holder.contains(ev.target)) closeMenu();
});

// ---- sign-in and home --------------------------------------------------------------------

function signedOut(why) {
  state = null;
  csrf = '';
  sessionStorage.removeItem('kivCsrf');
  renderBox(null);
  $('#who').textContent = '';
  $('#signout').hidden = true;
  $('#caption').textContent = '';
  document.title = 'Sign in - Customers';
  showBanner('');
  const main = $('#main');
  main.replaceChildren();
  const card = el('form', 'card');
  card.append(el('h1', '', 'Sign in'));
  const user = el('input');
  user.id = 'signin-user';
  user.autocomplete = 'username';
  const password = el('input');
  password.id = 'signin-password';
  password.type = 'password';
  password.autocomplete = 'current-password';
  for (const [text, input] of [['User:', user], ['Password:', password]]) {
    const row = el('div', 'row');
    const label = el('label', '', text);
    label.htmlFor = input.id;
    row.append(label, input);
    card.append(row);
  }
  const message = el('p', 'refused', why || '');
  message.setAttribute('role', 'alert');
  const go = el('button', 'default', 'Sign in');
  go.type = 'submit';
  const row = el('div', 'buttons');
  row.append(go);
  card.append(message, row);
  card.addEventListener('submit', async (ev) => {
    ev.preventDefault();
    go.disabled = true;
    message.textContent = '';
    const res = await request('POST', '/api/signin', [['tab', tabId], ['user', user.value], ['password', password.value]]);
    go.disabled = false;
    if (res.status !== 200) {
      message.textContent = res.json.error || 'Sign-in failed.';
      password.value = '';
      password.focus();
      return;
    }
    csrf = res.json.csrf;
    sessionStorage.setItem('kivCsrf', csrf);
    render(res.json.state);
  });
  main.append(card);
  user.focus();
}

function renderHome(main, s) {
  $('#caption').textContent = '';
  document.title = 'Customers';
  const card = el('div', 'card');
  card.dataset.form = 'home';
  card.append(el('h1', '', 'Customers'));
  if (s.notice) card.append(el('p', 'notice', s.notice));
  const actions = el('div', 'actions');
  const find = el('button', 'default');
  find.type = 'button';
  find.id = 'home-find';
  find.append(captionNodes('&Find a customer…').frag);
  find.addEventListener('click', () => callScreen('SelectCustomer'));
  const browse = el('button');
  browse.type = 'button';
  browse.id = 'home-browse';
  browse.append(captionNodes('&Browse customers…').frag);
  browse.addEventListener('click', () => callScreen('ShowSearchCustomer'));
  actions.append(find, browse);
  card.append(actions);
  const open = el('form', 'row');
  const label = el('label');
  label.append(captionNodes('Customer &#:').frag);
  const number = el('input');
  number.id = 'home-number';
  number.inputMode = 'numeric';
  label.htmlFor = number.id;
  const go = el('button', '', 'Open');
  go.type = 'submit';
  const line = el('div', 'date');
  line.append(number, go);
  open.append(label, line);
  open.addEventListener('submit', (ev) => {
    ev.preventDefault();
    if (number.value.trim()) callScreen('ShowCustomer', number.value.trim());
  });
  card.append(open);
  card.append(el('p', 'hint', 'Alt+F finds, Alt+B browses, Alt+# goes to the customer number.'));
  card.addEventListener('keydown', (ev) => {
    if (!ev.altKey) return;
    const k = ev.key.toLowerCase();
    if (k === 'f') { ev.preventDefault(); find.click(); }
    if (k === 'b') { ev.preventDefault(); browse.click(); }
    if (k === '#' || k === '3') { ev.preventDefault(); number.focus(); }
  });
  main.append(card);
  find.focus();
}

$('#signout').addEventListener('click', () => enqueue(async () => {
  await request('POST', '/api/signout', []);
  signedOut('You have signed out.');
}));

// On load: the tab may still be signed in (a reload); otherwise the sign-in page.
enqueue(async () => {
  const res = await request('GET', '/api/state');
  if (res.status === 200) render(res.json);
  else signedOut('');
});
