// The browser's binding, page side: it builds every form the engine describes
// from the form tables into elements, mirrors the engine's changes, and
// queues what the player does for the engine to take. It holds no rule of
// the game: what a click, a key or a closed window means is the engine's.
'use strict';

window.FwPage = (() => {
  const kZooms = [1, 1.25, 1.5, 2, 2.5, 3, 4];
  // The fonts the forms name are Windows fonts; each is drawn in the font of
  // the same widths that ships with the page, as on the desktop.
  const kFonts = {
    'MS Sans Serif': 'Liberation Sans', Arial: 'Liberation Sans', Tahoma: 'Liberation Sans',
    'Times New Roman': 'Liberation Serif', 'Courier New': 'Liberation Mono', Verdana: 'DejaVu Sans',
  };
  const kFormFont = { font: 'MS Sans Serif', points: 8.25, bold: false };
  const kMime = {
    bmp: 'image/bmp', jpg: 'image/jpeg', jpeg: 'image/jpeg', gif: 'image/gif', png: 'image/png', svg: 'image/svg+xml',
    mp3: 'audio/mpeg', wav: 'audio/wav', oga: 'audio/ogg', ogg: 'audio/ogg', webm: 'video/webm', mp4: 'video/mp4',
    avi: 'video/x-msvideo', sav: 'application/octet-stream', cha: 'application/octet-stream',
  };
  // What a browser can play in place of a file it cannot: the same name with
  // another extension, beside it (a tune pre-rendered to audio, a movie
  // made over for the web).
  const kInstead = { mid: ['oga', 'ogg', 'mp3', 'wav'], avi: ['webm', 'mp4'] };
  const kActions = { Click: 0, Select: 1, Type: 2, Check: 3, Choose: 4, Hover: 5 };
  const kUserDir = '/user';
  const kGameDir = '/game';

  const desk = () => document.getElementById('fw-desk');
  const forms = new Map();  // engine's form index -> window
  const queue = [];
  let wake = null;          // resolves the engine's wait when an event comes
  let zoom = 1, fitZoom = 1, userZoomed = false;
  let stack = 0;            // stacking order of windows as they show
  let modal = null;         // the dialog on screen
  let unlocked = false;     // the browser lets sound start once the player acts
  const waitingSound = [];
  let syncing = null, syncAgain = false;
  const media = new Map();  // "form/index" -> {el, url}
  let tune = null;
  let lastHover = 0;

  // -- Events to the engine.
  function post(...fields) {
    queue.push(fields.join('\t'));
    if (wake) wake();
  }
  function takeEvent() { return queue.length ? queue.shift() : null; }
  // A yield that is not slowed down as nested timeouts are.
  const channel = new MessageChannel();
  const yields = [];
  channel.port1.onmessage = () => { const go = yields.shift(); if (go) go(); };
  function yieldToBrowser() { return new Promise((go) => { yields.push(go); channel.port2.postMessage(0); }); }
  async function nextEvent(ms) {
    await yieldToBrowser();
    if (queue.length) return queue.shift();
    return new Promise((resolve) => {
      const timer = setTimeout(() => { wake = null; resolve(null); }, ms);
      wake = () => { clearTimeout(timer); wake = null; resolve(queue.shift()); };
    });
  }

  // -- Sizes.
  const px = (twips) => Math.round(twips / 15 * zoom);
  function fontCss(f, base) {
    const font = f && (f.font || f.points > 0) ? f : base;
    const family = font.font ? (kFonts[font.font] || font.font) : (kFonts[base.font] || 'Liberation Sans');
    const points = font.points > 0 ? font.points : base.points;
    return `${font.bold ? 'bold ' : ''}${(points * zoom).toFixed(2)}pt "${family}", sans-serif`;
  }
  const color = (rgb) => `rgb(${rgb & 255},${(rgb >> 8) & 255},${(rgb >> 16) & 255})`;
  const artUrl = (name) => `art/${name.replace(/\.[a-z]+$/i, '')}.svg`;
  const plain = (caption) => caption.replace(/&(&?)/g, '$1');
  // A label tall enough for a second line wraps; a one-line label is cut at its edge.
  const twoLines = (c, h) => h >= 2 * (c.look.points > 0 ? c.look.points : 8.25) * 20 * 1.15;

  // The largest zoom step at which every window fits the browser's; a
  // window too large even at 100% (a phone held sideways) is scaled to fit.
  function fittingZoom() {
    const roomW = window.innerWidth * 0.98, roomH = window.innerHeight * 0.98;
    let scale = Infinity;  // the largest at which every window fits
    for (const w of forms.values())
      scale = Math.min(scale, roomW / (w.clientW / 15 + 2), roomH / (w.clientH / 15 + w.chromeHeight() + 2));
    if (!Number.isFinite(scale)) return 1;
    if (scale < 1) return Math.max(0.4, Math.floor(scale * 100) / 100);
    let best = 1;
    for (const z of kZooms) if (z <= scale) best = z;
    return best;
  }
  function setZoom(z) {
    zoom = z;
    for (const w of forms.values()) w.layout();
  }
  function refit() {
    const before = fitZoom;
    fitZoom = fittingZoom();
    if (!userZoomed || zoom === before) setZoom(fitZoom);
    else for (const w of forms.values()) w.place();
  }
  window.addEventListener('resize', refit);

  // -- Files of the page's memory file system.
  const fs = () => Module.FS;
  const ext = (path) => (path.match(/\.([^./]+)$/) || ['', ''])[1].toLowerCase();
  function exists(path) { try { fs().stat(path); return true; } catch (e) { return false; } }
  function blobUrl(path) {
    const bytes = fs().readFile(path);
    return URL.createObjectURL(new Blob([bytes], { type: kMime[ext(path)] || 'application/octet-stream' }));
  }
  function playable(path) {
    const alternatives = kInstead[ext(path)];
    if (!alternatives) return exists(path) ? path : null;
    for (const other of alternatives) {
      const candidate = path.replace(/\.[^./]+$/, '.' + other);
      if (exists(candidate)) return candidate;
    }
    return null;
  }
  const pictures = new Map();  // path -> {url, stamp}
  function pictureUrl(path) {
    let stamp;
    try { stamp = fs().stat(path).mtime.getTime(); } catch (e) { return ''; }
    const known = pictures.get(path);
    if (known && known.stamp === stamp) return known.url;
    if (known) URL.revokeObjectURL(known.url);
    const url = blobUrl(path);
    pictures.set(path, { url, stamp });
    return url;
  }

  // -- A window of the page for one form.
  class FormWindow {
    constructor(index, d) {
      this.index = index;
      this.d = d;
      this.font = d.look.font || d.look.points > 0 ? d.look : kFormFont;  // what a control that names no font is drawn in
      this.state = d.state;
      this.values = d.values;
      this.clientW = d.width;
      this.clientH = d.tableHeight;
      this.root = element('div', 'fw-window' + (d.noBorder ? ' fw-borderless' : ''));
      this.root.setAttribute('role', 'dialog');
      this.root.setAttribute('aria-label', d.state.caption || d.name);
      this.root.dataset.form = d.name;
      if (!d.noBorder) {
        this.title = element('div', 'fw-title');
        this.titleText = element('span');
        const close = element('button');
        close.textContent = '×';
        close.title = 'Close';
        close.setAttribute('aria-label', 'Close');
        close.tabIndex = -1;
        close.onclick = () => post('close', index);
        this.title.append(this.titleText, close);
        this.root.append(this.title);
      }
      this.menuBar = null;
      this.client = element('div', 'fw-client');
      if (d.look.hand) this.client.classList.add('fw-hand');
      if (d.look.art) this.client.append(art(d.look.art));
      this.root.append(this.client);
      this.els = [];
      this.inner = [];
      this.menuItems = [];
      d.controls.forEach((c, i) => this.make(c, i));
      this.buildMenus();
      desk().append(this.root);
      this.applyForm(d.state);
    }

    chromeHeight() {
      const title = this.title ? 20 : 0;
      const bar = this.menuBar && this.menuBar.style.display !== 'none' ? 21 : 0;
      return title + bar;
    }

    make(c, i) {
      const parentIndex = c.parent;
      const parent = parentIndex >= 0 ? this.inner[parentIndex] : this.client;
      if (!parent || c.kind === 'Timer' || c.kind === 'FileDialog' || c.kind === 'Menu') return;
      if (c.kind === 'MediaPlayer' && parentIndex < 0) return;  // a sound player has no face
      const act = (action, value = 0, text = '') => post('act', this.index, i, kActions[action], value, text);
      let el;
      let inner = null;
      switch (c.kind) {
        case 'Label':
        case 'PictureBox':
        case 'Image': {
          el = element('div', 'fw-control ' + (c.kind === 'Label' ? 'fw-label' : 'fw-picture'));
          if (c.kind === 'PictureBox' && c.look.scrollBar) {
            el.classList.add('fw-scroll');
            inner = element('div');
            inner.style.position = 'relative';
            el.append(inner);
          }
          if (c.look.art) el.append(art(c.look.art));
          else if (c.look.transparent && c.kind === 'Image') el.classList.add('fw-hot');
          if (c.kind === 'Label') {
            el.textNode = element('span');
            el.textNode.style.position = 'relative';
            el.append(el.textNode);
          }
          if (c.look.hand) el.classList.add('fw-hand');
          if (c.clicks) {
            el.setAttribute('role', 'button');
            el.tabIndex = 0;
            el.addEventListener('keydown', (e) => {
              if ((e.key === 'Enter' || e.key === ' ') && !e.ctrlKey && !e.altKey && !e.metaKey) {
                e.preventDefault();
                e.stopPropagation();
                act('Click');
              }
            });
          } else if (c.kind !== 'Label') {
            el.setAttribute('role', 'img');
          }
          el.addEventListener('click', (e) => {
            if (c.kind === 'Label') return act('Click');
            const box = el.getBoundingClientRect();
            const v = this.values[i];
            const within = (at, size) => Math.min(Math.max(at, 0), Math.max(0, size - 1));
            const x = within((e.clientX - box.left) * 15 / zoom, v.width);
            const y = within((e.clientY - box.top) * 15 / zoom, v.height);
            post('at', this.index, i, x.toFixed(1), y.toFixed(1));
          });
          break;
        }
        case 'TextBox':
          if (c.look.multiLine) {
            el = element('textarea', 'fw-control');
            if (!c.look.scrollBar) el.classList.add('fw-noscroll');
          } else {
            el = element('input', 'fw-control');
            el.type = 'text';
            if (c.maxLength > 0) el.maxLength = c.maxLength;
          }
          el.readOnly = c.look.readOnly;
          el.spellcheck = false;
          el.addEventListener('input', () => act('Type', 0, c.look.multiLine ? el.value.replace(/\r?\n/g, '\r\n') : el.value));
          break;
        case 'CommandButton':
          el = element('button', 'fw-control');
          el.type = 'button';
          el.addEventListener('click', () => act('Click'));
          break;
        case 'CheckBox':
        case 'OptionButton': {
          el = element('label', 'fw-control fw-check');
          el.box = element('input');
          el.box.type = c.kind === 'CheckBox' ? 'checkbox' : 'radio';
          el.textNode = element('span');
          el.append(el.box, el.textNode);
          el.box.addEventListener('click', (e) => {
            e.preventDefault();  // the engine's value is shown, once it has taken the click
            if (c.kind === 'CheckBox') act('Check', el.box.checked ? 0 : 1);
            else act('Select');
          });
          break;
        }
        case 'ListBox':
        case 'DirListBox':
          el = element('select', 'fw-control');
          el.size = 2;
          if (c.kind === 'ListBox') {
            el.addEventListener('change', () => { if (el.selectedIndex >= 0) act('Choose', el.selectedIndex); });
          } else {
            const go = () => { const o = el.options[el.selectedIndex]; if (o) act('Type', 0, o.value); };
            el.addEventListener('dblclick', go);
            el.addEventListener('keydown', (e) => { if (e.key === 'Enter') { e.preventDefault(); go(); } });
          }
          break;
        case 'ProgressBar':
          el = element('div', 'fw-control fw-bar');
          el.setAttribute('role', 'progressbar');
          el.fill = element('div');
          el.append(el.fill);
          break;
        case 'MediaPlayer':
          el = element('div', 'fw-control fw-movie');
          break;
        case 'Frame':
          el = element('div', 'fw-control fw-frame');
          el.setAttribute('role', 'group');
          el.textNode = element('span', 'fw-legend');
          el.append(el.textNode);
          el.style.borderColor = color(c.look.fore === -1 ? 0 : c.look.fore);
          break;
        case 'Shape':
          el = element('div', 'fw-control');
          el.style.border = `${c.look.border}px solid ${color(c.look.fore === -1 ? 0 : c.look.fore)}`;
          break;
        default:
          return;
      }
      el.dataset.name = c.name;
      // A control takes its own clicks and moves, as a widget does: the
      // container under it hears nothing of them.
      el.addEventListener('click', (e) => e.stopPropagation());
      el.addEventListener('mousemove', (e) => e.stopPropagation());
      if (c.look.fore !== -1) el.style.color = color(c.look.fore);
      if (!c.look.transparent && c.look.back !== -1) el.style.backgroundColor = color(c.look.back);
      if (c.tip && !['TextBox', 'ListBox', 'MediaPlayer', 'Frame'].includes(c.kind)) el.title = c.tip;
      if (c.moves) {
        el.addEventListener('mousemove', () => {
          const now = performance.now();
          if (now - lastHover > 60) { lastHover = now; act('Hover'); }
        });
        el.addEventListener('mouseenter', () => { lastHover = performance.now(); act('Hover'); });
      }
      this.els[i] = el;
      this.inner[i] = inner || el;
      parent.append(el);
    }

    buildMenus() {
      const menus = new Map();
      this.d.controls.forEach((c, i) => {
        if (c.kind !== 'Menu') return;
        if (c.parent < 0) {
          if (!this.menuBar) {
            this.menuBar = element('nav', 'fw-menubar');
            this.menuBar.setAttribute('aria-label', 'Menu');
            this.root.insertBefore(this.menuBar, this.client);
          }
          const holder = element('div');
          const title = element('button');
          title.type = 'button';
          const list = element('div', 'fw-menu');
          list.setAttribute('role', 'menu');
          holder.append(title, list);
          this.menuBar.append(holder);
          menus.set(i, list);
          const hasItems = this.d.controls.some((o) => o.kind === 'Menu' && o.parent === i);
          title.setAttribute('aria-haspopup', hasItems ? 'menu' : 'false');
          title.addEventListener('click', () => {
            if (!hasItems) return post('act', this.index, i, kActions.Click, 0, '');
            const open = !list.classList.contains('fw-open');
            closeMenus();
            if (open) { list.classList.add('fw-open'); const first = list.querySelector('button:not([disabled])'); if (first) first.focus(); }
          });
          this.menuItems[i] = { holder, button: title };
        } else if (menus.has(c.parent)) {
          const item = element('button');
          item.type = 'button';
          item.setAttribute('role', 'menuitem');
          item.addEventListener('click', () => { closeMenus(); post('act', this.index, i, kActions.Click, 0, ''); });
          menus.get(c.parent).append(item);
          this.menuItems[i] = { holder: item, button: item };
        }
      });
    }

    applyForm(state) {
      this.state = state;
      if (this.titleText) this.titleText.textContent = state.caption;
      this.root.setAttribute('aria-label', state.caption || this.d.name);
      this.clientW = state.width;
      if (state.picture) {
        this.client.style.backgroundImage = `url(${pictureUrl(state.picture)})`;
        this.client.style.backgroundSize = '100% 100%';
      }
      const showing = state.visible && this.root.style.display !== 'block';
      this.root.style.display = state.visible ? 'block' : 'none';
      if (showing) this.root.style.zIndex = String(++stack);
      this.layout();
      if (showing) refit();
    }

    // The client height: a form's table gives it; a Height the program sets
    // later is the whole window's, its title bar and borders (405 twips on
    // the platform the forms were drawn for) and its menu bar included.
    clientHeight() {
      const s = this.state;
      if (s.height === this.d.tableHeight) return s.height;
      const bar = this.menuBar && this.menuBar.style.display !== 'none' ? 21 * 15 : 0;
      return Math.max(0, s.height - 405 - bar);
    }

    layout() {
      this.clientH = this.clientHeight();
      this.root.style.font = fontCss(this.d.look, kFormFont);
      if (this.menuBar) this.menuBar.style.font = fontCss(null, kFormFont);
      if (this.title) this.title.style.fontSize = `${(9 * zoom).toFixed(1)}pt`;
      this.client.style.width = px(this.clientW) + 'px';
      this.client.style.height = px(this.clientH) + 'px';
      if (this.d.look.back !== -1) this.client.style.backgroundColor = color(this.d.look.back);
      this.values.forEach((v, i) => this.apply(i, v));
      this.place();
    }

    place() {
      const w = this.root.offsetWidth, h = this.root.offsetHeight;
      this.root.style.left = Math.max(0, Math.round((window.innerWidth - w) / 2)) + 'px';
      this.root.style.top = Math.max(0, Math.round((window.innerHeight - h) / 2)) + 'px';
    }

    apply(i, v) {
      this.values[i] = Object.assign(this.values[i] || {}, v);
      v = this.values[i];
      const c = this.d.controls[i];
      if (c.kind === 'Menu') return this.applyMenu(i, v);
      const el = this.els[i];
      if (!el) return;
      el.style.left = px(v.left) + 'px';
      el.style.top = px(v.top) + 'px';
      el.style.width = px(v.width) + 'px';
      el.style.height = px(v.height) + 'px';
      el.style.display = v.visible ? '' : 'none';
      el.style.font = fontCss(c.look, this.font);
      if (el.getAttribute('aria-label') !== v.name) el.setAttribute('aria-label', v.name);
      const off = !v.enabled;
      if ('disabled' in el && c.kind !== 'Label') el.disabled = off;
      if (el.box) el.box.disabled = off;
      el.classList.toggle('fw-disabled', off && !('disabled' in el));
      if (el.getAttribute('aria-disabled') !== String(off)) el.setAttribute('aria-disabled', String(off));
      switch (c.kind) {
        case 'Label':
          el.classList.toggle('fw-wrap', twoLines(c, v.height));
          el.textNode.textContent = plain(v.caption);
          break;
        case 'PictureBox':
        case 'Image':
          this.applyPicture(el, v.picture);
          break;
        case 'TextBox':
          this.applyText(el, c, v);
          break;
        case 'CommandButton':
          el.textContent = v.caption;
          break;
        case 'CheckBox':
          el.textNode.textContent = plain(v.caption);
          el.box.checked = v.check === 1;
          break;
        case 'OptionButton':
          el.textNode.textContent = plain(v.caption);
          el.box.checked = !!v.option;
          break;
        case 'Frame':
          el.textNode.textContent = v.caption;
          break;
        case 'ListBox':
          if (v.list) this.applyList(el, v.list);
          delete v.list;
          if (el.selectedIndex !== v.listIndex) el.selectedIndex = v.listIndex;
          el.size = Math.max(2, el.options.length);
          break;
        case 'DirListBox':
          if (v.folder !== undefined) this.applyFolders(el, v.folder);
          delete v.folder;
          break;
        case 'ProgressBar': {
          const share = v.max > 0 ? Math.max(0, Math.min(1, v.value / v.max)) : 0;
          el.fill.style.width = (share * 100).toFixed(1) + '%';
          el.setAttribute('aria-valuenow', String(v.value));
          el.setAttribute('aria-valuemax', String(v.max));
          break;
        }
        default:
          break;
      }
    }

    applyPicture(el, path) {
      if (el.shownPicture === path) return;
      el.shownPicture = path;
      const url = path ? pictureUrl(path) : '';
      el.style.backgroundImage = url ? `url(${url})` : '';
      el.style.backgroundSize = '100% 100%';
      const drawing = el.querySelector(':scope > .fw-art');
      if (drawing) drawing.style.display = url ? 'none' : '';
    }

    applyText(el, c, v) {
      const text = c.look.multiLine ? v.caption.replace(/\r\n/g, '\n') : v.caption;
      // The player's own typing still on its way to the engine stays.
      const typing = document.activeElement === el && queue.some((q) => q.startsWith(`act\t${this.index}\t${this.els.indexOf(el)}\t2\t`));
      if (el.value !== text && !typing) {
        el.value = text;
        if (c.look.multiLine) {
          const at = Math.min(v.selStart, text.length);
          if (el.selectionStart !== at && document.activeElement !== el) el.setSelectionRange(at, at);
          if (at >= text.length - 1) el.scrollTop = el.scrollHeight;
        }
      } else if (c.look.multiLine && v.selStart >= text.length && document.activeElement !== el) {
        el.scrollTop = el.scrollHeight;
      }
    }

    applyList(el, list) {
      // Entries change one at a time: append, take one out, or clear.
      const have = el.options.length;
      if (have === list.length - 1 && Array.from(el.options).every((o, k) => o.text === list[k])) {
        el.add(new Option(list[list.length - 1]));
        return;
      }
      el.textContent = '';
      for (const entry of list) el.add(new Option(entry));
    }

    applyFolders(el, folder) {
      el.textContent = '';
      el.add(new Option(folder, folder));
      const up = folder.replace(/\/[^/]*$/, '') || '/';
      if (up !== folder) el.add(new Option('..', up));
      let names = [];
      try { names = fs().readdir(folder); } catch (e) { names = []; }
      for (const name of names.sort()) {
        if (name === '.' || name === '..') continue;
        const path = (folder === '/' ? '' : folder) + '/' + name;
        try { if (fs().isDir(fs().stat(path).mode)) el.add(new Option(name, path)); } catch (e) { /* gone */ }
      }
      el.selectedIndex = 0;
      el.size = Math.max(2, el.options.length);
    }

    applyMenu(i, v) {
      const item = this.menuItems[i];
      if (!item) return;
      item.button.textContent = plain(v.caption);
      item.holder.style.display = v.visible ? '' : 'none';
      item.button.disabled = !v.enabled;
      if (this.menuBar && this.d.controls[i].parent < 0) {
        // A bar whose menus are all hidden (a packaged game's) takes no room.
        const any = Array.from(this.menuBar.children).some((h) => h.style.display !== 'none');
        const shown = any ? '' : 'none';
        if (this.menuBar.style.display !== shown) {
          this.menuBar.style.display = shown;
          this.clientH = this.clientHeight();
          this.client.style.height = px(this.clientH) + 'px';
        }
      }
    }

    reach(changes) {
      for (let k = 0; k + 1 < changes.length; k += 2) {
        const el = this.els[changes[k]];
        if (!el) continue;
        const focusable = changes[k + 1] ? 0 : -1;
        el.tabIndex = focusable;
        if (el.box) el.box.tabIndex = focusable;
      }
    }

    drop() {
      for (const [key, m] of media) if (key.startsWith(this.index + '/')) { dropMedia(m); media.delete(key); }
      this.root.remove();
    }
  }

  function element(tag, cls) {
    const el = document.createElement(tag);
    if (cls) el.className = cls;
    return el;
  }
  function art(name) {
    const img = element('img', 'fw-art');
    img.src = artUrl(name);
    img.alt = '';
    img.draggable = false;
    return img;
  }
  function closeMenus() { for (const m of document.querySelectorAll('.fw-menu.fw-open')) m.classList.remove('fw-open'); }
  document.addEventListener('click', (e) => { if (!e.target.closest('.fw-menubar')) closeMenus(); });

  // The window the player is in: the one on top.
  function topWindow() {
    let best = null;
    for (const w of forms.values())
      if (w.root.style.display !== 'none' && (!best || Number(w.root.style.zIndex) > Number(best.root.style.zIndex))) best = w;
    return best;
  }

  // -- Keys: the zoom, then the form's own key table (the engine decides
  // what a key does; the page only names it as the tables do).
  function keyName(e) {
    if (e.key === 'Enter') return e.code === 'NumpadEnter' ? 'Enter' : 'Return';
    if (e.key === 'Escape') return 'Escape';
    return e.key.length === 1 ? e.key.toUpperCase() : null;
  }
  document.addEventListener('keydown', (e) => {
    unlockSound();
    if (modal) return modal.key(e);
    if (e.ctrlKey && !e.altKey && !e.metaKey) {
      const step = kZooms.indexOf(zoom);
      if (e.key === '+' || e.key === '=') { if (step + 1 < kZooms.length) { userZoomed = true; setZoom(step < 0 ? 1 : kZooms[step + 1]); } }
      else if (e.key === '-') { if (step > 0) { userZoomed = true; setZoom(kZooms[step - 1]); } }
      else if (e.key === '0') { userZoomed = false; setZoom(fitZoom); }
      else return;
      e.preventDefault();
      return;
    }
    if (e.ctrlKey || e.altKey || e.metaKey) return;
    const t = e.target;
    const editing = t && ((t.tagName === 'INPUT' && t.type === 'text' || t.tagName === 'TEXTAREA') && !t.readOnly || t.tagName === 'SELECT');
    if (editing && e.key !== 'Escape') return;
    if (t && t.tagName === 'BUTTON' && (e.key === 'Enter' || e.key === ' ')) return;
    if (e.key === 'Escape' && document.querySelector('.fw-menu.fw-open')) { closeMenus(); e.preventDefault(); return; }
    const w = topWindow();
    const name = keyName(e);
    if (!w || !name || !w.d.keys.includes(name)) return;
    e.preventDefault();
    post('key', w.index, name);
  });

  // -- Sound: the browser lets a page sound only after the player's first
  // click or key.
  function unlockSound() {
    if (unlocked) return;
    unlocked = true;
    for (const el of waitingSound.splice(0)) el.play().catch(() => {});
  }
  document.addEventListener('pointerdown', unlockSound, true);
  function start(el) {
    el.play().catch(() => { if (!waitingSound.includes(el)) waitingSound.push(el); });
  }
  function dropMedia(m) {
    m.el.pause();
    m.el.remove();
    URL.revokeObjectURL(m.url);
    const k = waitingSound.indexOf(m.el);
    if (k >= 0) waitingSound.splice(k, 1);
  }

  // -- Dialogs: modal in the page, answered by a click or a key.
  function openModal(title, body, buttons, onKey) {
    const shade = element('div', 'fw-modal');
    const box = element('div', 'fw-dialog');
    box.setAttribute('role', 'alertdialog');
    box.setAttribute('aria-modal', 'true');
    const head = element('div', 'fw-title');
    const headText = element('span');
    headText.textContent = title;
    head.append(headText);
    box.append(head, body, buttons);
    box.setAttribute('aria-label', title);
    shade.append(box);
    document.body.append(shade);
    const before = document.activeElement;
    modal = {
      box,
      key: (e) => { if (onKey(e)) e.preventDefault(); },
      close: () => { shade.remove(); modal = null; if (before && before.focus) before.focus(); },
    };
    box.style.fontSize = `${(10 * Math.min(zoom, 2)).toFixed(1)}pt`;
    return modal;
  }
  function button(text, onClick) {
    const b = element('button');
    b.type = 'button';
    b.textContent = text;
    b.addEventListener('click', onClick);
    return b;
  }

  function messageBox({ prompt, title, style }) {
    const body = element('div', 'fw-body');
    const icon = { 16: '⛔', 48: '⚠', 64: 'ℹ' }[style];
    if (icon) { const i = element('span', 'fw-icon'); i.textContent = icon; i.setAttribute('aria-hidden', 'true'); body.append(i); }
    const text = element('div');
    text.textContent = prompt;
    body.append(text);
    const buttons = element('div', 'fw-buttons');
    const answer = (n) => { m.close(); post('answer', n); };
    const choices = style === 4 ? [['Yes', 6], ['No', 7]] : [['OK', 1]];
    for (const [label, n] of choices) buttons.append(button(label, () => answer(n)));
    const m = openModal(title, body, buttons, (e) => {
      if (e.key === 'Escape') { answer(style === 4 ? 7 : 1); return true; }
      if (e.key === 'Tab') { trapTab(m.box, e); return true; }
      return false;
    });
    buttons.firstChild.focus();
  }
  function trapTab(box, e) {
    const all = Array.from(box.querySelectorAll('button, input, select')).filter((x) => !x.disabled);
    const at = all.indexOf(document.activeElement);
    const next = all[(at + (e.shiftKey ? all.length - 1 : 1)) % all.length];
    if (next) next.focus();
  }

  // The file dialogs: a chooser over the game's own files and the player's
  // folder, with Download and Upload of a file the filter takes.
  function listFiles(folder, exts, into) {
    let names = [];
    try { names = fs().readdir(folder); } catch (e) { return into; }
    for (const name of names.sort()) {
      if (name === '.' || name === '..') continue;
      const path = folder + '/' + name;
      let st;
      try { st = fs().stat(path); } catch (e) { continue; }
      if (fs().isDir(st.mode)) listFiles(path, exts, into);
      else if (exts.length === 0 || exts.includes(ext(name))) into.push(path);
    }
    return into;
  }
  function filterExtensions(filter) {
    const parts = filter.split('|');
    const exts = [];
    for (let k = 1; k < parts.length; k += 2)
      for (const pattern of parts[k].split(';')) {
        const m = pattern.trim().match(/^\*\.([^.*]+)$/);
        if (m) exts.push(m[1].toLowerCase());
      }
    return exts;
  }
  function fileChooser({ save, filter, defaultExt, fileName, dialog }) {
    const exts = filterExtensions(filter);
    const body = element('div', 'fw-body');
    const list = element('select');
    list.size = 8;
    list.setAttribute('aria-label', 'Files');
    const fill = () => {
      list.textContent = '';
      for (const path of listFiles(kUserDir, exts, [])) list.add(new Option(path.slice(kUserDir.length + 1), path));
      for (const path of listFiles(kGameDir, exts, [])) list.add(new Option(path.slice(kGameDir.length + 1) + ' (game)', path));
    };
    fill();
    const nameRow = element('label');
    nameRow.textContent = 'File name:';
    const name = element('input');
    name.type = 'text';
    const given = (fileName || '').replace(/^.*[\\/]/, '');
    name.value = /[*?]/.test(given) ? '' : given;  // a pattern is the filter's, not a name
    nameRow.append(name);
    body.append(list, nameRow);
    const buttons = element('div', 'fw-buttons');
    const finish = (path) => { m.close(); post('file', path); };
    const chosen = () => {
      const typed = name.value.trim();
      if (typed) {
        const selected = list.options[list.selectedIndex];
        if (selected && selected.text === typed) return selected.value;
        let file = typed.replace(/[\\/]/g, '_');
        const extension = (defaultExt || '').replace(/^\*?\./, '');  // "*.sav" or ".sav" or "sav"
        if (!/\.[^.]+$/.test(file) && extension) file += '.' + extension;
        if (save) return kUserDir + '/' + file;
        const mine = kUserDir + '/' + file;
        if (exists(mine)) return mine;
        const theirs = kGameDir + '/' + file;
        return exists(theirs) ? theirs : null;
      }
      const selected = list.options[list.selectedIndex];
      return selected ? selected.value : null;
    };
    list.addEventListener('change', () => { const o = list.options[list.selectedIndex]; if (o) name.value = o.text.replace(/ \(game\)$/, ''); });
    list.addEventListener('dblclick', () => { const p = chosen(); if (p) finish(p); });
    const ok = button(save ? 'Save' : 'Open', () => { const p = chosen(); if (p) finish(p); else name.focus(); });
    const download = button('Download', () => {
      const o = list.options[list.selectedIndex];
      if (!o) return;
      const a = element('a');
      a.href = blobUrl(o.value);
      a.download = o.value.replace(/^.*\//, '');
      document.body.append(a);
      a.click();
      a.remove();
      setTimeout(() => URL.revokeObjectURL(a.href), 10000);
    });
    const upload = button('Upload…', () => picker.click());
    const picker = element('input');
    picker.type = 'file';
    picker.accept = exts.map((x) => '.' + x).join(',');
    picker.style.display = 'none';
    picker.addEventListener('change', async () => {
      for (const file of picker.files) {
        const bytes = new Uint8Array(await file.arrayBuffer());
        fs().writeFile(kUserDir + '/' + file.name.replace(/[\\/]/g, '_'), bytes);
      }
      sync();
      fill();
    });
    const cancel = button('Cancel', () => finish(''));
    buttons.append(ok, download, upload, cancel, picker);
    const m = openModal(save ? 'Save As' : 'Open', body, buttons, (e) => {
      if (e.key === 'Escape') { finish(''); return true; }
      if (e.key === 'Enter' && e.target.tagName !== 'BUTTON') { ok.click(); return true; }
      if (e.key === 'Tab') { trapTab(m.box, e); return true; }
      return false;
    });
    m.box.classList.add('fw-chooser');
    m.box.dataset.dialog = dialog;
    (save ? name : list).focus();
  }

  // -- The player's folder in IndexedDB: the whole folder is written back
  // after every change of a file in it.
  function sync() {
    if (syncing) { syncAgain = true; return; }
    syncing = new Promise((done) => {
      fs().syncfs(false, (err) => {
        if (err) console.warn('Fablewright: the saved games could not be kept in the browser', err);
        syncing = null;
        done();
        if (syncAgain) { syncAgain = false; sync(); }
      });
    });
  }
  function watchUserFolder(FS) {
    const mine = (path) => typeof path === 'string' && (path === kUserDir || path.startsWith(kUserDir + '/'));
    const wrap = (name, touches) => {
      const original = FS[name];
      FS[name] = function (...args) {
        const result = original.apply(this, args);
        if (touches(...args)) sync();
        return result;
      };
    };
    wrap('close', (stream) => stream && mine(stream.path) && (stream.flags & 3) !== 0);
    wrap('rename', (from, to) => mine(from) || mine(to));
    wrap('unlink', mine);
    wrap('rmdir', mine);
    wrap('mkdir', mine);
  }

  // -- Calls from the engine.
  const calls = {
    buildForm(index, d) {
      document.getElementById('fw-status').hidden = true;
      if (FwPage.firstPaint === undefined) {
        FwPage.firstPaint = null;
        requestAnimationFrame(() => { FwPage.firstPaint = performance.now(); });  // for the figures in bench/
      }
      const w = new FormWindow(index, d);
      forms.set(index, w);
      refit();
    },
    updateForm(index, state) { const w = forms.get(index); if (w) w.applyForm(state); },
    updateControl(index, i, v) {
      const w = forms.get(index);
      if (!w) return;
      if (i < 0) w.reach(v.reach);
      else w.apply(i, v);
    },
    dropForm(index) { const w = forms.get(index); if (w) { w.drop(); forms.delete(index); } },
    messageBox,
    fileChooser,
    announce(text) {
      const region = document.getElementById('fw-announce');
      region.textContent = text.trim();
    },
    mediaLoad(form, i, file, face) {
      const key = form + '/' + i;
      if (media.has(key)) { dropMedia(media.get(key)); media.delete(key); }
      const path = playable(file);
      if (!path) return;
      const video = face && ['webm', 'mp4'].includes(ext(path));
      const el = element(video ? 'video' : 'audio');
      const url = blobUrl(path);
      el.src = url;
      el.preload = 'auto';
      const w = forms.get(form);
      const host = face && w ? w.els[i] : null;
      if (host && video) host.append(el);
      else document.body.append(el);
      media.set(key, { el, url });
    },
    mediaPlay(form, i, loop) {
      const m = media.get(form + '/' + i);
      if (!m) return;
      m.el.loop = loop;
      m.el.currentTime = 0;
      start(m.el);
    },
    mediaStop(form, i) { const m = media.get(form + '/' + i); if (m) m.el.pause(); },
    mediaUnload(form, i) {
      const key = form + '/' + i;
      if (media.has(key)) { dropMedia(media.get(key)); media.delete(key); }
    },
    tunePlay(file, from, to) {
      if (tune) { dropMedia(tune); tune = null; }
      const path = playable(file);
      if (!path) return;  // silent, on the tune's own timing
      const el = element('audio');
      const url = blobUrl(path);
      el.src = url;
      if (from > 0) el.currentTime = from;
      if (to > from) el.addEventListener('timeupdate', () => { if (el.currentTime >= to) el.pause(); });
      document.body.append(el);
      tune = { el, url };
      start(el);
    },
    tuneStop() { if (tune) { dropMedia(tune); tune = null; } },
    openAddress(target) { window.open(target, '_blank', 'noopener'); },
    ended() {
      closeMenus();
      for (const [k, w] of forms) { w.drop(); forms.delete(k); }
      const note = element('p', 'fw-ended');
      note.textContent = 'The game has ended. Reload the page to play again.';
      desk().append(note);
      FwPage.over = true;
    },
  };
  function fromEngine(name, args) { calls[name](...args); }

  // -- Start: the player's folder from IndexedDB, the game's files from the
  // server, then the engine with the quest to open.
  async function loadGame(FS) {
    const listing = await (await fetch('game/files.json')).json();
    FS.mkdirTree(kGameDir);
    for (const name of listing.files) {
      const bytes = new Uint8Array(await (await fetch('game/' + encodeURIComponent(name))).arrayBuffer());
      FS.writeFile(kGameDir + '/' + name, bytes);
    }
    return listing.quest || '';
  }
  function boot() {
    let quest = '';
    window.Module = {
      preRun: [() => {
        const FS = Module.FS;
        FS.mkdir(kUserDir);
        FS.mount(Module.IDBFS, {}, kUserDir);
        Module.addRunDependency('fw-files');
        FS.syncfs(true, (err) => {
          if (err) console.warn('Fablewright: the saved games in this browser could not be read', err);
          loadGame(FS).then((q) => { quest = q; watchUserFolder(FS); Module.removeRunDependency('fw-files'); })
            .catch((e) => { document.getElementById('fw-status').textContent = 'The game could not be loaded: ' + e; });
        });
      }],
      onRuntimeInitialized: () => {
        Module.FS.chdir(kGameDir);
        Module.callMain(quest ? [kGameDir + '/' + quest] : []);
      },
      print: (text) => console.log(text),
      printErr: (text) => console.warn(text),
    };
  }
  boot();

  return {
    fromEngine, nextEvent, takeEvent, over: false,
    // For tests: resolves once the player's folder is in IndexedDB.
    async synced() { while (syncing) await syncing; },
    zoom: () => zoom,
  };
})();
