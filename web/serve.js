// A static server for the web version on this machine only (127.0.0.1):
//   node serve.js FOLDER [PORT]
// prints the address it serves on. The page needs a server, not file://,
// for its fetches and WebAssembly's streaming compile.
'use strict';
const http = require('http');
const fs = require('fs');
const path = require('path');

const kTypes = {
  '.html': 'text/html; charset=utf-8', '.js': 'text/javascript', '.css': 'text/css', '.wasm': 'application/wasm',
  '.json': 'application/json', '.svg': 'image/svg+xml', '.ttf': 'font/ttf', '.bmp': 'image/bmp', '.png': 'image/png',
  '.wav': 'audio/wav', '.mp3': 'audio/mpeg', '.oga': 'audio/ogg', '.webm': 'video/webm',
};

function serve(root, port = 0) {
  root = path.resolve(root);
  const server = http.createServer((req, res) => {
    let name;
    try { name = decodeURIComponent(new URL(req.url, 'http://x').pathname); } catch (e) { name = '/'; }
    if (name.endsWith('/')) name += 'index.html';
    const file = path.join(root, path.normalize(name));
    if (!file.startsWith(root + path.sep)) { res.writeHead(403).end(); return; }
    fs.readFile(file, (err, bytes) => {
      if (err) { res.writeHead(404).end(); return; }
      res.writeHead(200, { 'Content-Type': kTypes[path.extname(file)] || 'application/octet-stream', 'Cache-Control': 'no-cache' });
      res.end(bytes);
    });
  });
  // A port that is taken gives way to any free one.
  return new Promise((resolve, reject) => {
    server.once('error', (e) => (e.code === 'EADDRINUSE' && port ? server.listen(0, '127.0.0.1') : reject(e)));
    server.listen(port, '127.0.0.1', () => resolve(server));
  });
}

module.exports = { serve };

if (require.main === module) {
  const [root, port] = process.argv.slice(2);
  if (!root) { console.error('Usage: node serve.js FOLDER [PORT]'); process.exit(2); }
  serve(root, Number(port || 0)).then((server) => {
    console.log(`Fablewright in the browser: http://127.0.0.1:${server.address().port}/`);
  });
}
