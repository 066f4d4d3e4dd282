// Debian's Chromium, headless, for the browser test and the figures: a fresh
// profile each time, nothing fetched from the network, no browser downloaded.
'use strict';
const fs = require('fs');
const os = require('os');
const path = require('path');
const puppeteer = require('puppeteer-core');

async function launch() {
  const profile = fs.mkdtempSync(path.join(os.tmpdir(), 'fw-chromium-'));
  const browser = await puppeteer.launch({
    executablePath: process.env.CHROMIUM || '/usr/bin/chromium',
    headless: true,
    args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
      '--disable-component-update', '--disable-sync', '--autoplay-policy=user-gesture-required', `--user-data-dir=${profile}`],
  });
  return {
    browser,
    async cleanup() {
      await browser.close().catch(() => {});
      fs.rmSync(profile, { recursive: true, force: true });
    },
  };
}

module.exports = { launch };
