/// <reference types="node" />
import { EventEmitter } from 'events';

/** A function of the library that did not return 0. */
export class VyraError extends Error {
  readonly function: string;
  readonly status: number;
}

/** The scanner was unplugged or did not come back: close it, wait until it is listed again, open it anew. */
export class ScannerGoneError extends VyraError {}

/** The numbers of the interface: statuses, modes, sizes, tones. */
export const constants: { readonly [name: string]: number };

/** The simulated driver library of this package, for Library.open({ driver: simulator }). */
export const simulator: string;

export interface Identity {
  manufacturer: string;
  model: string;
  serialNumber: string;
  /** Firmware version, for instance 2.5.b. */
  version: string;
}

/** Resolution in pixels per inch, areas in thousandths of an inch and in pixels. The sizes are not those of the images. */
export interface Capabilities {
  resolution: number;
  areaWidth: number;
  areaHeight: number;
  imageWidth: number;
  imageHeight: number;
}

/** Of a position 0 is off, 1 to 3 are lit; on names the group that is shown. */
export interface Leds {
  groupA: number[];
  groupB: number[];
  groupC: number[];
  on: 'A' | 'B' | 'C' | '';
}

/** 8-bit grey, rows from top to bottom without padding, in width x height bytes that are the caller's own. */
export interface Image {
  width: number;
  height: number;
  pixels: Buffer;
}

/** A running capture of one scanner. */
export class Video implements AsyncIterable<Image> {
  readonly width: number;
  readonly height: number;
  /**
   * The oldest image that is ready, or null. Rejects with ScannerGoneError when the scanner was unplugged, with an Error when
   * no image can come: the video was closed, the scanner restarted, or another one opened since.
   */
  poll(): Promise<Image | null>;
  /** The next image. timeout in milliseconds: an error named TimeoutError after it. */
  wait(options?: { timeout?: number; signal?: AbortSignal }): Promise<Image>;
  [Symbol.asyncIterator](): AsyncIterator<Image>;
  /** Stops the capture. */
  close(): Promise<void>;
}

/** An open scanner. */
export class Scanner {
  readonly name: string;
  readonly handle: number;
  /** Whether it was unplugged since it was opened. */
  readonly gone: boolean;
  info(): Promise<Identity>;
  /** Index 0: rolled, 1 and 2: flat; null where the index says nothing. */
  capabilities(index: number): Promise<Capabilities | null>;
  isRollSupported(): Promise<boolean>;
  /** The driver's number for the port it is attached to. */
  portType(): Promise<number>;
  /** Shows LEDs. When the scanner refuses, the status is the driver's own number. */
  show(leds?: Partial<Leds>): Promise<void>;
  /** What was shown last; all off after opening. */
  shown(): Promise<Leds>;
  /** Plays a tone on the computer; done when it is over, after 300 to 600 ms. */
  beep(tone?: number): Promise<void>;
  /** The parameter container that the scanner stores; its layout is the driver's. */
  parameters(): Promise<Buffer>;
  /** The flat-field image of the scanner's model. */
  calibration(): Promise<Image>;
  /**
   * One image beside video. The three values are the driver's own, and with them how many bytes it writes: size must be as many
   * at least, since the library is not told it.
   */
  snapshot(size: number, a?: number, b?: number, c?: number): Promise<Buffer>;
  /**
   * Waits, without a limit, until a scanner comes, goes or is closed, or the system sleeps: false when this one is unplugged.
   * One change ends one wait, and one that nobody waited for ends the next. Closing the library ends it. Holds one of the
   * threads that run calls (UV_THREADPOOL_SIZE has four).
   */
  waitForChange(): Promise<boolean>;
  /**
   * Restarts the scanner and waits up to 2 s for its return, while which every other call waits. It stays open, with its LEDs
   * off; its video ends. Rejects with ScannerGoneError when it does not come back.
   */
  reset(): Promise<void>;
  /**
   * Loads a firmware image and restarts the scanner, without waiting for its return; its video ends. Takes as long as the
   * transfer; every other call that waits longer than 5 s fails meanwhile.
   */
  loadFirmware(image: Buffer): Promise<void>;
  /**
   * Starts a capture, which takes 200 ms. requests, 1 to 8: images that can arrive before one is fetched. Throws when video
   * of this or of another scanner runs already, whose images would come here.
   */
  video(options?: { mode?: number; requests?: number }): Promise<Video>;
  /** Stops its video and closes it. */
  close(): Promise<void>;
}

/**
 * vyrabrenvozulta.dll, initialized until it is closed. One works in a process at a time, and one of its scanners delivers
 * images: the one that was opened last. Close it before the process ends.
 *
 * Events: 'plug' (name, plugged) when a scanner comes or goes; 'power' (asleep) before the system sleeps, which ends every
 * capture, and when it has resumed. What a listener throws is an uncaught exception.
 */
export class Library extends EventEmitter {
  /**
   * file: vyrabrenvozulta.dll; by default the one that the environment variable VYRA_LIBRARY names, else this package's.
   * driver: a driver library to use in place of the one that the system finds. The first call of a process decides on
   * both. logLevel: constants.LOG_OFF, LOG_TRACE or LOG_ALL, which writes a line each time that no image is ready.
   */
  static open(options?: { file?: string; driver?: string; logLevel?: number; logLimit?: number }): Promise<Library>;
  /** The names of the attached scanners. */
  scanners(): Promise<string[]>;
  /** The identity of a scanner that need not be open. */
  info(name: string): Promise<Identity>;
  /** Opens a scanner by name; from now on it is the one that delivers images. */
  scanner(name: string): Promise<Scanner>;
  /** listener(plugged) for every arrival and removal of a USB device with these identifiers, until it or the library is closed. */
  onUsb(vendor: number, product: number, listener: (plugged: boolean) => void): Promise<{ close(): Promise<boolean> }>;
  /** Closes the scanners and terminates the library. */
  close(): Promise<void>;
}
