'use strict';
// The fingerprint scanner ORVANE RQ7-3050 from Node.js, by way of vyrabrenvozulta.dll. See index.d.ts for the interface.
//
// Every call of the library runs on a thread of its own (koffi's async calls), never on the one of the event loop: the
// library may call back from another thread meanwhile and wait for the event loop to have carried that out.
const { EventEmitter } = require('events');
const fs = require('fs');
const path = require('path');
const koffi = require('koffi');
const { constants, meanings, records, callbacks, functions } = require('./interface');

const POLL_MS = 2;

class VyraError extends Error {
  constructor(name, status, meaning) {
    super(`${name}: ${status}. ${meaning || meanings[status] || "A result of the driver library's own"}`);
    this.name = 'VyraError';
    this.function = name;
    this.status = status;
  }
}

class ScannerGoneError extends VyraError {
  constructor(name, meaning) {
    super(name, constants.DEVICE_UNAVAIL, meaning);
    this.name = 'ScannerGoneError';
  }
}

const recordTypes = {};
for (const [name, fields] of Object.entries(records)) {
  const types = {};
  for (const [field, type] of Object.entries(fields)) {
    types[field] = Array.isArray(type) ? koffi.array(...type) : type;
  }
  recordTypes[name] = koffi.struct(name, types);
}
const callbackTypes = {};
for (const [name, prototype] of Object.entries(callbacks)) {
  callbackTypes[name] = koffi.pointer(koffi.proto(prototype));
}

// The exported functions under their names: each returns a promise of its result.
function load(file, driver) {
  if (driver) {
    koffi.load(driver); // the driver library that is loaded already is the one that the library gets
  }
  const module = koffi.load(file);
  const loaded = {};
  for (const [name, [result, parameters, windows, elsewhere]] of Object.entries(functions)) {
    const call = module.func(process.platform === 'win32' ? windows : elsewhere, result, parameters);
    loaded[name] = (...args) =>
      new Promise((resolve, reject) => call.async(...args, (error, value) => (error ? reject(error) : resolve(value))));
  }
  return loaded;
}

function defaultFile() {
  const bundled = path.join(__dirname, 'bin', 'vyrabrenvozulta.dll');
  return process.env.VYRA_LIBRARY || (fs.existsSync(bundled) ? bundled : 'vyrabrenvozulta.dll');
}

let loaded = null; // the first library of a process decides
let working = false;
// The driver keeps the addresses of callbacks beyond the end of what it was told for: they stay for the process's life.
function callback(type, body) {
  return koffi.register(body, callbackTypes[type]);
}

function check(name, status) {
  if (status === constants.DEVICE_UNAVAIL) {
    throw new ScannerGoneError(name);
  }
  if (status !== constants.OK) {
    throw new VyraError(name, status);
  }
}

function text(bytes) {
  const buffer = Buffer.from(bytes);
  const end = buffer.indexOf(0);
  return buffer.toString('utf8', 0, end < 0 ? buffer.length : end);
}

function identity(record) {
  return {
    manufacturer: text(record.manufacturer),
    model: text(record.model),
    serialNumber: text(record.serial_number),
    version: text(record.version),
  };
}

function sleep(ms, signal) {
  return new Promise((resolve) => {
    const done = () => {
      clearTimeout(timer);
      signal?.removeEventListener('abort', done);
      resolve();
    };
    const timer = setTimeout(done, ms);
    signal?.addEventListener('abort', done);
  });
}

class Video {
  constructor(scanner, mode) {
    const roll = mode === constants.MODE_ROLL || (mode >= 9 && mode <= 18);
    this.width = roll ? constants.ROLL_WIDTH : constants.FLAT_WIDTH;
    this.height = roll ? constants.ROLL_HEIGHT : constants.FLAT_HEIGHT;
    this._scanner = scanner;
    this._functions = scanner._functions;
    this._pending = new Map(); // number of a request: its buffer, which does not move while it is held here
    this._next = 0;
    this._running = true;
  }

  async _submit() {
    const buffer = Buffer.alloc(this.width * this.height);
    const number = this._next++;
    this._pending.set(number, buffer);
    const status = await this._functions.VyraSubmitVideoRequest(this._scanner.handle, buffer, number);
    if (status !== constants.OK) {
      this._pending.delete(number);
      check('VyraSubmitVideoRequest', status);
    }
  }

  async poll() {
    const buffer = [null];
    const number = [0];
    const status = await this._functions.VyraGetVideoResult(this._scanner.handle, buffer, number);
    if (status === constants.VIDEO_TIMEOUT) {
      if (this._scanner.gone) {
        throw new ScannerGoneError('VyraGetVideoResult', 'The scanner was unplugged');
      }
      return null;
    }
    check('VyraGetVideoResult', status);
    const key = Number(number[0]);
    const pixels = this._pending.get(key);
    this._pending.delete(key);
    await this._submit();
    return { width: this.width, height: this.height, pixels };
  }

  async wait({ timeout = Infinity, signal } = {}) {
    const end = Date.now() + timeout;
    for (;;) {
      signal?.throwIfAborted();
      const image = await this.poll();
      if (image) {
        return image;
      }
      if (Date.now() >= end) {
        throw Object.assign(new Error(`no image within ${timeout} ms`), { name: 'TimeoutError' });
      }
      await sleep(POLL_MS, signal);
    }
  }

  async *[Symbol.asyncIterator]() {
    while (this._running) {
      yield await this.wait();
    }
  }

  async close() {
    if (!this._running) {
      return;
    }
    this._running = false;
    this._scanner._video = null;
    const status = await this._functions.VyraStopVideo(this._scanner.handle);
    this._pending.clear(); // after a refusal, too, no request is served any more
    if (!this._scanner.gone) {
      check('VyraStopVideo', status);
    }
  }
}

class Scanner {
  constructor(library, name) {
    this._library = library;
    this._functions = library._functions;
    this._video = null;
    this.name = name;
    this.gone = false;
    this.handle = constants.NO_HANDLE;
  }

  async _call(name, ...args) {
    check(name, await this._functions[name](this.handle, ...args));
  }

  async info() {
    const record = {};
    await this._call('VyraBrenvoGetDeviceInfo', record);
    return identity(record);
  }

  async capabilities(index) {
    const record = { constant_0: 0, constant_1: 0, resolution: 0, area_width: 0, area_height: 0, image_width: 0,
      image_height: 0, reserved: [0, 0, 0, 0, 0, 0, 0] };
    await this._call('VyraBrenvoGetCapabilities', index, record);
    return record.constant_0 === 0 ? null
      : { resolution: record.resolution, areaWidth: record.area_width, areaHeight: record.area_height };
  }

  async isRollSupported() {
    const supported = [0];
    await this._call('VyraBrenvoZultaIsRollSupported', supported);
    return supported[0] !== 0;
  }

  async show({ groupA = [0, 0, 0, 0], groupB = [0, 0, 0, 0], groupC = [0, 0], on = '' } = {}) {
    await this._call('VyraBrenvoSetDevUI', { group_a: groupA, group_b: groupB, group_c: groupC,
      group_a_on: on === 'A' ? 1 : 0, group_b_on: on === 'B' ? 1 : 0, group_c_on: on === 'C' ? 1 : 0 });
  }

  async beep(tone = constants.TONE_SHORT) {
    await this._call('VyraBrenvoSetBuzzer', tone, null, null);
  }

  async reset() {
    await this._call('VyraBusReset_N');
  }

  async video({ mode = constants.MODE_FLAT, requests = 4 } = {}) {
    if (!(requests >= 1 && requests <= constants.MAX_VIDEO_REQUESTS)) {
      throw new RangeError(`requests is ${requests}, not 1 to ${constants.MAX_VIDEO_REQUESTS}`);
    }
    if (this._video) {
      throw new Error("this scanner's video runs already: close it first");
    }
    await this._call('VyraBrenvoStartVideo', mode, 0);
    const video = new Video(this, mode);
    this._video = video;
    try {
      for (let i = 0; i < requests; ++i) {
        await video._submit();
      }
    } catch (error) {
      await video.close().catch(() => {});
      throw error;
    }
    return video;
  }

  async close() {
    if (!this._library._scanners.delete(this)) {
      return;
    }
    await this._video?.close().catch(() => {}); // the close ends the capture in any case
    await this._call('VyraCloseDevice_N');
  }
}

class Library extends EventEmitter {
  // Use Library.open().
  constructor() {
    super();
    this._open = false;
    this._scanners = new Set();
  }

  static async open({ file = defaultFile(), driver = null, logLevel = constants.LOG_OFF, logLimit = 0 } = {}) {
    if (working) {
      throw new Error('the library works already in this process: close it first');
    }
    working = true;
    const library = new Library();
    try {
      loaded = loaded || load(file, driver);
      library._functions = loaded;
      library._plugged = callback('VyraDeviceEventCallback', (event, name, plugged) => library._plug(name, plugged !== 0));
      library._power = callback('VyraPowerEventCallback',
        (event) => { library.emit('power', event === constants.POWER_SLEEP); });
      const status = await loaded.VyraInitialize_N(library._plugged, logLevel, logLimit);
      if (status !== constants.OK) {
        await loaded.VyraTerminate(); // it may be initialized all the same
        check('VyraInitialize_N', status);
      }
      await loaded.SubscribeToPowerEvent(library._power);
    } catch (error) {
      working = false;
      throw error;
    }
    library._open = true;
    return library;
  }

  _plug(name, plugged) {
    for (const scanner of this._scanners) {
      if (!plugged && scanner.name.toLowerCase() === name.toLowerCase()) {
        scanner.gone = true;
      }
    }
    this.emit('plug', name, plugged);
    return 0;
  }

  async scanners() {
    const size = koffi.sizeof(recordTypes.DeviceListRecord);
    const count = [constants.MAX_SCANNERS];
    const list = Buffer.alloc(size * constants.MAX_SCANNERS);
    const status = await this._functions.VyraGetDeviceList_N(count, list);
    if (status === constants.INTERNAL) {
      return []; // how the driver says that there is none
    }
    check('VyraGetDeviceList_N', status);
    const offset = koffi.offsetof(recordTypes.DeviceListRecord, 'name');
    return Array.from({ length: count[0] }, (_, i) => text(list.subarray(i * size + offset, (i + 1) * size)));
  }

  async info(name) {
    const record = {};
    check('VyraBrenvoMGGetDeviceInfo', await this._functions.VyraBrenvoMGGetDeviceInfo(name, null, record));
    return identity(record);
  }

  async scanner(name) {
    const scanner = new Scanner(this, name);
    const handle = [constants.NO_HANDLE];
    this._scanners.add(scanner); // from now on its unplugging is heard of
    try {
      check('VyraOpenDevice', await this._functions.VyraOpenDevice(name, handle));
    } catch (error) {
      this._scanners.delete(scanner);
      throw error;
    }
    scanner.handle = handle[0];
    return scanner;
  }

  async onUsb(vendor, product, listener) {
    const kept = callback('VyraUsbEventCallback', (v, p, event) => { listener(event === constants.USB_PLUGGED); });
    if (!(await this._functions.SubscribeToUsbEvent(vendor, product, kept))) {
      throw new Error('this pair is subscribed already, or nine pairs are');
    }
    return { close: () => this._functions.UnSubscribeToUsbEvent(vendor, product) };
  }

  async close() {
    if (!this._open) {
      return;
    }
    this._open = false;
    try {
      await this._functions.UnsubscribeToPowerEvent(this._power);
      for (const scanner of [...this._scanners].reverse()) {
        await scanner.close().catch(() => {}); // given up by the termination
      }
      check('VyraTerminate', await this._functions.VyraTerminate());
    } finally {
      working = false;
    }
  }
}

module.exports = { Library, Scanner, Video, VyraError, ScannerGoneError, constants,
  simulator: path.join(__dirname, 'simulator', 'BrenvoZulta_USB.dll') };
