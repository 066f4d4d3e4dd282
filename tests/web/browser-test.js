// The web version in a real browser: Debian's Chromium, headless, driven
// through the DevTools protocol, plays the demo from a server on 127.0.0.1
// to its ending with clicks and then with keys, saves, reloads the page,
// continues from the saved game, downloads the .sav and hands it to the
// desktop's script runner. The console must show no error. Screenshots go to
// build/screenshots/web-*.png.
//   node browser-test.js SITE NATIVE_PROGRAM DEMO_FOLDER DEMO_MEDIA SCREENSHOTS
'use strict';
const fs = require('fs');
const os = require('os');
const path = require('path');
const { execFileSync } = require('child_process');
const { serve } = require('../../web/serve.js');
const { launch } = require('./chromium.js');

const [site, native, demo, media, shots] = process.argv.slice(2);
const errors = [];
let checks = 0, failures = 0;

function check(ok, what) {
  checks++;
  if (!ok) { failures++; console.log(`FAIL: ${what}`); }
}

async function main() {
  fs.mkdirSync(shots, { recursive: true });
  const downloads = fs.mkdtempSync(path.join(os.tmpdir(), 'fw-downloads-'));
  const server = await serve(site);
  const address = `http://127.0.0.1:${server.address().port}/`;
  const { browser, cleanup } = await launch();
  try {
    const page = await browser.newPage();
    await page.setViewport({ width: 1024, height: 768 });
    page.on('console', (m) => { if (m.type() === 'error') errors.push(m.text()); });
    page.on('pageerror', (e) => errors.push(String(e)));
    const cdp = await page.createCDPSession();
    await cdp.send('Browser.setDownloadBehavior', { behavior: 'allow', downloadPath: downloads });

    const game = new Game(page);
    await page.goto(address);
    await game.shot('web-splash');
    await game.playByClicks();
    await game.save('webgame');
    await game.download('webgame.sav');

    // The saved game continues after a reload: it lives in IndexedDB.
    await page.reload();
    await game.waitCharacterPanel();
    await game.click('Command9');
    await game.loadSaved('webgame.sav');
    check((await game.value('pg')) === '6', 'the saved game loads at its page after a reload');
    check((await game.transcript()).includes('Loaded Successfully.'), 'the transcript says the game loaded');
    await game.shot('web-loaded');

    await page.reload();
    await game.playByKeys();

    // A phone held sideways: the game fits the screen.
    await page.setViewport({ width: 844, height: 390 });
    await page.reload();
    await game.waitCharacterPanel();
    const box = await page.$eval('.fw-window[data-form="FrmGame"]', (el) => el.getBoundingClientRect().toJSON());
    check(box.width <= 844 && box.height <= 390 && box.left >= 0 && box.top >= 0, `the game fits a phone held sideways (${JSON.stringify(box)})`);
    await game.shot('web-phone');

    // The desktop's program continues the game saved in the browser.
    const sav = path.join(downloads, 'webgame.sav');
    check(fs.existsSync(sav), 'the .sav was downloaded');
    if (fs.existsSync(sav)) check(desktopLoads(sav), 'the desktop loads the downloaded .sav at page 6');
  } finally {
    await cleanup();
    server.close();
  }
  for (const e of errors) console.log(`console error: ${e}`);
  check(errors.length === 0, 'the console shows no error');
  console.log(`${checks - failures} passed, ${failures} failed`);
  process.exitCode = failures ? 1 : 0;
}

// The demo's game through the page, by the names of the form tables.
class Game {
  constructor(page) { this.page = page; }
  sel(name) { return `.fw-window[data-form="FrmGame"] [data-name="${name}"]`; }
  async value(name) {
    return this.page.$eval(this.sel(name), (el) => (el.value !== undefined && el.tagName !== 'DIV' ? el.value : el.textContent));
  }
  transcript() { return this.value('Text1'); }
  async visible(name) {
    return this.page.$eval(this.sel(name), (el) => el.style.display !== 'none' && el.offsetParent !== null).catch(() => false);
  }
  async until(what, test, ms = 15000) {
    const end = Date.now() + ms;
    while (Date.now() < end) {
      if (await test()) return true;
      await new Promise((r) => setTimeout(r, 50));
    }
    await this.shot('web-timeout');
    throw new Error(`timed out waiting for ${what}`);
  }
  async click(name) {
    await this.until(`${name} on screen`, () => this.visible(name));
    await this.page.click(this.sel(name));
  }
  // A click on what may go from the screen meanwhile (a panel closing by itself).
  async clickIfThere(name) {
    await this.page.click(this.sel(name)).catch(() => {});
  }
  async shot(name) { await this.page.screenshot({ path: path.join(shots, name + '.png') }); }
  async waitCharacterPanel() { await this.until('the character panel', () => this.visible('CharCreate')); }
  async modal() { return this.page.$('.fw-modal'); }
  async answerBoxes(byKey) {
    while (await this.modal()) {
      if (byKey) await this.page.keyboard.press('Enter');
      else await this.page.click('.fw-modal .fw-buttons button');
      await new Promise((r) => setTimeout(r, 100));
    }
  }
  async turn(option, byKey) {
    const before = await this.transcript();
    if (byKey) {
      await this.page.keyboard.press(String(option));
      await this.page.keyboard.press('Enter');
    } else {
      await this.click(`Option${option}`);
      await this.click('Picture1');
    }
    await this.until('the next page', async () => (await this.transcript()) !== before);
  }
  // The road to the lantern garden: the lantern, the cave, the bat, the gate.
  async playToEnding(byKey) {
    await this.waitCharacterPanel();
    await this.shot(byKey ? 'web-character-keys' : 'web-character');
    if (byKey) {
      await this.page.focus(this.sel('Command9'));
      await this.page.keyboard.press('Enter');
    } else {
      await this.click('Command9');
    }
    await this.until('the first page', async () => !(await this.visible('CharCreate')));
    await this.until('the options', () => this.visible('Option1'));
    await this.shot('web-first-page');
    await this.turn(1, byKey);
    await this.turn(1, byKey);
    await this.turn(1, byKey);
    await this.until('the battle', () => this.visible('BattleBox'));
    await this.shot('web-battle');
    // The win brings a level: its box, then the character panel over the gate.
    // What is on screen is read once a round: a panel may close between two reads.
    for (;;) {
      if (await this.modal()) {
        await this.shot('web-message');
        await this.answerBoxes(byKey);
        continue;
      }
      const battle = await this.visible('BattleBox'), panel = await this.visible('CharCreate');
      if (!battle && !panel) break;
      if (await this.visible('Image12')) {
        if (byKey) await this.page.keyboard.press('Escape');
        else await this.clickIfThere('Image12');
      } else if (battle) {
        if (byKey) await this.page.keyboard.press('a');
        else await this.clickIfThere('Picture7');
      }
      await new Promise((r) => setTimeout(r, 150));
    }
    check((await this.value('pg')) === '5', `the bat falls and the gate comes (page ${await this.value('pg')})`);
    await this.shot('web-gate');
    await this.until('the movie to end', async () => !(await this.visible('MovBox')), 20000);
    await this.until('the gate option', () => this.visible('Option1'));
    await this.turn(1, byKey);
    check((await this.value('pg')) === '6', 'the road ends in the lantern garden');
    check((await this.transcript()).endsWith('Well done!'), 'the ending is in the transcript');
    await this.shot(byKey ? 'web-ending-keys' : 'web-ending');
  }
  playByClicks() { return this.playToEnding(false); }
  playByKeys() { return this.playToEnding(true); }
  async menu(caption) {
    await this.page.click('.fw-window[data-form="FrmGame"] .fw-menubar > div:first-child > button');
    const items = await this.page.$$('.fw-window[data-form="FrmGame"] .fw-menu.fw-open button');
    for (const item of items)
      if ((await item.evaluate((el) => el.textContent)) === caption) return item.click();
    throw new Error(`no menu item ${caption}`);
  }
  async save(name) {
    await this.menu('Save Current Game');
    await this.page.waitForSelector('.fw-chooser');
    await this.page.$eval('.fw-chooser input[type=text]', (el) => { el.value = ''; });
    await this.page.type('.fw-chooser input[type=text]', name);
    await this.shot('web-save');
    await this.page.click('.fw-chooser .fw-buttons button');
    await this.until('the save', async () => (await this.transcript()).includes('Saved Successfully.'));
    await this.page.evaluate(() => FwPage.synced());
  }
  async choose(file) {
    await this.page.waitForSelector('.fw-chooser');
    await this.page.select('.fw-chooser select', `/user/${file}`);
  }
  async download(file) {
    await this.menu('Load Saved Game');
    await this.choose(file);
    await this.shot('web-load');
    const buttons = await this.page.$$('.fw-chooser .fw-buttons button');
    for (const b of buttons) if ((await b.evaluate((el) => el.textContent)) === 'Download') await b.click();
    await new Promise((r) => setTimeout(r, 500));
    await this.page.keyboard.press('Escape');
  }
  async loadSaved(file) {
    await this.menu('Load Saved Game');
    await this.choose(file);
    await this.page.click('.fw-chooser .fw-buttons button');
    await this.until('the load', async () => (await this.transcript()).includes('Loaded Successfully.'));
  }
}

// The desktop's script runner loads the browser's saved game in the demo.
function desktopLoads(sav) {
  const work = fs.mkdtempSync(path.join(os.tmpdir(), 'fw-desktop-'));
  try {
    fs.cpSync(demo, work, { recursive: true });
    fs.cpSync(media, work, { recursive: true });
    fs.copyFileSync(sav, path.join(work, 'webgame.sav'));
    fs.mkdirSync(path.join(work, 'home'));
    fs.writeFileSync(path.join(work, 'load.txt'), [
      'start', 'answer dialog FrmGame.questfile demo.fbw', 'click FrmGame.Image1', 'wait 0.05',
      'click FrmGame.Command9', 'answer dialog FrmGame.file webgame.sav', 'click FrmGame.mnuload',
      'expect FrmGame.pg.Caption == "6"', 'expect FrmGame.score.Caption == "40"',
      'expect FrmGame.Text1.Text endswith "Well done!"', '',
    ].join('\n'));
    const out = execFileSync(path.resolve(native), ['script', 'load.txt', '--app-dir', '.', '--home', path.join(work, 'home')],
      { cwd: work, encoding: 'utf8' });
    return out.includes('3 passed, 0 failed');
  } catch (e) {
    console.log(String(e.stdout || e));
    return false;
  } finally {
    fs.rmSync(work, { recursive: true, force: true });
  }
}

main().catch((e) => { console.log(`FAIL: ${e.stack || e}`); console.log(`${checks - failures} passed, ${failures + 1} failed`); process.exitCode = 1; });
