#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes sections.dat, the database of standard profiles: python3 data/make_sections.py

The file make_sections.txt holds the dimensions of the standards, with the values of their tables
where a shape has tapered flanges or the standard rounds its own way; everything else is computed
here from the dimensions with all fillets. A record is name, type, unit, area, Ixx, Iyy, Izz
(torsion) and the four dimensions of the type, in mm (European) or inch (American).
"""
from decimal import Decimal
from fractions import Fraction
from math import pi, sqrt, tanh
from pathlib import Path

HERE = Path(__file__).parent


# --- geometry: parts of (area, x, y, own Ix, own Iy) ----------------------------------------------

def rect(x, y, w, h):
    """Rectangle from its lower left corner."""
    return (w * h, x + w / 2, y + h / 2, w * h**3 / 12, h * w**3 / 12)


def fillet(x, y, r, sx, sy, sign=1):
    """The piece between a corner at x, y and the arc of radius r tangent to both of its sides, which
    run in the directions sx and sy (+1, -1). sign -1 takes it away: a rounded corner."""
    a = (1 - pi / 4) * r * r
    g = r * (10 - 3 * pi) / (3 * (4 - pi))  # centroid from the sides
    arc = (pi / 16 - 4 / (9 * pi)) + pi / 4 * (1 - 4 / (3 * pi)) ** 2
    own = r**4 * (1 / 3 - arc) - a * g * g
    return (sign * a, x + sx * g, y + sy * g, sign * own, sign * own)


def summed(parts):
    """Area, Ix and Iy about the centroid, centroid x and y."""
    a = sum(p[0] for p in parts)
    x = sum(p[0] * p[1] for p in parts) / a
    y = sum(p[0] * p[2] for p in parts) / a
    ix = sum(p[3] + p[0] * (p[2] - y) ** 2 for p in parts)
    iy = sum(p[4] + p[0] * (p[1] - x) ** 2 for p in parts)
    return a, ix, iy, x, y


def beam(b, h, tw, tf, r):
    parts = [rect(-b / 2, 0, b, tf), rect(-b / 2, h - tf, b, tf), rect(-tw / 2, tf, tw, h - 2 * tf)]
    for sx in (-1, 1):
        parts += [fillet(sx * tw / 2, tf, r, sx, 1), fillet(sx * tw / 2, h - tf, r, sx, -1)]
    return summed(parts)


def tee(b, h, tw, tf, r):
    return summed([rect(-b / 2, 0, b, tf), rect(-tw / 2, tf, tw, h - tf),
                   fillet(-tw / 2, tf, r, -1, 1), fillet(tw / 2, tf, r, 1, 1)])


def channel(b, h, tw, tf, r):
    return summed([rect(0, 0, b, tf), rect(0, h - tf, b, tf), rect(0, tf, tw, h - 2 * tf),
                   fillet(tw, tf, r, 1, 1), fillet(tw, h - tf, r, 1, -1)])


def angle(b, h, t, r1, r2):
    return summed([rect(0, 0, t, h), rect(t, 0, b - t, t), fillet(t, t, r1, 1, 1),
                   fillet(t, h, r2, -1, -1, -1), fillet(b, t, r2, -1, -1, -1)])


def hollow(b, h, t, ro, ri):
    parts = [rect(0, 0, b, h), tuple(-v if i in (0, 3, 4) else v
                                     for i, v in enumerate(rect(t, t, b - 2 * t, h - 2 * t)))]
    for x, y, sx, sy in ((0, 0, 1, 1), (b, 0, -1, 1), (0, h, 1, -1), (b, h, -1, -1)):
        parts += [fillet(x, y, ro, sx, sy, -1), fillet(x + sx * t, y + sy * t, ri, sx, sy)]
    return summed(parts)


# --- torsion --------------------------------------------------------------------------------------

def beamtorsion(b, h, tw, tf, r):
    """Rolled I shape with fillets: formula of the European mills' catalogues (I_t)."""
    d = ((r + tw / 2) ** 2 + (r + tf) ** 2 - r * r) / (2 * r + tf)
    return (2 / 3 * (b - 0.63 * tf) * tf**3 + (h - 2 * tf) * tw**3 / 3
            + 2 * tw / tf * (0.145 + 0.1 * r / tf) * d**4)


def oneended(length, t):
    """Young, Roark's Formulas for Stress and Strain, table of torsion, open shapes: K of a leg that
    ends free on one side and joins others on the other."""
    q = t / length
    return length * t**3 * (1 / 3 - 0.105 * q * (1 - q**4 / 192))


def twoended(length, t):
    q = t / length
    return length * t**3 * (1 / 3 - 0.21 * q * (1 - q**4 / 12))


def angletorsion(b, h, t, r):
    """Roark, L section of uniform thickness."""
    d = 2 * (t + t + 3 * r - sqrt(2 * (2 * r + t) * (2 * r + t)))
    return twoended(h, t) + oneended(b - t, t) + (0.07 + 0.076 * r / t) * d**4


def teetorsion(b, h, tw, tf, r):
    """Roark, T section."""
    d = ((tf + r) ** 2 + r * tw + tw * tw / 4) / (2 * r + tf)
    t, t1 = min(tw, tf), max(tw, tf)
    return twoended(b, tf) + oneended(h - tf, tw) + t / t1 * (0.15 + 0.1 * r / tf) * d**4


def hollowtorsion(b, h, t, ro, ri):
    """EN 10210-2 and EN 10219-2, annex A: Bredt along the middle line, and the wall's own part."""
    rc = (ro + ri) / 2
    enclosed = (b - t) * (h - t) - rc * rc * (4 - pi)
    around = 2 * ((b - t) + (h - t)) - 2 * rc * (4 - pi)
    return t**3 * around / 3 + 4 * enclosed**2 * t / around


def bartorsion(b, h):
    """Saint-Venant's series for the rectangle (Timoshenko and Goodier, Theory of Elasticity, 109)."""
    long, short = max(b, h), min(b, h)
    series = sum(tanh(n * pi * long / (2 * short)) / n**5 for n in range(1, 60, 2))
    return long * short**3 * (1 / 3 - 64 / pi**5 * short / long * series)


# --- records --------------------------------------------------------------------------------------

records = []


def add(name, kind, unit, area, ixx, iyy, izz, *dims):
    dims = list(dims) + [0] * (4 - len(dims))
    records.append((name, kind, unit, area, ixx, iyy, izz, *dims))


def number(text):
    """4-1/2, 3/8, 0.25 or 12."""
    whole, _, part = text.partition("-")
    return float(Fraction(whole) + (Fraction(part) if part else 0))


def num(value):
    return f"{value:g}"


def rolledbeam(words):
    name, size, b, h, tw, tf, r = words[0], words[1], *map(float, words[2:])
    area, ixx, iyy, *_ = beam(b, h, tw, tf, r)
    izz = beamtorsion(b, h, tw, tf, r)
    add(f"{name} {size}", "H-Beam Metric", "mm", area, ixx, iyy, izz, b, h, tw, tf)
    if name != "HEM":
        area, ixx, iyy, *_ = tee(b, h / 2, tw, tf, r)
        halves.append((f"T {name} {size}", "T Profile US", "mm", area, ixx, iyy, izz / 2,
                       b, h / 2, tw, tf))


def europeanangle(words):
    h, b, t, r1 = map(float, words)
    r2 = r1 / 2
    area, ixx, iyy, x, _ = angle(b, h, t, r1, r2)
    izz = angletorsion(b, h, t, r1)
    size = "x".join(num(v) for v in (h, b, t))
    add("L " + size, "L Profile US", "mm", area, ixx, iyy, izz, b, h, t)
    pair("2L " + size, "mm", area, ixx, iyy, izz, x, b, h, t)


def pair(name, unit, area, ixx, iyy, izz, x, b, h, t):
    """Two angles whose long legs touch back to back."""
    halves.append((name, "DL Profile US", unit, 2 * area, 2 * ixx, 2 * (iyy + area * x * x),
                   2 * izz, b, h, t, 0))


def europeantable(words):
    """UPN and tees: cm2 and cm4 of the standard's table; torsion where it is not tabulated."""
    name, size, b, h, tw, tf, area, ixx, iyy, izz = words[0], words[1], *map(float, words[2:])
    kind = "T Profile US" if name == "T" else "C Profile US"
    izz = izz * 1e4 or teetorsion(b, h, tw, tf, tf)
    add(f"{name} {size}", kind, "mm", area * 100, ixx * 1e4, iyy * 1e4, izz, b, h, tw, tf)


def europeanchannel(words):
    size, b, h, tw, tf, r, izz = words[0], *map(float, words[1:])
    area, ixx, iyy, *_ = channel(b, h, tw, tf, r)
    add(f"UPE {size}", "C Profile US", "mm", area, ixx, iyy, izz * 1e4, b, h, tw, tf)


def tube(name, unit, od, t):
    d = od - 2 * t
    second = pi / 64 * (od**4 - d**4)
    add(name, "Tubular", unit, pi / 4 * (od * od - d * d), second, second, 2 * second, od, t)


def box(name, unit, b, h, t, ro, ri):
    area, ixx, iyy, *_ = hollow(b, h, t, ro, ri)
    add(name, "Box section US", unit, area, ixx, iyy, hollowtorsion(b, h, t, ro, ri), b, h, t, t)


def circularhollow(words):
    for t in words[1:]:
        tube(f"CHS {words[0]}x{t}", "mm", float(words[0]), float(t))


def rectangularhollow(words):
    h, b = map(float, words[0].split("x"))
    for t in map(float, words[1:]):
        label = f"SHS {num(h)}x{num(t)}" if h == b else f"RHS {num(h)}x{num(b)}x{num(t)}"
        box(label, "mm", b, h, t, 1.5 * t, t)  # radii of EN 10210-2 for calculation


def flatbar(words):
    h = float(words[0])
    for b in map(float, words[1:]):
        add(f"FL {num(h)}x{num(b)}", "Prismatic Bar", "mm", b * h, b * h**3 / 12, h * b**3 / 12,
            bartorsion(b, h), b, h)


def americanbeam(words):
    """Table values; the tee that is half of it takes its fillet from the beam's area."""
    name, area, h, b, tw, tf, ixx, iyy, izz = words[0], *map(float, words[1:])
    add("W" + name, "H-Beam US", "Inch", area, ixx, iyy, izz, b, h, tw, tf)
    corners = area - 2 * b * tf - (h - 2 * tf) * tw
    r = sqrt(max(corners, 0) / (4 - pi))
    _, ixx, *_ = tee(b, h / 2, tw, tf, r)
    depth, weight = map(float, name.split("x"))
    halves.append((f"WT{num(depth / 2)}x{num(weight / 2)}", "T Profile US", "Inch", area / 2, ixx,
                   iyy / 2, izz / 2, b, h / 2, tw, tf))


def americanchannel(words):
    name, area, h, b, tw, tf, ixx, iyy, izz = words[0], *map(float, words[1:])
    add("C" + name, "C Profile US", "Inch", area, ixx, iyy, izz, b, h, tw, tf)


def americanangle(words):
    h, b, t = map(number, words[0].split("x"))
    area, ixx, iyy, izz, x = map(float, words[1:])
    add("L" + words[0], "L Profile US", "Inch", area, ixx, iyy, izz, b, h, t)
    ends = "" if h == b else " LLBB"
    pair("2L" + words[0] + ends, "Inch", area, ixx, iyy, izz, x, b, h, t)


WALLS = {"7/8": 0.814, "3/4": 0.698, "5/8": 0.581, "1/2": 0.465, "3/8": 0.349, "5/16": 0.291,
         "1/4": 0.233, "3/16": 0.174, "1/8": 0.116}  # design wall, 0.93 of the nominal


def americanbox(words):
    h, b = map(number, words[0].split("x"))
    order = list(WALLS)
    for wall in order[order.index(words[1]):order.index(words[2]) + 1]:
        t = WALLS[wall]
        box(f"HSS{words[0]}x{wall}", "Inch", b, h, t, 2 * t, t)


def americanround(words):
    exact = {"0.188": 0.1875, "0.312": 0.3125, "0.313": 0.3125, "0.438": 0.4375}
    table = {"0.322": 0.300, "0.134": 0.124, "0.120": 0.111}  # as the tables have them
    for wall in words[1:]:
        t = table.get(wall, round(0.93 * exact.get(wall, float(wall)), 3))
        tube(f"HSS{words[0]}x{wall}", "Inch", float(words[0]), t)


def pipe(words):
    """Sizes of ASME B36.10M: outside diameter, design walls of STD, XS and XXS."""
    for label, wall in zip(("STD", "XS", "XXS"), words[2:]):
        tube(f"Pipe {words[0]} {label}", "Inch", float(words[1]), float(wall))


KINDS = {"beam": rolledbeam, "angle": europeanangle, "table": europeantable, "UPE": europeanchannel,
         "CHS": circularhollow, "RHS": rectangularhollow, "FL": flatbar, "W": americanbeam,
         "C": americanchannel, "L": americanangle, "HSS": americanbox, "HSSround": americanround,
         "pipe": pipe}


def digits(value):
    """Seven significant digits, plain: what a Single holds."""
    text = format(Decimal(f"{value:.7g}"), "f")
    return text.rstrip("0").rstrip(".") if "." in text else text


halves = []  # tees and pairs follow the shapes they are made of
kind = None
for line in (HERE / "make_sections.txt").read_text().splitlines():
    words = line.split()
    if not words or words[0] == "#":
        continue
    if words[0].startswith("["):
        records += halves
        halves = []
        kind = KINDS[words[0].strip("[]")]
    else:
        kind(words)
records += halves

lines = [str(len(records))]
for record in records:
    lines.append(",".join([f'"{text}"' for text in record[:3]] + [digits(v) for v in record[3:]]))
(HERE / "sections.dat").write_bytes(("\r\n".join(lines) + "\r\n").encode())
print(len(records), "records")
