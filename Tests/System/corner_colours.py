"""usage: corner_colours.py SCREEN.png X Y CARD.png WALLPAPER
What stands in the corners of a card on a screen that is neither the wallpaper (RRGGBB) nor a colour
that the card's picture has there: a line for each such pixel. The last line counts the pixels of
the wallpaper."""

import sys

from PIL import Image

SIDE = 22
# Gradients go on where the picture is cut off.
NEARLY = 12


def corners(picture, left, top, width, height):
    for x in (left, left + width - SIDE):
        for y in (top, top + height - SIDE):
            yield picture.crop((x, y, x + SIDE, y + SIDE))


def is_near(one, other):
    return max(abs(a - b) for a, b in zip(one, other)) <= NEARLY


def main(screen, x, y, card, wallpaper):
    card = Image.open(card).convert("RGBA")
    wallpaper = tuple(bytes.fromhex(wallpaper))
    screen = Image.open(screen).convert("RGB")
    count = 0
    for number, (seen, drawn) in enumerate(zip(corners(screen, int(x), int(y), *card.size),
                                               corners(card, 0, 0, *card.size))):
        colours = {pixel[:3] for pixel in drawn.getdata() if pixel[3] == 255}
        for place, pixel in enumerate(seen.getdata()):
            count += pixel == wallpaper
            if pixel != wallpaper and not any(is_near(pixel, each) for each in colours):
                print(f"corner {number}, {place % SIDE} {place // SIDE}: {pixel}")
    print(count)


main(*sys.argv[1:])
