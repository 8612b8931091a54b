#!/usr/bin/python3
"""Draw Velmora's bitmap resources into resources/bitmaps/.

Run from anywhere with Debian's interpreter and Pillow (package python3-pil):

    /usr/bin/python3 tools/make_bitmaps.py

Writes the 24-bit bottom-up BMP files that the resource script refers to by
number, the program icon velmora.ico, and a preview sheet
build/artwork-preview.png for looking at everything at once.

Masked strips use pure red (255, 0, 0) as the transparent colour: every pixel
outside a picture is exactly that red and no pixel of a picture is.

Fonts (all from Debian packages, used only to draw the chess glyphs; the BMP
files hold rendered pixels, no font data):
  - FreeSerif            fonts-freefont-ttf  GPL-3+ with the font exception
  - Noto Sans Symbols2   fonts-noto-core     SIL Open Font License 1.1
  - DejaVu Sans (+Bold)  fonts-dejavu-core   Bitstream Vera / DejaVu licence (free)
  - Symbola              fonts-symbola       "free for any use" (George Douros)
Install them with:
    apt-get install -y python3-pil fonts-freefont-ttf fonts-noto-core \
        fonts-dejavu-core fonts-symbola
"""

import math
import struct
import sys
from pathlib import Path

from PIL import Image, ImageChops, ImageDraw, ImageFilter, ImageFont

ROOT = Path(__file__).resolve().parent.parent
OUT_DIR = ROOT / "resources" / "bitmaps"
PREVIEW = ROOT / "build" / "artwork-preview.png"

RED = (255, 0, 0)
# Colour that anti-aliased edge pixels are blended towards before the alpha is
# made all-or-nothing, so no edge pixel ever leans towards the red key.
EDGE_MID = (128, 128, 128)
ALPHA_CUT = 100
SUPERSAMPLE = 8

FONT_FILES = {
    "freeserif": "/usr/share/fonts/truetype/freefont/FreeSerif.ttf",
    "notosymbols2": "/usr/share/fonts/truetype/noto/NotoSansSymbols2-Regular.ttf",
    "dejavu": "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "dejavubold": "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf",
    "symbola": "/usr/share/fonts/truetype/ancient-scripts/Symbola_hint.ttf",
}

# Strip order of every piece set: white pawn, black pawn, white rook, ...
PIECE_ORDER = ["pawn", "rook", "knight", "bishop", "queen", "king"]
# Code points of the outline ("white") glyphs; the solid ones follow 6 later.
WHITE_GLYPH = {"king": 0x2654, "queen": 0x2655, "rook": 0x2656,
               "bishop": 0x2657, "knight": 0x2658, "pawn": 0x2659}


def Fail(message):
    """Stops the script with a message on standard error."""
    print("make_bitmaps: " + message, file=sys.stderr)
    sys.exit(1)


def LoadFont(key, size):
    path = FONT_FILES[key]
    if not Path(path).exists():
        Fail("missing font %s (see the header of this script)" % path)
    return ImageFont.truetype(path, size)


# ---------------------------------------------------------------------------
# Small image helpers
# ---------------------------------------------------------------------------

def Layer(mask, colour):
    """Returns an RGBA layer of one colour whose alpha is the given mask."""
    layer = Image.new("RGBA", mask.size, colour + (0,))
    layer.putalpha(mask)
    return layer


def Dilate(mask, radius):
    """Grows a mask by radius pixels (square structuring element)."""
    if radius <= 0:
        return mask
    return mask.filter(ImageFilter.MaxFilter(2 * radius + 1))


def Erode(mask, radius):
    if radius <= 0:
        return mask
    return mask.filter(ImageFilter.MinFilter(2 * radius + 1))


def FillHoles(mask):
    """Returns the silhouette of a mask: the mask plus every enclosed hole."""
    hard = mask.point(lambda v: 255 if v >= 128 else 0)
    border = Image.new("L", (hard.width + 2, hard.height + 2), 0)
    border.paste(hard, (1, 1))
    ImageDraw.floodfill(border, (0, 0), 128)
    outside = border.crop((1, 1, hard.width + 1, hard.height + 1))
    return outside.point(lambda v: 0 if v == 128 else 255)


def Flatten(rgba):
    """Turns a small RGBA picture into RGB with all-or-nothing transparency.

    Pixels whose alpha reaches ALPHA_CUT become opaque, their colour blended
    over EDGE_MID by their coverage; the rest become the key colour.
    """
    out = Image.new("RGB", rgba.size, RED)
    src = rgba.load()
    dst = out.load()
    for y in range(rgba.height):
        for x in range(rgba.width):
            r, g, b, a = src[x, y]
            if a < ALPHA_CUT:
                continue
            t = a / 255.0
            colour = tuple(int(round(c * t + m * (1 - t))) for c, m in zip((r, g, b), EDGE_MID))
            if colour == RED:
                colour = (254, 0, 0)
            dst[x, y] = colour
    return out


def Downsample(big, size):
    # Pillow premultiplies RGBA while resampling, so transparent pixels do not
    # bleed their colour into the edge.
    return big.resize(size, Image.Resampling.LANCZOS)


# ---------------------------------------------------------------------------
# Piece sets
# ---------------------------------------------------------------------------

class PieceStyle:
    """How one piece set turns a font's chess glyphs into pictures.

    White pieces: silhouette of the outline glyph in `whiteFill`, the outline
    glyph itself in `whiteLine` on top (thickened by `lineGrow` 1/8 pixels).
    Black pieces: silhouette of the solid glyph in `blackDetail` (it shows
    through the glyph's inner cut-outs), the solid glyph in `blackFill`.
    `rim` adds a ring of that many 1/8 pixels around the silhouette, in
    `whiteRim` / `blackRim`, so a piece stands out from any square.
    `shade` darkens the fill towards the bottom by that fraction.
    `detailGrow` widens (positive) or narrows (negative) the cut-outs of the
    solid glyph, in 1/8 pixels. `contrast` above 1 pushes the grey edge
    pixels of thin lines towards the line and fill colours after shrinking.
    """

    def __init__(self, name, font, whiteFill, whiteLine, blackFill, blackDetail,
                 lineGrow=0, rim=0, whiteRim=None, blackRim=None, margin=1,
                 shade=0.0, detailGrow=0, contrast=1.0):
        self.name = name
        self.font = font
        self.whiteFill = whiteFill
        self.whiteLine = whiteLine
        self.blackFill = blackFill
        self.blackDetail = blackDetail
        self.lineGrow = lineGrow
        self.rim = rim
        self.whiteRim = whiteRim
        self.blackRim = blackRim
        self.margin = margin
        self.shade = shade
        self.detailGrow = detailGrow
        self.contrast = contrast


PIECE_SETS = [
    # Classic newspaper diagram: pure black and white, thin serif lines.
    (PieceStyle("Diagram", "freeserif",
                whiteFill=(255, 255, 255), whiteLine=(0, 0, 0),
                blackFill=(0, 0, 0), blackDetail=(255, 255, 255),
                lineGrow=1, margin=1, contrast=1.5),
     139, 113),
    # Turned wood: ivory and dark walnut, shaded, with a dark rim.
    (PieceStyle("Staunton", "notosymbols2",
                whiteFill=(250, 228, 180), whiteLine=(70, 40, 15),
                blackFill=(64, 32, 12), blackDetail=(176, 120, 64),
                lineGrow=1, rim=3, whiteRim=(70, 40, 15), blackRim=(30, 14, 4),
                margin=1, shade=0.18),
     118, 119),
    # Heavy poster style: bold glyphs with a thick black or white ring.
    (PieceStyle("Titan", "dejavubold",
                whiteFill=(255, 255, 255), whiteLine=(0, 0, 0),
                blackFill=(0, 0, 0), blackDetail=(255, 255, 255),
                lineGrow=0, rim=6, whiteRim=(0, 0, 0), blackRim=(255, 255, 255),
                margin=0, detailGrow=-3, contrast=1.3),
     132, 131),
    # Ornate court pieces: cream and navy, the dark ones trimmed with gold.
    (PieceStyle("Royal", "symbola",
                whiteFill=(255, 246, 214), whiteLine=(24, 28, 80),
                blackFill=(20, 26, 96), blackDetail=(96, 120, 210),
                lineGrow=1, rim=4, whiteRim=(24, 28, 80), blackRim=(232, 184, 48),
                margin=0, shade=0.12),
     129, 128),
]


def GlyphMask(font, codePoint, canvas, origin):
    mask = Image.new("L", canvas, 0)
    ImageDraw.Draw(mask).text(origin, chr(codePoint), font=font, fill=255)
    return mask


def GlyphPair(font, piece):
    """Renders a piece's outline and solid glyphs, cropped to their common ink.

    Both come back the same size and lined up, so the outline of the white
    piece and the cut-outs of the black piece match the same silhouette.
    """
    size = font.size
    canvas = (3 * size, 3 * size)
    origin = (size, size)
    outline = GlyphMask(font, WHITE_GLYPH[piece], canvas, origin)
    solid = GlyphMask(font, WHITE_GLYPH[piece] + 6, canvas, origin)
    box = ImageChops.lighter(outline, solid).getbbox()
    if box is None:
        Fail("font %s has no glyph for the %s" % (font.path, piece))
    return outline.crop(box), solid.crop(box)


def SetFontSize(style, cell):
    """Finds the font size at which the set's biggest glyph fits the cell."""
    reference = 400
    font = LoadFont(style.font, reference)
    maxWidth = maxHeight = 1
    for piece in PIECE_ORDER:
        outline, _ = GlyphPair(font, piece)
        maxWidth = max(maxWidth, outline.width)
        maxHeight = max(maxHeight, outline.height)
    # The rim grows the picture on every side.
    room = (cell - 2 * style.margin) * SUPERSAMPLE - 2 * style.rim
    scale = min(room / maxWidth, room / maxHeight)
    return max(1, int(reference * scale))


def RenderPiece(style, font, piece, white, cell):
    """Draws one piece at cell x cell pixels; returns an RGBA picture."""
    big = cell * SUPERSAMPLE
    canvas = (big, big)
    outline, solid = GlyphPair(font, piece)
    # Centred across, standing on the floor of the cell; offsets in whole
    # pixels of the final size keep the straight edges sharp.
    floor = big - style.margin * SUPERSAMPLE - style.rim
    x = int(round((big - outline.width) / 2 / SUPERSAMPLE)) * SUPERSAMPLE
    y = floor - outline.height
    glyph = Image.new("L", canvas, 0)
    glyph.paste(outline if white else solid, (x, y))
    silhouette = FillHoles(glyph)

    if white:
        fill, line, rimColour = style.whiteFill, style.whiteLine, style.whiteRim
        lines = Dilate(glyph, style.lineGrow)
    else:
        fill, line, rimColour = style.blackDetail, style.blackFill, style.blackRim
        # A thinner solid glyph widens the cut-outs so the details survive
        # shrinking; a fatter one closes them for a plain silhouette.
        grown = Erode(glyph, style.detailGrow) if style.detailGrow > 0 else Dilate(
            glyph, -style.detailGrow)
        lines = ImageChops.multiply(grown, silhouette)
        # Keep the outer contour dark: the cut-outs only show inside.
        lines = ImageChops.lighter(lines, ImageChops.subtract(silhouette, Erode(silhouette, 3)))

    picture = Image.new("RGBA", canvas, (0, 0, 0, 0))
    if style.rim:
        picture.alpha_composite(Layer(Dilate(silhouette, style.rim), rimColour))
    body = Layer(silhouette, fill)
    if style.shade:
        body = ShadeDown(body, silhouette, style.shade)
    picture.alpha_composite(body)
    picture.alpha_composite(Layer(lines, line))
    small = Downsample(picture, (cell, cell))
    if style.contrast != 1.0:
        k = style.contrast
        curve = [max(0, min(255, int(round((v - 128) * k + 128)))) for v in range(256)]
        small = small.point(curve * 3 + list(range(256)))
    return small


def ShadeDown(layer, mask, amount):
    """Darkens a layer gradually from its top to its bottom by up to amount."""
    box = mask.getbbox()
    if box is None:
        return layer
    top, bottom = box[1], box[3]
    gradient = Image.new("L", layer.size, 0)
    draw = ImageDraw.Draw(gradient)
    for row in range(top, bottom):
        draw.line([(0, row), (layer.width, row)],
                  fill=int(255 * amount * (row - top) / max(1, bottom - top)))
    black = Image.new("RGBA", layer.size, (0, 0, 0, 255))
    shaded = Image.composite(black, layer, gradient)
    shaded.putalpha(layer.getchannel("A"))
    return shaded


def RenderPieceStrip(style, cell):
    font = LoadFont(style.font, SetFontSize(style, cell))
    strip = Image.new("RGB", (12 * cell, cell), RED)
    for index, piece in enumerate(PIECE_ORDER):
        for colourIndex, white in enumerate((True, False)):
            picture = Flatten(RenderPiece(style, font, piece, white, cell))
            strip.paste(picture, ((2 * index + colourIndex) * cell, 0))
    return strip


# ---------------------------------------------------------------------------
# Pixel art for toolbars and evaluation symbols
# ---------------------------------------------------------------------------

PALETTE = {
    ".": RED,               # transparent
    "K": (0, 0, 0),
    "W": (255, 255, 255),
    "g": (192, 192, 192),
    "G": (128, 128, 128),
    "D": (64, 64, 64),
    "B": (0, 0, 128),
    "b": (64, 96, 224),
    "c": (160, 224, 255),
    "Y": (255, 224, 64),
    "y": (176, 128, 0),
    "N": (0, 144, 0),
}


def FromArt(rows, width, height, name):
    """Turns a list of palette strings into an RGB picture, checking its size."""
    if len(rows) != height or any(len(row) != width for row in rows):
        Fail("pixel art %s is not %d x %d" % (name, width, height))
    picture = Image.new("RGB", (width, height))
    pixels = picture.load()
    for y, row in enumerate(rows):
        for x, key in enumerate(row):
            if key not in PALETTE:
                Fail("pixel art %s uses unknown colour %r" % (name, key))
            pixels[x, y] = PALETTE[key]
    return picture


def Strip(pictures, width, height):
    strip = Image.new("RGB", (width * len(pictures), height), RED)
    for index, picture in enumerate(pictures):
        strip.paste(picture, (index * width, 0))
    return strip


def Mirrored(rows):
    return [row[::-1] for row in rows]


PREVIOUS_ART = [
    "................",
    "................",
    ".........KK.....",
    "........KBK.....",
    ".......KBBK.....",
    "......KBBBK.....",
    ".....KBBBBK.....",
    "....KBBBBBK.....",
    "....KBBBBBK.....",
    ".....KBBBBK.....",
    "......KBBBK.....",
    ".......KBBK.....",
    "........KBK.....",
    ".........KK.....",
    "................",
    "................",
]

GAME_TOOLBAR = [
    ("save", [
        "................",
        ".KKKKKKKKKKKKKK.",
        ".KbKWWWWWWWWKbK.",
        ".KbKWWWWWWWWKbK.",
        ".KbKWGGGGGGWKbK.",
        ".KbKWWWWWWWWKbK.",
        ".KbKWGGGGGGWKbK.",
        ".KbKWWWWWWWWKbK.",
        ".KbbKKKKKKKKbbK.",
        ".KbbbbbbbbbbbbK.",
        ".KbbKKKKKKKbbbK.",
        ".KbbKgKKggKbbbK.",
        ".KbbKgKKggKbbbK.",
        ".KbbKgggggKbbbK.",
        "..KKKKKKKKKKKKK.",
        "................",
    ]),
    ("headers", [
        "................",
        "................",
        ".KKKKKKKKKKKKKK.",
        ".KBBBBBBBBBBBBK.",
        ".KBWWWBBBBBBBBK.",
        ".KWWWWWWWWWWWWK.",
        ".KWGGGWKKKKKWWK.",
        ".KWWWWWWWWWWWWK.",
        ".KWGGGWKKKKWWWK.",
        ".KWWWWWWWWWWWWK.",
        ".KWGGGWKKKKKKWK.",
        ".KWWWWWWWWWWWWK.",
        ".KWGGGWKKKWWWWK.",
        ".KWWWWWWWWWWWWK.",
        ".KKKKKKKKKKKKKK.",
        "................",
    ]),
    ("previous", PREVIOUS_ART),
    ("leave variation", [
        "................",
        "................",
        "....K...........",
        "...KK...........",
        "..KBKKKKKKKK....",
        ".KBBBBBBBBBBK...",
        "..KBKKKKKKKBBK..",
        "...KK.....KBBK..",
        "....K.....KBBK..",
        "..........KBBK..",
        "..........KBBK..",
        "..........KBBK..",
        "..........KBBK..",
        "..........KKKK..",
        "................",
        "................",
    ]),
    ("next", Mirrored(PREVIOUS_ART)),
    ("end", [
        "................",
        "................",
        "...KK......KKK..",
        "...KBK.....KBK..",
        "...KBBK....KBK..",
        "...KBBBK...KBK..",
        "...KBBBBK..KBK..",
        "...KBBBBBK.KBK..",
        "...KBBBBBK.KBK..",
        "...KBBBBK..KBK..",
        "...KBBBK...KBK..",
        "...KBBK....KBK..",
        "...KBK.....KBK..",
        "...KK......KKK..",
        "................",
        "................",
    ]),
    ("annotation", [
        "................",
        "...KK...KKKKK...",
        "...KK..KK...KK..",
        "...KK..KK...KK..",
        "...KK.......KK..",
        "...KK......KK...",
        "...KK.....KK....",
        "...KK....KK.....",
        "...KK....KK.....",
        "...KK....KK.....",
        "................",
        "................",
        "...KK....KK.....",
        "...KK....KK.....",
        "................",
        "................",
    ]),
    ("comment", [
        "................",
        "................",
        "...KKKKKKKKKK...",
        "..KWWWWWWWWWWK..",
        ".KWWWWWWWWWWWWK.",
        ".KWWKKKKKKKKWWK.",
        ".KWWWWWWWWWWWWK.",
        ".KWWKKKKKKWWWWK.",
        ".KWWWWWWWWWWWWK.",
        "..KWWWWWWWWWWK..",
        "...KKWWKKKKKK...",
        "....KWK.........",
        "....KK..........",
        "...KK...........",
        "................",
        "................",
    ]),
    ("flip", [
        "................",
        "..K.............",
        ".KKK.KKKKKKKKKK.",
        "KKKKKKWWWWWWWWK.",
        "..K..KWWWWWWWWK.",
        "..K..KWWWWWWWWK.",
        "..K..KWWWWWWWWK.",
        "..K..KWWWWWWWWK.",
        "..K..KDDDDDDDDK.",
        "..K..KDDDDDDDDK.",
        "..K..KDDDDDDDDK.",
        "..K..KDDDDDDDDK.",
        "KKKKKKDDDDDDDDK.",
        ".KKK.KKKKKKKKKK.",
        "..K.............",
        "................",
    ]),
    ("engine", [
        "................",
        "................",
        "....K.K.K.K.....",
        "....K.K.K.K.....",
        "..KKKKKKKKKKK...",
        "KKKDDDDDDDDDKKK.",
        "..KDGGGGGGGDK...",
        "KKKDGDDDDDGDKKK.",
        "..KDGDDDDDGDK...",
        "KKKDGDDDDDGDKKK.",
        "..KDGGGGGGGDK...",
        "KKKDDDDDDDDDKKK.",
        "..KKKKKKKKKKK...",
        "....K.K.K.K.....",
        "....K.K.K.K.....",
        "................",
    ]),
]

MAIN_TOOLBAR = [
    ("new game", [
        "............NN..",
        "............NN..",
        "..........NNNNNN",
        "....KKK...NNNNNN",
        "...KWWWK....NN..",
        "...KWWWK....NN..",
        "...KWWWK........",
        "....KWK.........",
        "...KWWWK........",
        "....KWK.........",
        "....KWK.........",
        "...KWWWK........",
        "..KWWWWWK.......",
        ".KWWWWWWWK......",
        ".KKKKKKKKK......",
        "................",
    ]),
    ("new position", [
        "...........KK...",
        "..........KyYK..",
        ".........KyYK...",
        "KKKKKKKKKyYKK...",
        "KWWWDDKyYKDDK...",
        "KWWWDDKYKDDDK...",
        "KWWWDDKKWDDDK...",
        "KDDDWWKWWWWWK...",
        "KDDDWWWWWWWWK...",
        "KDDDWWWWWWWWK...",
        "KWWWDDDWWWDDK...",
        "KWWWDDDWWWDDK...",
        "KWWWDDDWWWDDK...",
        "KKKKKKKKKKKKK...",
        "................",
        "................",
    ]),
    ("search", [
        "................",
        "....KKKK........",
        "...KccccK.......",
        "..KcWWcccK......",
        ".KcWcccccK......",
        ".KcccccccK......",
        ".KcccccccK......",
        ".KcccccccK......",
        "..KcccccK.......",
        "...KKKKKDK......",
        "........KDK.....",
        ".........KDK....",
        "..........KDK...",
        "...........KDK..",
        "............KK..",
        "................",
    ]),
]

# Evaluation symbols, 15 x 14, black strokes on the red key.
EVALUATION = [
    ("equal", [
        "...............",
        "...............",
        "...............",
        "...............",
        "...KKKKKKKKK...",
        "...KKKKKKKKK...",
        "...............",
        "...............",
        "...KKKKKKKKK...",
        "...KKKKKKKKK...",
        "...............",
        "...............",
        "...............",
        "...............",
    ]),
    ("unclear", [
        "...............",
        "...............",
        "...............",
        "...............",
        "..KKK.....KKK..",
        ".KK.KK...KK.KK.",
        ".K...KK.KK...K.",
        ".K....KKK....K.",
        ".K...KK.KK...K.",
        ".KK.KK...KK.KK.",
        "..KKK.....KKK..",
        "...............",
        "...............",
        "...............",
    ]),
    ("white slightly better", [
        "...............",
        "......KK.......",
        "......KK.......",
        "...KKKKKKKK....",
        "...KKKKKKKK....",
        "......KK.......",
        "......KK.......",
        "...............",
        "...KKKKKKKK....",
        "...KKKKKKKK....",
        "...............",
        "...KKKKKKKK....",
        "...KKKKKKKK....",
        "...............",
    ]),
    ("black slightly better", [
        "...............",
        "...KKKKKKKK....",
        "...KKKKKKKK....",
        "...............",
        "...KKKKKKKK....",
        "...KKKKKKKK....",
        "...............",
        "......KK.......",
        "......KK.......",
        "...KKKKKKKK....",
        "...KKKKKKKK....",
        "......KK.......",
        "......KK.......",
        "...............",
    ]),
    ("white winning", [
        "...............",
        "...............",
        "...............",
        "...KK..........",
        "...KK..........",
        "...KK..........",
        "KKKKKKKK..KKKKK",
        "KKKKKKKK..KKKKK",
        "...KK..........",
        "...KK..........",
        "...KK..........",
        "...............",
        "...............",
        "...............",
    ]),
    ("black winning", [
        "...............",
        "...............",
        "...............",
        "..........KK...",
        "..........KK...",
        "..........KK...",
        "KKKKK..KKKKKKKK",
        "KKKKK..KKKKKKKK",
        "..........KK...",
        "..........KK...",
        "..........KK...",
        "...............",
        "...............",
        "...............",
    ]),
    ("white clearly better", [
        "...............",
        "......KK.......",
        "......KK.......",
        "......KK.......",
        "...KKKKKKKK....",
        "...KKKKKKKK....",
        "......KK.......",
        "......KK.......",
        "......KK.......",
        "...............",
        "...KKKKKKKK....",
        "...KKKKKKKK....",
        "...............",
        "...............",
    ]),
    ("black clearly better", [
        "...............",
        "...............",
        "...KKKKKKKK....",
        "...KKKKKKKK....",
        "...............",
        "......KK.......",
        "......KK.......",
        "......KK.......",
        "...KKKKKKKK....",
        "...KKKKKKKK....",
        "......KK.......",
        "......KK.......",
        "......KK.......",
        "...............",
    ]),
]


# ---------------------------------------------------------------------------
# Side-to-move indicator, clock and hourglass (bitmap 116, not masked)
# ---------------------------------------------------------------------------

WINDOW_GREY = (192, 192, 192)
INDICATOR = 14


def OnGrey(draw):
    """Draws at 8x with the given function and shrinks onto the window grey."""
    big = INDICATOR * SUPERSAMPLE
    picture = Image.new("RGBA", (big, big), WINDOW_GREY + (255,))
    draw(ImageDraw.Draw(picture), big)
    return picture.resize((INDICATOR, INDICATOR), Image.Resampling.LANCZOS).convert("RGB")


def IndicatorFrame(white, frame):
    """Draws one frame of the side-to-move disc.

    Frame 0 is a plain disc. Frames 1..5 add a dot that walks round inside
    the rim, one fifth of a turn per frame, so the disc seems to spin while
    the engine thinks.
    """
    body = (255, 255, 255) if white else (0, 0, 0)
    edge = (0, 0, 0) if white else (96, 96, 96)
    marker = (0, 0, 0) if white else (255, 255, 255)
    s = SUPERSAMPLE

    def Paint(draw, big):
        draw.ellipse((s, s, big - s, big - s), fill=edge)
        draw.ellipse((2 * s, 2 * s, big - 2 * s, big - 2 * s), fill=body)
        if frame == 0:
            return
        angle = math.radians(-90 + (frame - 1) * 72)
        centre, distance, radius = big / 2, 3.1 * s, 1.7 * s
        x, y = centre + distance * math.cos(angle), centre + distance * math.sin(angle)
        draw.ellipse((x - radius, y - radius, x + radius, y + radius), fill=marker)

    return OnGrey(Paint)


def ClockFace():
    s = SUPERSAMPLE

    def Paint(draw, big):
        centre = big / 2
        draw.ellipse((s, s, big - s, big - s), fill=(0, 0, 0))
        draw.ellipse((2 * s, 2 * s, big - 2 * s, big - 2 * s), fill=(255, 255, 255))
        for hour in range(0, 12, 3):
            dx, dy = [(0, -1), (1, 0), (0, 1), (-1, 0)][hour // 3]
            outer, inner = 5 * s, 3.6 * s
            draw.line([(centre + dx * inner, centre + dy * inner),
                       (centre + dx * outer, centre + dy * outer)], fill=(0, 0, 0), width=s)
        draw.line([(centre, centre), (centre, centre - 4 * s)], fill=(0, 0, 0), width=s)
        draw.line([(centre, centre), (centre + 3 * s, centre)], fill=(0, 0, 128), width=s)

    return OnGrey(Paint)


def Hourglass():
    rows = [
        "..............",
        "..KKKKKKKKKK..",
        "...KWWWWWWK...",
        "...KYYYYYYK...",
        "....KYYYYK....",
        ".....KYYK.....",
        "......KK......",
        "......KK......",
        ".....KWYK.....",
        "....KWWYWK....",
        "...KWYYYYWK...",
        "...KYYYYYYK...",
        "..KKKKKKKKKK..",
        "..............",
    ]
    picture = FromArt(rows, INDICATOR, INDICATOR, "hourglass")
    pixels = picture.load()
    for y in range(INDICATOR):
        for x in range(INDICATOR):
            if pixels[x, y] == RED:
                pixels[x, y] = WINDOW_GREY
    return picture


def IndicatorStrip():
    frames = [IndicatorFrame(True, f) for f in range(6)]
    frames += [IndicatorFrame(False, f) for f in range(6)]
    frames += [ClockFace(), Hourglass()]
    return Strip(frames, INDICATOR, INDICATOR)


# ---------------------------------------------------------------------------
# Program icon
# ---------------------------------------------------------------------------

def IconImage(size):
    """A white knight on a dark green square, drawn for one icon size."""
    s = SUPERSAMPLE
    big = size * s
    picture = Image.new("RGBA", (big, big), (0, 0, 0, 0))
    draw = ImageDraw.Draw(picture)
    radius = max(1, size // 10) * s
    draw.rounded_rectangle((0, 0, big - 1, big - 1), radius=radius, fill=(30, 90, 60, 255))
    draw.rounded_rectangle((s // 2, s // 2, big - 1 - s // 2, big - 1 - s // 2), radius=radius,
                           outline=(12, 40, 24, 255), width=max(s, big // 32))
    # Size the glyph so its ink fills most of the square.
    probe = LoadFont("dejavu", 400)
    probeOutline, _ = GlyphPair(probe, "knight")
    scale = 0.84 * big / max(probeOutline.width, probeOutline.height)
    outline, solid = GlyphPair(LoadFont("dejavu", int(400 * scale)), "knight")
    origin = ((big - outline.width) // 2, (big - outline.height) // 2)
    glyph = Image.new("L", (big, big), 0)
    glyph.paste(outline, origin)
    body = Image.new("L", (big, big), 0)
    body.paste(FillHoles(solid), origin)
    picture.alpha_composite(Layer(body, (255, 255, 255)))
    picture.alpha_composite(Layer(Dilate(glyph, max(1, big // 96)), (0, 0, 0)))
    return picture.resize((size, size), Image.Resampling.LANCZOS)


# ---------------------------------------------------------------------------
# Checks, saving and preview
# ---------------------------------------------------------------------------

def CheckMaskedStrip(name, strip, cellWidth, cellHeight, count):
    """Asserts a masked strip's size and that each cell's corners are the key."""
    if strip.size != (cellWidth * count, cellHeight):
        Fail("%s is %s, expected %d x %d" % (name, strip.size, cellWidth * count, cellHeight))
    pixels = strip.load()
    for index in range(count):
        x0 = index * cellWidth
        for x, y in ((x0, 0), (x0 + cellWidth - 1, 0)):
            if pixels[x, y] != RED:
                Fail("%s image %d: corner (%d, %d) is not the key colour" % (name, index, x, y))
        opaque = sum(1 for y in range(cellHeight) for x in range(x0, x0 + cellWidth)
                     if pixels[x, y] != RED)
        if opaque == 0:
            Fail("%s image %d is empty" % (name, index))


def CheckNoNearRed(name, strip):
    """Rejects reddish fringe pixels: only the exact key may be strongly red."""
    for r, g, b in strip.getdata():
        if (r, g, b) != RED and r > 200 and g < 60 and b < 60:
            Fail("%s holds a near-red pixel (%d, %d, %d)" % (name, r, g, b))


def CheckNoSpecks(name, strip):
    """Rejects opaque pixels with no opaque neighbour: specks left by the cut."""
    pixels = strip.load()
    width, height = strip.size
    for y in range(height):
        for x in range(width):
            if pixels[x, y] == RED:
                continue
            neighbours = [(x + dx, y + dy) for dx, dy in ((1, 0), (-1, 0), (0, 1), (0, -1))
                          if 0 <= x + dx < width and 0 <= y + dy < height]
            if all(pixels[n] == RED for n in neighbours):
                Fail("%s has a lone pixel at (%d, %d)" % (name, x, y))


def Save(picture, number):
    """Writes a picture as NNN.bmp and checks the header: 24-bit, uncompressed,
    bottom-up (positive height), as the resource compiler and LoadImage expect."""
    path = OUT_DIR / ("%d.bmp" % number)
    picture.convert("RGB").save(path, "BMP")
    header = path.read_bytes()[:54]
    infoSize, width, height, planes, bits, compression = struct.unpack_from("<IiiHHI", header, 14)
    if (header[:2] != b"BM" or infoSize != 40 or (width, height) != picture.size or planes != 1
            or bits != 24 or compression != 0):
        Fail("%s was not written as a bottom-up 24-bit uncompressed bitmap" % path)
    return path


def OverSquares(strip, cell, colours, scale):
    """Paints a piece strip over alternating squares, red showing the square."""
    out = Image.new("RGB", strip.size)
    src = strip.load()
    dst = out.load()
    for y in range(strip.height):
        for x in range(strip.width):
            square = colours[(x // cell) % len(colours)]
            dst[x, y] = square if src[x, y] == RED else src[x, y]
    return out.resize((strip.width * scale, strip.height * scale), Image.Resampling.NEAREST)


def MakePreview(pieceStrips, otherStrips):
    label = LoadFont("dejavu", 12)
    light, dark, highlight = (255, 255, 255), (128, 128, 128), (255, 128, 255)
    rows = []
    for name, strip, cell in pieceStrips:
        rows.append((name + " %dpx" % cell, OverSquares(strip, cell, [light, dark], 1)))
        rows.append(("", OverSquares(strip, cell, [dark, light], 1)))
        rows.append(("", OverSquares(strip, cell, [highlight], 1)))
        rows.append(("  x4", OverSquares(strip, cell, [light, dark], 4)))
        rows.append(("  x4", OverSquares(strip, cell, [dark, highlight], 4)))
    for name, strip, cell in otherStrips:
        rows.append((name, OverSquares(strip, cell, [(212, 208, 200)], 4)))
    width = 110 + max(picture.width for _, picture in rows)
    height = sum(picture.height + 6 for _, picture in rows) + 6
    sheet = Image.new("RGB", (width, height), (236, 236, 236))
    draw = ImageDraw.Draw(sheet)
    y = 6
    for text, picture in rows:
        draw.text((4, y), text, font=label, fill=(0, 0, 0))
        sheet.paste(picture, (106, y))
        y += picture.height + 6
    PREVIEW.parent.mkdir(parents=True, exist_ok=True)
    sheet.save(PREVIEW)


def Main():
    OUT_DIR.mkdir(parents=True, exist_ok=True)
    pieceStrips = []
    for style, smallNumber, largeNumber in PIECE_SETS:
        for number, cell in ((smallNumber, 19), (largeNumber, 25)):
            strip = RenderPieceStrip(style, cell)
            CheckMaskedStrip("%s %d" % (style.name, number), strip, cell, cell, 12)
            CheckNoNearRed("%s %d" % (style.name, number), strip)
            CheckNoSpecks("%s %d" % (style.name, number), strip)
            Save(strip, number)
            pieceStrips.append((style.name, strip, cell))

    toolbar = Strip([FromArt(rows, 16, 16, name) for name, rows in GAME_TOOLBAR], 16, 16)
    CheckMaskedStrip("game toolbar 115", toolbar, 16, 16, 10)
    Save(toolbar, 115)

    mainToolbar = Strip([FromArt(rows, 16, 16, name) for name, rows in MAIN_TOOLBAR], 16, 16)
    CheckMaskedStrip("main toolbar 141", mainToolbar, 16, 16, 3)
    Save(mainToolbar, 141)

    evaluation = Strip([FromArt(rows, 15, 14, name) for name, rows in EVALUATION], 15, 14)
    CheckMaskedStrip("evaluation symbols 106", evaluation, 15, 14, 8)
    Save(evaluation, 106)

    indicator = IndicatorStrip()
    if indicator.size != (14 * INDICATOR, INDICATOR):
        Fail("indicator strip 116 is %s" % (indicator.size,))
    if any(pixel == RED for pixel in indicator.getdata()):
        Fail("indicator strip 116 is drawn as is and must not hold the key colour")
    Save(indicator, 116)

    icons = [IconImage(size) for size in (48, 32, 16)]
    icons[0].save(OUT_DIR / "velmora.ico", format="ICO", bitmap_format="bmp",
                  sizes=[(16, 16), (32, 32), (48, 48)], append_images=icons[1:])

    MakePreview(pieceStrips, [("115", toolbar, 16), ("141", mainToolbar, 16),
                              ("106", evaluation, 15), ("116", indicator, 14)])
    print("wrote %s and %s" % (OUT_DIR, PREVIEW))


if __name__ == "__main__":
    Main()
