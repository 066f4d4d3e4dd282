// The web version's figures, each against its reference in the same run:
//   the engine's .wasm gzip-compressed, and the page's JavaScript;
//   load to the first painted window in headless Chromium, against a blank
//     page that loads and paints the same fonts (median of RUNS loads each);
//   the tab's memory (its renderer's proportional set size) on the demo's
//     first page.
//   node bench/web-figures.js build-web/site [RUNS]
'use strict';
const fs = require('fs');
const path = require('path');
const zlib = require('zlib');
const { serve } = require('../web/serve.js');
const { launch } = require('../tests/web/chromium.js');

const [site, runsArg] = process.argv.slice(2);
const runs = Number(runsArg || 5);
const kB = (n) => `${(n / 1024).toFixed(0)} KB`;
const median = (xs) => xs.slice().sort((a, b) => a - b)[Math.floor(xs.length / 2)];

const kBlank = `<!DOCTYPE html><html><head><meta charset="utf-8"><style>
@font-face { font-family: "Liberation Sans"; src: url(fonts/LiberationSans-Regular.ttf); }
@font-face { font-family: "Liberation Sans"; font-weight: bold; src: url(fonts/LiberationSans-Bold.ttf); }
@font-face { font-family: "Liberation Serif"; src: url(fonts/LiberationSerif-Regular.ttf); }
@font-face { font-family: "Liberation Serif"; font-weight: bold; src: url(fonts/LiberationSerif-Bold.ttf); }
@font-face { font-family: "DejaVu Sans"; src: url(fonts/DejaVuSans.ttf); }
@font-face { font-family: "DejaVu Sans"; font-weight: bold; src: url(fonts/DejaVuSans-Bold.ttf); }
</style></head><body>
<p style="font-family:'Liberation Sans'">Sans <b>bold</b></p><p style="font-family:'Liberation Serif'">Serif <b>bold</b></p>
<p style="font-family:'DejaVu Sans'">DejaVu <b>bold</b></p>
<script>document.fonts.ready.then(() => requestAnimationFrame(() => { window.painted = performance.now(); }));</script>
</body></html>`;

async function loadTime(browser, url, probe) {
  const page = await browser.newPage();
  await page.goto(url);
  await page.waitForFunction(probe, { polling: 10, timeout: 30000 });
  const ms = await page.evaluate(probe);
  await page.close();
  return ms;
}

// A renderer's own memory, as the browser's task manager counts a tab's
// footprint: the pages only it has written (its private dirty memory).
function rendererPss(pid) {
  const text = fs.readFileSync(`/proc/${pid}/smaps_rollup`, 'utf8');
  const kb = (field) => Number((text.match(new RegExp(`^${field}:\\s+(\\d+) kB`, 'm')) || [0, 0])[1]);
  return { own: kb('Private_Dirty') * 1024, pss: kb('Pss') * 1024 };
}

async function main() {
  const wasm = fs.readFileSync(path.join(site, 'fablewright.wasm'));
  const js = ['fablewright.js', 'page.js'].map((f) => fs.statSync(path.join(site, f)).size).reduce((a, b) => a + b);
  console.log(`engine .wasm: ${kB(wasm.length)}, gzip-compressed ${kB(zlib.gzipSync(wasm, { level: 9 }).length)} (limit 1536 KB)`);
  console.log(`page JavaScript (fablewright.js + page.js): ${kB(js)} (limit 100 KB)`);

  fs.writeFileSync(path.join(site, 'blank.html'), kBlank);
  const server = await serve(site);
  const base = `http://127.0.0.1:${server.address().port}/`;
  const { browser, cleanup } = await launch();
  try {
    const game = [], blank = [];
    for (let i = 0; i < runs; i++) {
      blank.push(await loadTime(browser, base + 'blank.html', () => window.painted));
      game.push(await loadTime(browser, base, () => window.FwPage && FwPage.firstPaint));
    }
    const g = median(game), b = median(blank);
    console.log(`load to the first painted window: ${g.toFixed(0)} ms, blank page with the same fonts ${b.toFixed(0)} ms: ` +
      `${(g / b).toFixed(2)} x (limit 3 x)`);

  } finally {
    await cleanup();
  }
  // The memory in a browser of its own, whose one tab has shown nothing else.
  const fresh = await launch();
  try {
    const browser = fresh.browser;
    const page = (await browser.pages())[0];
    await page.goto(base);
    await page.waitForFunction(() => {
      const panel = document.querySelector('[data-form="FrmGame"] [data-name="CharCreate"]');
      return panel && panel.style.display !== 'none';
    }, { timeout: 30000 });
    await page.click('[data-form="FrmGame"] [data-name="Command9"]');
    await page.waitForFunction(() => document.querySelector('[data-form="FrmGame"] [data-name="Option1"]').style.display !== 'none');
    const cdp = await browser.target().createCDPSession();
    const { processInfo } = await cdp.send('SystemInfo.getProcessInfo');
    const renderers = processInfo.filter((p) => p.type === 'renderer').map((p) => p.id);
    // A browser keeps spare renderers beside the tab's; the tab's is the largest.
    const each = renderers.map(rendererPss).sort((a, b) => b.own - a.own);
    const tab = each[0];
    const mb = (b) => (b / 1048576).toFixed(1);
    const heap = await page.evaluate(() => Module.HEAP8.length);
    console.log(`the tab's memory on the demo's first page: ${mb(tab.own)} MB of its own (proportional set ${mb(tab.pss)} MB; ` +
      `the engine's heap ${mb(heap)} MB; limit 64 MB)`);
  } finally {
    await fresh.cleanup();
    server.close();
    fs.rmSync(path.join(site, 'blank.html'));
  }
}

main().catch((e) => { console.error(e); process.exitCode = 1; });
