'use strict';
const { constants } = require('./interface');
const { check, identity } = require('./native');
const { Video } = require('./video');

const CLOSE_TRIES = 12; // each waits up to 5 s for a library that is busy
const kept = []; // buffers of scanners that could not be closed: the library may still write into them

class Scanner {
  constructor(library, name) {
    this._library = library;
    this._functions = library._functions;
    this._video = null;
    this._unreturned = []; // buffers that are the library's until the scanner is closed
    this._restarting = false;
    this._restarts = 0;
    this.name = name;
    this.gone = false;
    this.handle = constants.NO_HANDLE;
  }

  async _call(name, ...args) {
    check(name, await this._functions[name](this.handle, ...args));
  }

  // The driver tells of a restart as of any other going and coming: the first of the two events belongs to it.
  _notice(plugged) {
    const ofRestart = this._restarting;
    this._restarting = false;
    this.gone = this.gone || (!plugged && !ofRestart);
  }

  async _restart(name, ...args) {
    this._restarting = true;
    const status = await this._functions[name](this.handle, ...args);
    if (status === constants.OK) {
      ++this._restarts;
    } else {
      this._restarting = false;
      this.gone = this.gone || status === constants.DEVICE_UNAVAIL;
    }
    check(name, status);
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
      : { resolution: record.resolution, areaWidth: record.area_width, areaHeight: record.area_height,
          imageWidth: record.image_width, imageHeight: record.image_height };
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

  async shown() {
    const record = {};
    await this._call('VyraBrenvoGetDevUI', record);
    const on = record.group_a_on ? 'A' : record.group_b_on ? 'B' : record.group_c_on ? 'C' : '';
    return { groupA: [...record.group_a], groupB: [...record.group_b], groupC: [...record.group_c], on };
  }

  async beep(tone = constants.TONE_SHORT) {
    await this._call('VyraBrenvoSetBuzzer', tone, null, null);
  }

  async portType() {
    const type = [0];
    await this._call('VyraBrenvoZultaGetPortType', type);
    return type[0];
  }

  async parameters() {
    const size = [0];
    await this._call('VyraBrenvoZultaGetGlobalParamSize', size);
    const bytes = Buffer.alloc(size[0]);
    await this._call('VyraBrenvoZultaReadGlobalParam', bytes, bytes.length);
    return bytes;
  }

  async calibration() {
    const pixels = Buffer.alloc(constants.CALIBRATION_SIZE);
    await this._call('VyraBrenvoZultaReadUniformityBuffers', pixels, pixels.length);
    return { width: constants.CALIBRATION_WIDTH, height: constants.CALIBRATION_HEIGHT, pixels };
  }

  async snapshot(size, a = 0, b = 0, c = 0) {
    const bytes = Buffer.alloc(size);
    await this._call('VyraBrenvoZultaGetSnapshotAcquisition', bytes, a, b, c);
    return bytes;
  }

  async waitForChange() {
    if (!this._library._scanners.has(this)) {
      throw new Error(`"${this.name}" was closed`);
    }
    ++this._library._waits;
    const status = await this._functions.VyraGetStatus(this.handle);
    --this._library._waits;
    if (status !== constants.DEVICE_UNAVAIL) {
      check('VyraGetStatus', status);
    }
    return status === constants.OK;
  }

  reset() {
    return this._restart('VyraBusReset_N');
  }

  loadFirmware(image) {
    return this._restart('VyraPutMemory', image, image.length);
  }

  async video({ mode = constants.MODE_FLAT, requests = 4 } = {}) {
    if (!(requests >= 1 && requests <= constants.MAX_VIDEO_REQUESTS)) {
      throw new RangeError(`requests is ${requests}, not 1 to ${constants.MAX_VIDEO_REQUESTS}`);
    }
    for (const other of this._library._scanners) { // its images would come into this scanner's buffers
      if (other._video) {
        throw new Error(`the video of "${other.name}" runs already: close it first`);
      }
    }
    await this._call('VyraBrenvoStartVideo', mode, 0);
    const video = new Video(this, mode, requests);
    this._video = video;
    try {
      await video._serial(() => video._submitMissing());
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
    const isBusy = (status) => status === constants.INTERNAL || status === constants.OUT_OF_RESOURCE;
    let status = constants.INTERNAL;
    for (let tries = CLOSE_TRIES; tries > 0 && isBusy(status); --tries) {
      status = await this._functions.VyraCloseDevice_N(this.handle);
    }
    if (isBusy(status)) {
      kept.push(this._unreturned);
    }
    this._unreturned = [];
    this.handle = constants.NO_HANDLE;
    check('VyraCloseDevice_N', status);
  }
}

module.exports = { Scanner };
