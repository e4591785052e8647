'use strict';
// The functions, records and errors of the library as JavaScript has them.
//
// Every call of the library runs on a thread of its own (koffi's async calls), never on the one of the event loop: the
// library may call back from another thread meanwhile and wait for the event loop to have carried that out.
const koffi = require('koffi');
const { constants, meanings, records, callbacks, functions } = require('./interface');

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

// The exported functions under their names: each returns a promise of its result. now has those that the end of the process
// calls, which waits for no promise.
function load(file, driver) {
  if (driver) {
    koffi.load(driver); // the driver library that is loaded already is the one that the library gets
  }
  const module = koffi.load(file);
  const loaded = { now: {} };
  for (const [name, [result, parameters, windows, elsewhere]] of Object.entries(functions)) {
    const call = module.func(process.platform === 'win32' ? windows : elsewhere, result, parameters);
    loaded.now[name] = call;
    loaded[name] = (...args) =>
      new Promise((resolve, reject) => call.async(...args, (error, value) => (error ? reject(error) : resolve(value))));
  }
  return loaded;
}

// The driver keeps the addresses of callbacks beyond the end of what it was told for: they stay for the process's life.
// What a listener throws is an uncaught exception as any other, but not inside the library's call.
function callback(type, body) {
  const guarded = (...args) => {
    try {
      body(...args);
    } catch (error) {
      process.nextTick(() => { throw error; });
    }
    return 0;
  };
  return koffi.register(guarded, callbackTypes[type]);
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

module.exports = { VyraError, ScannerGoneError, recordTypes, load, callback, check, text, identity };
