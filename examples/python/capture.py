"""Captures one flat image from the first scanner into an array: capture.py finger.pgm"""
import sys

import vyra

try:
    import numpy
except ImportError:
    numpy = None

path = sys.argv[1] if len(sys.argv) > 1 else "finger.pgm"
with vyra.Library() as library:
    names = library.scanners()
    if not names:
        sys.exit("no scanner is attached")
    with library.open(names[0]) as scanner, scanner.video() as video:
        image = video.wait(timeout=10)
if numpy:
    pixels = numpy.asarray(image)  # the image's own memory, height x width
    print(f"mean {pixels.mean():.1f}, darkest {pixels.min()}")
image.save_pgm(path)
print(f"{path}: {image.width} x {image.height}")
