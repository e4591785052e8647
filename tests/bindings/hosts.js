// A host of the package that tries what a host may do and prints what it saw. It ends the process while a scanner captures.
'use strict';
const koffi = require('koffi');
const { Library, constants } = require('vyrabrenvozulta');

const NAME = 'Dáktylos 7';
const simulator = koffi.load(process.env.VYRA_SIMULATOR);
const unplug = simulator.func('int brenvozulta_sim_unplug(const char* name)');
const attached = simulator.func('int brenvozulta_sim_wait_attached(const char* name, uint32_t ms)');
const told = simulator.func('int brenvozulta_sim_wait_events_done(uint32_t ms)');
const isOpen = simulator.func('int brenvozulta_sim_is_open(const char* name)');
const deliverNext = simulator.func('uint64_t brenvozulta_sim_deliver_next(const char* name)');
const setIdleStop = simulator.func('void brenvozulta_sim_set_idle_stop_result(uint32_t result)');
// The simulator waits while the library calls back, which takes the event loop.
const beside = (call, ...args) => new Promise((resolve) => { call.async(...args, resolve); });

async function failure(call) {
  try {
    await call();
    console.log('no failure');
  } catch (error) {
    console.log(`${error.name}: ${error.message}`);
  }
}

async function data(library) {
  const scanner = await library.scanner(NAME);
  const { width, height, pixels } = await scanner.calibration();
  console.log(width, height, pixels[1002 * width + 1608] > pixels[0]);
  console.log((await scanner.parameters()).length, (await scanner.snapshot(3, 1, 2, 3)).toString(), await scanner.portType());
  console.log((await scanner.capabilities(0)).imageWidth, await scanner.capabilities(3));
  await scanner.show({ groupB: [0, 2, 0, 0], on: 'B' });
  console.log(JSON.stringify(await scanner.shown()));
  await scanner.beep(constants.TONE_SHORT);
  await failure(() => scanner.beep(4));
  await scanner.close();
  await failure(() => scanner.waitForChange());
}

async function restarts(library) {
  setIdleStop(0);
  const scanner = await library.scanner(NAME);
  let video = await scanner.video();
  await scanner.reset();
  await beside(attached, NAME, 20000);
  await beside(told, 20000);
  await failure(() => video.wait({ timeout: 20000 }));
  await video.close();
  await scanner.loadFirmware(Buffer.alloc(1000));
  await beside(attached, NAME, 20000);
  await beside(told, 20000);
  console.log('gone', scanner.gone);
  setIdleStop(4);
  video = await scanner.video();
  deliverNext(null);
  console.log((await video.wait({ timeout: 20000 })).width);
  const ends = Promise.allSettled([1, 2, 3].map(() => video.wait({ timeout: 20000 })));
  await video.close(); // while others wait
  console.log((await ends).map((end) => end.reason.message).join());
  await scanner.close();
}

async function waits(library) {
  const scanner = await library.scanner(NAME);
  const video = await scanner.video();
  const other = await library.scanner('two');
  await failure(() => video.wait({ timeout: 20000 }));
  await scanner.close();
  await failure(() => library.scanner(NAME));
  await other.close();
}

// The library's functions, of which one fails.
async function refusals(library) {
  const scanner = await library.scanner(NAME);
  const functions = scanner._functions;
  const results = [9000, 9001];
  scanner._functions = { ...functions, VyraStopVideo: async () => 9000,
    VyraCloseDevice_N: async () => results.shift() ?? functions.VyraCloseDevice_N(scanner.handle) };
  const video = await scanner.video({ requests: 2 });
  await failure(() => video.close());
  console.log('unreturned', scanner._unreturned[0].size);
  await scanner.close();
  console.log('unreturned', scanner._unreturned.length);
}

async function main() {
  const library = await Library.open();
  const uncaught = [];
  process.on('uncaughtException', (error) => uncaught.push(error.message));
  library.on('plug', () => { throw new Error('of a listener'); });
  await failure(() => Library.open());
  await data(library);
  await restarts(library);
  await waits(library);
  await refusals(library);
  const scanner = await library.scanner(NAME);
  const video = await scanner.video();
  await beside(unplug, NAME);
  await beside(told, 20000);
  await failure(() => video.wait({ timeout: 20000 }));
  console.log(await scanner.waitForChange()); // a change that nobody waited for is kept
  console.log([...new Set(uncaught)].join());
  const two = await library.scanner('two');
  await failure(() => two.video());
  await scanner.close();
  await two.video({ requests: 8 });
  two.waitForChange();
  two.waitForChange();
  two.waitForChange();
  process.on('exit', () => console.log('open at the end', isOpen('two')));
  process.exit(3);
}

main();
