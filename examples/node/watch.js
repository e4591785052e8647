// Captures without end and says what happens to scanners and system. A scanner that was unplugged is opened anew when it is
// back. Ends with the standard input, or at Ctrl-C.
'use strict';
const { Library } = require('vyrabrenvozulta');

const end = new AbortController();
process.stdin.on('end', () => end.abort()).resume();
process.on('SIGINT', () => end.abort());

async function captureUntilGone(library) {
  const [name] = await library.scanners();
  if (!name) {
    return;
  }
  const scanner = await library.scanner(name);
  try {
    const video = await scanner.video();
    console.log(`${name} captures`);
    for (;;) {
      await video.wait({ signal: end.signal });
    }
  } finally {
    await scanner.close().catch(() => {}); // an unplugged scanner refuses
  }
}

async function main() {
  const library = await Library.open();
  library.on('plug', (name, plugged) => console.log(`${name} ${plugged ? 'plugged' : 'unplugged'}`));
  library.on('power', (asleep) => console.log(asleep ? 'sleep' : 'resume'));
  while (!end.signal.aborted) {
    try {
      await captureUntilGone(library);
    } catch (error) {
      if (!end.signal.aborted) {
        console.log(error.message);
      }
    }
    await new Promise((resolve) => setTimeout(resolve, 100));
  }
  await library.close();
  process.stdin.destroy();
}

main().catch((error) => {
  console.error(error.message);
  process.exitCode = 1;
});
