"""The tables that a display is to carry, worked out without any of the program's code.

Warmth runs from 0 (6500 K, the display's own white) to 1 (only red is left), brightness from 0 to 1.
The black body's colour: chromaticity by cubic splines over the temperature (Kim et al., with one
coefficient of the program's own), then XYZ to linear sRGB.
"""


def clamped(value, highest=1.0):
    return min(max(value, 0.0), highest)


def black_body(kelvin):
    t = min(max(kelvin, 2000.0), 25000.0)
    if t > 4000:
        x = -3025846900.0 / t**3 + 2107037.9 / t**2 + 222.6347 / t + 0.24039
    else:
        x = -266123900.0 / t**3 - 234358.0 / t**2 + 877.6956 / t + 0.17991
    if t <= 2222:
        y = -1.1063814 * x**3 - 1.3481102 * x**2 + 2.18555832 * x - 0.20219683
    elif t <= 4000:
        y = -0.9549476 * x**3 - 1.37418593 * x**2 + 2.09137015 * x - 0.16748867
    else:
        y = 3.081758 * x**3 - 5.8733867 * x**2 + 3.75112997 * x - 0.37001483
    X, Z = x / y, (1 - x - y) / y
    matrix = (3.2406, -1.5372, -0.4986), (-0.9689, 1.8758, 0.0415), (0.0557, -0.2040, 1.0570)
    return [clamped(a * X + b + c * Z, 4.0) for a, b, c in matrix]


def multipliers(warmth):
    kelvin = 6500 * (1 - clamped(warmth))
    colour = [clamped(c / n) for c, n in zip(black_body(kelvin), black_body(6500))]
    depth = clamped(1 - kelvin / 2000)  # below 2000 K the colour blends into pure red
    share = depth * depth * (3 - 2 * depth)
    return [c + (red - c) * share for c, red in zip(colour, (1, 0, 0))]


def filtered(tables, warmth, brightness):
    """Three lists of 16-bit levels, right to within one step."""
    return [[round(level * factor * brightness) for level in levels]
            for levels, factor in zip(tables, multipliers(warmth))]


def calibration(entries, number):
    """Tables such as a profile gives: unlike in each channel and for each number, and no straight line."""
    bend = 0.05 * number
    shapes = (0.85 + bend, 0.0, 1 - bend / 10), (1.10 + bend, 0.01, 0.97), (1.25 - bend, 0.02, 0.91)
    return [[round(65535 * (low + (high - low) * (k / (entries - 1)) ** power)) for k in range(entries)]
            for power, low, high in shapes]
