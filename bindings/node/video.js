'use strict';
const { constants } = require('./interface');
const { ScannerGoneError, check } = require('./native');

const POLL_MS = 2;

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
  constructor(scanner, mode, requests) {
    const roll = mode === constants.MODE_ROLL || (mode >= 9 && mode <= 18);
    this.width = roll ? constants.ROLL_WIDTH : constants.FLAT_WIDTH;
    this.height = roll ? constants.ROLL_HEIGHT : constants.FLAT_HEIGHT;
    this._scanner = scanner;
    this._functions = scanner._functions;
    this._requests = requests;
    this._restarts = scanner._restarts;
    this._pending = new Map(); // number of a request: its buffer, which does not move while it is held here
    this._next = 0;
    this._running = true;
    this._last = Promise.resolve();
  }

  // One after the other: no request is to be handed in while the capture is being stopped.
  _serial(work) {
    const done = this._last.then(work);
    this._last = done.catch(() => {});
    return done;
  }

  async _submitMissing() {
    while (this._pending.size < this._requests) {
      const buffer = Buffer.alloc(this.width * this.height);
      const number = this._next++;
      this._pending.set(number, buffer);
      const status = await this._functions.VyraSubmitVideoRequest(this._scanner.handle, buffer, number);
      if (status !== constants.OK) {
        this._pending.delete(number);
        check('VyraSubmitVideoRequest', status);
      }
    }
  }

  _refuseEndlessWait() {
    const scanner = this._scanner;
    if (scanner.gone) {
      throw new ScannerGoneError('VyraGetVideoResult', 'The scanner was unplugged');
    }
    if (scanner._restarts !== this._restarts) {
      throw new Error("this video ended with the scanner's restart: close it and start it anew");
    }
    if (scanner._library._lastOpened !== scanner) {
      throw new Error(`"${scanner.name}" delivers no images, since another scanner was opened: open it anew`);
    }
  }

  poll() {
    return this._serial(async () => {
      if (!this._running) {
        throw new Error('this video was closed');
      }
      await this._submitMissing();
      const buffer = [null];
      const number = [0];
      const status = await this._functions.VyraGetVideoResult(this._scanner.handle, buffer, number);
      if (status === constants.VIDEO_TIMEOUT) {
        this._refuseEndlessWait();
        return null;
      }
      check('VyraGetVideoResult', status);
      const key = Number(number[0]);
      const pixels = this._pending.get(key);
      this._pending.delete(key);
      await this._submitMissing().catch(() => {}); // the next poll tells; this image is not to be lost for it
      return { width: this.width, height: this.height, pixels };
    });
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

  close() {
    return this._serial(async () => {
      if (!this._running) {
        return;
      }
      this._running = false;
      this._scanner._video = null;
      const status = await this._functions.VyraStopVideo(this._scanner.handle);
      if (status !== constants.OK) {
        this._scanner._unreturned.push(this._pending); // it may not have stopped: the library's until the close
      }
      this._pending = new Map();
      if (!this._scanner.gone) {
        check('VyraStopVideo', status);
      }
    });
  }
}

module.exports = { Video };
