'use strict';
// The fingerprint scanner ORVANE RQ7-3050 from Node.js, by way of vyrabrenvozulta.dll. See index.d.ts for the interface.
const { EventEmitter } = require('events');
const fs = require('fs');
const path = require('path');
const koffi = require('koffi');
const { constants } = require('./interface');
const { VyraError, ScannerGoneError, recordTypes, load, callback, check, text, identity } = require('./native');
const { Scanner } = require('./scanner');
const { Video } = require('./video');

function defaultFile() {
  const bundled = path.join(__dirname, 'bin', 'vyrabrenvozulta.dll');
  return process.env.VYRA_LIBRARY || (fs.existsSync(bundled) ? bundled : 'vyrabrenvozulta.dll');
}

let loaded = null; // the first library of a process decides
let working = null; // the library that is open

// Images are not to be written into memory that Node.js has given back, and Node.js waits for the threads of its calls. No
// more is done than that takes: a termination waits for an event under way, which waits for the event loop, which has ended.
process.on('exit', () => {
  for (const scanner of [...(working?._scanners ?? [])].reverse()) {
    loaded.now.VyraStopVideo(scanner.handle);
    loaded.now.VyraCloseDevice_N(scanner.handle);
  }
  if (working?._waits) {
    loaded.now.VyraTerminate();
  }
});

class Library extends EventEmitter {
  // Use Library.open().
  constructor() {
    super();
    this._open = false;
    this._scanners = new Set();
    this._lastOpened = null;
    this._subscriptions = [];
    this._waits = 0; // for changes, under way
  }

  static async open({ file = defaultFile(), driver = null, logLevel = constants.LOG_OFF, logLimit = 0 } = {}) {
    if (working) {
      throw new Error('the library works already in this process: close it first');
    }
    const library = new Library();
    working = library;
    try {
      loaded = loaded || load(file, driver);
      library._functions = loaded;
      library._plugged = callback('VyraDeviceEventCallback', (event, name, plugged) => { library._plug(name, plugged !== 0); });
      library._power = callback('VyraPowerEventCallback',
        (event) => { library.emit('power', event === constants.POWER_SLEEP); });
      const status = await loaded.VyraInitialize_N(library._plugged, logLevel, logLimit);
      if (status !== constants.OK) {
        await loaded.VyraTerminate(); // it may be initialized all the same
        check('VyraInitialize_N', status);
      }
      await loaded.SubscribeToPowerEvent(library._power);
    } catch (error) {
      working = null;
      throw error;
    }
    library._open = true;
    return library;
  }

  _plug(name, plugged) {
    for (const scanner of this._scanners) {
      if (scanner.name.toLowerCase() === name.toLowerCase()) {
        scanner._notice(plugged);
      }
    }
    this.emit('plug', name, plugged);
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
    for (const other of this._scanners) {
      if (other.handle === this._scanners.size) {
        throw new Error(`opening "${name}" would displace "${other.name}": close scanners in reverse order of opening`);
      }
    }
    this._scanners.add(scanner); // from now on its unplugging is heard of
    try {
      check('VyraOpenDevice', await this._functions.VyraOpenDevice(name, handle));
    } catch (error) {
      this._scanners.delete(scanner);
      throw error;
    }
    scanner.handle = handle[0];
    this._lastOpened = scanner;
    return scanner;
  }

  async onUsb(vendor, product, listener) {
    const kept = callback('VyraUsbEventCallback', (v, p, event) => { listener(event === constants.USB_PLUGGED); });
    if (!(await this._functions.SubscribeToUsbEvent(vendor, product, kept))) {
      throw new Error('this pair is subscribed already, or nine pairs are');
    }
    let open = true;
    const close = async () => {
      if (!open) {
        return false;
      }
      open = false;
      return this._functions.UnSubscribeToUsbEvent(vendor, product);
    };
    this._subscriptions.push(close);
    return { close };
  }

  async close() {
    if (!this._open) {
      return;
    }
    this._open = false;
    try {
      await this._functions.UnsubscribeToPowerEvent(this._power);
      for (const close of this._subscriptions) {
        await close();
      }
      for (const scanner of [...this._scanners].reverse()) {
        await scanner.close().catch(() => {}); // given up by the termination
      }
      check('VyraTerminate', await this._functions.VyraTerminate());
    } finally {
      working = null;
    }
  }
}

module.exports = { Library, Scanner, Video, VyraError, ScannerGoneError, constants,
  simulator: path.join(__dirname, 'simulator', 'BrenvoZulta_USB.dll') };
