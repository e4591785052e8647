// Captures one flat image from the first scanner: node capture.js finger.pgm
'use strict';
const fs = require('fs');
const { Library } = require('vyrabrenvozulta');

async function main(path) {
  const library = await Library.open();
  try {
    const [name] = await library.scanners();
    if (!name) {
      throw new Error('no scanner is attached');
    }
    const scanner = await library.scanner(name);
    const video = await scanner.video();
    const { width, height, pixels } = await video.wait({ timeout: 10000 });
    fs.writeFileSync(path, Buffer.concat([Buffer.from(`P5\n${width} ${height}\n255\n`), pixels]));
    console.log(`${path}: ${width} x ${height}`);
  } finally {
    await library.close();
  }
}

main(process.argv[2] || 'finger.pgm').catch((error) => {
  console.error(error.message);
  process.exitCode = 1;
});
