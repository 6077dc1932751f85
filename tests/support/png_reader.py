"""PNG files read and written with the standard library only, for tests that compare pictures.

`read_png(path)` gives an `Image` of 8-bit RGBA pixels from any non-interlaced PNG: grey,
grey with alpha, RGB, RGBA and palette images, of every bit depth the format allows (16-bit
samples keep their high byte), with all five row filters. A palette's or grey's tRNS chunk gives
alpha; everything else is opaque. `write_png(path, image)` writes RGBA, unfiltered.
`compare(a, b)` counts the pixels that differ and makes a picture of where."""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
# Samples per pixel by color type.
CHANNELS = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}
DEPTHS = {0: (1, 2, 4, 8, 16), 2: (8, 16), 3: (1, 2, 4, 8), 4: (8, 16), 6: (8, 16)}


class PngError(Exception):
    """A file that is not a PNG this reader can take."""


class Image:
    """`width` by `height` pixels as bytes, four (R, G, B, A) a pixel, rows top to bottom."""

    def __init__(self, width, height, rgba):
        if len(rgba) != width * height * 4:
            raise ValueError("%d bytes for %dx%d pixels" % (len(rgba), width, height))
        self.width = width
        self.height = height
        self.rgba = bytes(rgba)

    def pixel(self, x, y):
        i = (y * self.width + x) * 4
        return tuple(self.rgba[i:i + 4])

    def opaque(self):
        """True when every pixel has alpha 255."""
        return self.rgba[3::4] == b"\xff" * (self.width * self.height)


def _chunks(data):
    if not data.startswith(SIGNATURE):
        raise PngError("no PNG signature")
    pos = len(SIGNATURE)
    while pos + 8 <= len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + length]
        if len(body) != length or pos + 12 + length > len(data):
            raise PngError("chunk %r runs past the end of the file" % kind)
        (crc,) = struct.unpack(">I", data[pos + 8 + length:pos + 12 + length])
        if zlib.crc32(kind + body) & 0xFFFFFFFF != crc:
            raise PngError("chunk %r has a bad CRC" % kind)
        yield kind, body
        if kind == b"IEND":
            return
        pos += 12 + length
    raise PngError("no IEND chunk")


def _unfilter(raw, width, height, bits_per_pixel):
    """The scanlines without their filter bytes."""
    stride = (width * bits_per_pixel + 7) // 8
    bpp = max(1, bits_per_pixel // 8)
    if len(raw) < height * (stride + 1):
        raise PngError("image data too short")
    out = bytearray(height * stride)
    prior = bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        kind = raw[start]
        line = bytearray(raw[start + 1:start + 1 + stride])
        if kind == 0:
            pass
        elif kind == 1:
            for i in range(bpp, stride):
                line[i] = (line[i] + line[i - bpp]) & 0xFF
        elif kind == 2:
            line = bytearray((a + b) & 0xFF for a, b in zip(line, prior))
        elif kind == 3:
            for i in range(stride):
                left = line[i - bpp] if i >= bpp else 0
                line[i] = (line[i] + ((left + prior[i]) >> 1)) & 0xFF
        elif kind == 4:
            for i in range(stride):
                a = line[i - bpp] if i >= bpp else 0
                b = prior[i]
                c = prior[i - bpp] if i >= bpp else 0
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                predictor = a if pa <= pb and pa <= pc else (b if pb <= pc else c)
                line[i] = (line[i] + predictor) & 0xFF
        else:
            raise PngError("unknown filter %d in row %d" % (kind, y))
        out[y * stride:(y + 1) * stride] = line
        prior = line
    return out, stride


def _samples(row, count, depth):
    """`count` samples of `depth` bits from a row, as integers scaled to 8 bits for grey."""
    if depth == 8:
        return row[:count]
    if depth == 16:
        return row[0:count * 2:2]
    per_byte = 8 // depth
    mask = (1 << depth) - 1
    values = bytearray(count)
    for i in range(count):
        shift = 8 - depth * (i % per_byte + 1)
        values[i] = (row[i // per_byte] >> shift) & mask
    return values


def read_png(path):
    with open(path, "rb") as f:
        data = f.read()
    header = None
    palette = None
    transparency = None
    compressed = []
    for kind, body in _chunks(data):
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"PLTE":
            palette = body
        elif kind == b"tRNS":
            transparency = body
        elif kind == b"IDAT":
            compressed.append(body)
    if header is None:
        raise PngError("no IHDR chunk")
    width, height, depth, color, compression, filtering, interlace = header
    if color not in CHANNELS or depth not in DEPTHS[color]:
        raise PngError("color type %d with depth %d" % (color, depth))
    if compression != 0 or filtering != 0:
        raise PngError("unknown compression or filter method")
    if interlace != 0:
        raise PngError("interlaced images are not read")
    if color == 3 and palette is None:
        raise PngError("palette image without PLTE")
    try:
        raw = zlib.decompress(b"".join(compressed))
    except zlib.error as error:
        raise PngError("bad image data: %s" % error)
    channels = CHANNELS[color]
    rows, stride = _unfilter(raw, width, height, channels * depth)

    rgba = bytearray(width * height * 4)
    if color == 3:
        colors = [palette[i:i + 3] + b"\xff" for i in range(0, len(palette) - 2, 3)]
        for i, alpha in enumerate(transparency or b""):
            if i < len(colors):
                colors[i] = colors[i][:3] + bytes([alpha])
        lookup = b"".join(colors) + b"\x00\x00\x00\xff" * (256 - len(colors))
    for y in range(height):
        row = rows[y * stride:(y + 1) * stride]
        out = memoryview(rgba)[y * width * 4:(y + 1) * width * 4]
        if color == 3:
            indices = _samples(row, width, depth)
            out[:] = b"".join(lookup[i * 4:i * 4 + 4] for i in indices)
            continue
        samples = _samples(row, width * channels, depth)
        if color in (0, 4):
            grey = samples[0::channels]
            if depth < 8:
                scale = 255 // ((1 << depth) - 1)
                grey = bytes(v * scale for v in grey)
            out[0::4] = grey
            out[1::4] = grey
            out[2::4] = grey
            if color == 4:
                out[3::4] = samples[1::2]
            else:
                out[3::4] = b"\xff" * width
                if transparency and len(transparency) == 2:
                    key = struct.unpack(">H", transparency)[0]
                    raw_grey = _samples(row, width, depth) if depth != 16 else [
                        struct.unpack(">H", row[i * 2:i * 2 + 2])[0] for i in range(width)]
                    for x, value in enumerate(raw_grey):
                        if value == key:
                            out[x * 4 + 3] = 0
        else:
            for c in range(3):
                out[c::4] = samples[c::channels]
            out[3::4] = samples[3::4] if color == 6 else b"\xff" * width
            if color == 2 and transparency and len(transparency) == 6:
                key = struct.unpack(">HHH", transparency)
                for x in range(width):
                    if depth == 8:
                        value = tuple(row[x * 3:x * 3 + 3])
                    else:
                        value = struct.unpack(">HHH", row[x * 6:x * 6 + 6])
                    if value == key:
                        out[x * 4 + 3] = 0
    return Image(width, height, rgba)


def write_png(path, image):
    def chunk(kind, body):
        return (struct.pack(">I", len(body)) + kind + body +
                struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF))

    stride = image.width * 4
    raw = b"".join(b"\x00" + image.rgba[y * stride:(y + 1) * stride]
                   for y in range(image.height))
    with open(path, "wb") as f:
        f.write(SIGNATURE)
        f.write(chunk(b"IHDR", struct.pack(">IIBBBBB", image.width, image.height, 8, 6, 0, 0, 0)))
        f.write(chunk(b"IDAT", zlib.compress(raw, 6)))
        f.write(chunk(b"IEND", b""))


class Difference:
    """The outcome of `compare`: how many pixels differ, the first of them, the rectangle
    (left, top, right, bottom, inclusive) around them, and a picture: `a` dimmed, with the
    differing pixels in full red."""

    def __init__(self, count, first, bounds, picture):
        self.count = count
        self.first = first
        self.bounds = bounds
        self.picture = picture

    def __str__(self):
        if self.count == 0:
            return "no pixel differs"
        return "%d pixels differ, the first at %s, all within %s" % (self.count, self.first,
                                                                     self.bounds)


def compare(a, b):
    """Pixel for pixel, all four channels. Images of different sizes raise ValueError."""
    if (a.width, a.height) != (b.width, b.height):
        raise ValueError("sizes differ: %dx%d and %dx%d" % (a.width, a.height, b.width, b.height))
    if a.rgba == b.rgba:
        return Difference(0, None, None, None)
    picture = bytearray(a.rgba)
    for i in range(0, len(picture), 4):
        picture[i:i + 3] = bytes(v // 3 + 128 for v in picture[i:i + 3])
        picture[i + 3] = 255
    count = 0
    first = None
    left = top = None
    right = bottom = -1
    stride = a.width * 4
    for y in range(a.height):
        row_a = a.rgba[y * stride:(y + 1) * stride]
        row_b = b.rgba[y * stride:(y + 1) * stride]
        if row_a == row_b:
            continue
        for x in range(a.width):
            i = x * 4
            if row_a[i:i + 4] != row_b[i:i + 4]:
                count += 1
                first = first or (x, y)
                left = x if left is None else min(left, x)
                top = y if top is None else top
                right = max(right, x)
                bottom = y
                picture[y * stride + i:y * stride + i + 4] = b"\xff\x00\x00\xff"
    return Difference(count, first, (left, top, right, bottom), Image(a.width, a.height,
                                                                      picture))
