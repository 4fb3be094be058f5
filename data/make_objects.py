#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the library of parametric objects, objects/*.obj: python3 data/make_objects.py

Lengths are mm, forces N, masses kg. An expression has no parentheses and works each term out from
left to right, so coordinates are kept here as sums of terms "coefficient, then operators and
names". A variable without a text follows from the others and is not shown to the user.
"""
from math import cos, radians, sin
from pathlib import Path

HERE = Path(__file__).parent
SHELL4, BEAM, TRUSS = 9, 6, 1
STEEL = ["210000", ".3", "7.85E-6"]


# --- expressions ----------------------------------------------------------------------------------

class Sum:
    """A sum of terms (coefficient, tail), a tail being "*L", "*R^2" or "*DX/DZ"."""

    def __init__(self, terms):
        self.terms = [(c, t) for c, t in terms if abs(c) > 1e-12]

    def __add__(self, other):
        terms = dict()
        for c, t in self.terms + other.terms:
            terms[t] = terms.get(t, 0) + c
        return Sum([(c, t) for t, c in terms.items()])

    def __neg__(self):
        return self * -1

    def __sub__(self, other):
        return self + -other

    def __mul__(self, factor):
        if isinstance(factor, str):  # a name
            return Sum([(c, f"{t}*{factor}") for c, t in self.terms])
        return Sum([(c * factor, t) for c, t in self.terms])

    def __truediv__(self, name):
        return Sum([(c, f"{t}/{name}") for c, t in self.terms])

    def __str__(self):
        text = ""
        for c, t in self.terms:
            number = f"{abs(c):.9g}"
            term = t[1:] if number == "1" and t.startswith("*") else number + t
            text += ("-" if c < 0 else "+" if text else "") + term
        return text or "0"


def v(name, factor=1):
    return Sum([(factor, "*" + name)])


def number(x):
    return Sum([(x, "")])


ZERO = Sum([])


def middle(a, b):
    return tuple((p + q) * .5 for p, q in zip(a, b))


# --- objects --------------------------------------------------------------------------------------

class Object:
    def __init__(self, name, description, variables):
        self.name, self.description = name, description
        self.variables = [("NMESH", "1", "Mesh refine factor")] + variables
        self.graphics, self.numbers, self.patches, self.groups = [], {}, [], []

    def follows(self, name, value):
        """A variable that follows from the others; returns it as a sum."""
        self.variables.append((name, str(value), ""))
        return v(name)

    def group(self, name, *fields):
        values = STEEL + [str(f) for f in fields]
        self.groups.append((name, values + ["0"] * (12 - len(values))))
        return len(self.groups)

    def edge(self, a, b, spaces, via=None, factor=1):
        """A line, or a circle section through `via`; one that is there already serves again."""
        texts = [tuple(str(x) for x in p) for p in (a, b, via or (ZERO, ZERO, ZERO))]
        key = (frozenset(texts[:2]), texts[2])
        if key not in self.numbers:
            self.numbers[key] = len(self.graphics) + 1
            self.graphics.append((3 if via else 1, spaces, factor, texts))
        return self.numbers[key]

    def patch(self, kind, edges, group):
        self.patches.append((kind, [e if isinstance(e, list) else [e] for e in edges], group))

    def quad(self, e1, e2, e3, e4, group, flip=False):
        self.patch(SHELL4, (e3, e4, e1, e2) if flip else (e1, e2, e3, e4), group)

    def plate(self, a, b, c, d, along, across, group):
        """A flat panel with straight sides; along: spaces of a-b, across: of a-d."""
        self.quad(self.edge(a, b, along), self.edge(d, c, along), self.edge(a, d, across),
                  self.edge(b, c, across), group)

    def beam(self, a, b, spaces, group, kind=BEAM):
        self.patch(kind, [self.edge(a, b, spaces)], group)

    def write(self):
        out = ["DESCRIPTION", self.description, f"VARIABLES, {len(self.variables)}"]
        out += [f'{n},"{value}","{text}"' if text else f'{n},"{value}",""'
                for n, value, text in self.variables]
        out.append(f"GRAPHICS,{len(self.graphics)}")
        for g, (kind, spaces, factor, points) in enumerate(self.graphics, 1):
            out.append(f"{g},{kind},{spaces}*NMESH,{factor},0," +
                       ",".join(x for p in points for x in p))
        out.append(f"PATCHES,{len(self.patches)}")
        for kind, edges, group in self.patches:
            chains = [f"{len(e)}," + ",".join(map(str, e)) for e in edges]
            out.append(",".join([str(kind)] + chains + [str(group)]))
        out.append(f"GROUPS,{len(self.groups)}")
        out += [f'"{name}",' + ",".join(values) for name, values in self.groups]
        out += ["0,0,0,0,0,0"] * (6 * len(self.groups))
        text = "\n".join(out + ["END", ""])
        (HERE / "objects" / (self.name + ".obj")).write_text(text, newline="")


def turn(degrees):
    return cos(radians(degrees)), sin(radians(degrees))


def round_point(radius, degrees, x=ZERO, y=ZERO, z=ZERO):
    """On a circle about x, y in the plane of z."""
    c, s = turn(degrees)
    return (x + radius * c, y + radius * s, z)


# --- plates ---------------------------------------------------------------------------------------

def ring(o, inner, outer, spaces, across, group, factor=1):
    """Panels between two closed rings of points: lists of (point, point half way to the next)."""
    n = len(inner)
    for k in range(n):
        (a, va), (b, _) = inner[k], inner[(k + 1) % n]
        (c, vc), (d, _) = outer[k], outer[(k + 1) % n]
        o.quad(o.edge(a, c, across, factor=factor), o.edge(b, d, across, factor=factor),
               o.edge(a, b, spaces[k], va), o.edge(c, d, spaces[k], vc), group)


def circle(radius, at=ZERO, z=ZERO, y=ZERO):
    return [(round_point(radius, 45 * k, at, y, z), round_point(radius, 45 * k + 22.5, at, y, z))
            for k in range(8)]


def plate_with_hole():
    o = Object("plate with hole", "Rectangular plate with a round hole in the middle",
               [("L", "1000", "Length"), ("W", "600", "Width"), ("R", "120", "Radius of the hole"),
                ("T", "10", "Thickness")])
    g = o.group("Plate", v("T"))
    x, y = v("L", .5), v("W", .5)
    rim = [(x, ZERO), (x, y), (ZERO, y), (-x, y), (-x, ZERO), (-x, -y), (ZERO, -y), (x, -y)]
    ring(o, circle(v("R")), [((p[0], p[1], ZERO), None) for p in rim], [4] * 8, 6, g, 1.5)
    o.write()


def pad_eye():
    o = Object("pad eye", "Pad eye with cheek plates, standing on z = 0",
               [("R", "40", "Radius of the hole"), ("RC", "75", "Radius of the cheek plates"),
                ("RO", "110", "Radius of the main plate"), ("H", "180", "Height of the hole"),
                ("B", "400", "Width at the foot"), ("T", "30", "Thickness of the main plate"),
                ("TC", "20", "Thickness of a cheek plate")])
    main, cheek = o.group("Main plate", v("T")), o.group("Cheeks", v("T") + v("TC", 2))

    def up(p):
        return (p[0], ZERO, p[1] + v("H"))

    def upright(rows):
        return [(up(p), up(m) if m else None) for p, m in rows]
    hole, rim, outer = circle(v("R")), circle(v("RC")), circle(v("RO"))
    foot = [(-v("RO"), ZERO), (v("B", -.5), -v("H")), (ZERO, -v("H")), (v("B", .5), -v("H"))]
    outer = outer[:4] + [((x, y, ZERO), None) for x, y in foot]
    ring(o, upright(hole), upright(rim), [3] * 8, 3, cheek)
    ring(o, upright(rim), upright(outer), [3] * 8, 4, main)
    o.write()


def manhole():
    o = Object("manhole", "Plate with a manhole and its coaming",
               [("L", "1600", "Length of the plate"), ("W", "1200", "Width of the plate"),
                ("A", "200", "Half of the straight side of the hole"),
                ("R", "200", "Radius of its ends"), ("HC", "100", "Height of the coaming"),
                ("T", "12", "Thickness of the plate"), ("TC", "10", "Thickness of the coaming")])
    plate, coaming = o.group("Plate", v("T")), o.group("Coaming", v("TC"))
    x, y = v("L", .5), v("W", .5)

    def end(first, at):
        return [(round_point(v("R"), first + 45 * k, at), round_point(v("R"), first + 45 * k + 22.5,
                                                                     at)) for k in range(4)]
    last = [(round_point(v("R"), 90, v("A")), None)], [(round_point(v("R"), 270, -v("A")), None)]
    hole = end(-90, v("A")) + last[0] + end(90, -v("A")) + last[1]
    rim = [(v("A"), -y), (x, -y), (x, ZERO), (x, y), (v("A"), y), (-v("A"), y), (-x, y),
           (-x, ZERO), (-x, -y), (-v("A"), -y)]
    spaces = [3] * 4 + [4] + [3] * 4 + [4]
    ring(o, hole, [((p[0], p[1], ZERO), None) for p in rim], spaces, 4, plate)
    raised = [tuple((p[0], p[1], p[2] + v("HC")) if p else None for p in pair) for pair in hole]
    ring(o, hole, raised, spaces, 2, coaming)
    o.write()


# --- stiffened plates -----------------------------------------------------------------------------

def bracket():
    o = Object("bracket", "Knee bracket between a wall and a floor",
               [("H", "400", "Height of the rib"), ("B", "400", "Length of the rib"),
                ("W", "200", "Width of wall and floor"), ("K", ".65", "Knuckle, part of H and B"),
                ("TR", "12", "Thickness of the rib"), ("T", "15", "Thickness of wall and floor")])
    rib, plates = o.group("Rib", v("TR")), o.group("Wall and floor", v("T"))
    zero = (ZERO, ZERO, ZERO)
    foot, top = (v("B"), ZERO, ZERO), (ZERO, ZERO, v("H"))
    knuckle = (v("B") * "K", ZERO, v("H") * "K")
    o.plate(zero, foot, knuckle, top, 6, 6, rib)
    for side in (.5, -.5):
        def out(p):
            return (p[0], p[1] + v("W", side), p[2])
        o.plate(zero, foot, out(foot), out(zero), 6, 3, plates)
        o.plate(zero, top, out(top), out(zero), 6, 3, plates)
    o.write()


def panel_bay():
    o = Object("stiffened panel bay", "Plate panel with three T stiffeners along x",
               [("L", "2400", "Length"), ("S", "700", "Spacing of the stiffeners"),
                ("HW", "250", "Height of the webs"), ("BF", "90", "Width of the flanges"),
                ("TP", "12", "Thickness of the plate"), ("TW", "10", "Thickness of the webs"),
                ("TF", "15", "Thickness of the flanges")])
    plate, web, flange = (o.group("Plate", v("TP")), o.group("Web", v("TW")),
                          o.group("Flange", v("TF")))

    def strip(y1, y2, z1, z2, across, group):
        o.plate((ZERO, y1, z1), (v("L"), y1, z1), (v("L"), y2, z2), (ZERO, y2, z2), 10, across,
                group)
    for k in range(4):
        strip(v("S", k), v("S", k + 1), ZERO, ZERO, 4, plate)
    for k in (1, 2, 3):
        y, top = v("S", k), v("HW")
        strip(y, y, ZERO, top, 3, web)
        for side in (-.5, .5):
            strip(y, y + v("BF", side), top, top, 1, flange)
    o.write()


def i_girder():
    o = Object("I girder", "I girder with four bays and transverse stiffeners",
               [("S", "1000", "Distance of the stiffeners"), ("HW", "800", "Height of the web"),
                ("BF", "300", "Width of the flanges"), ("TW", "10", "Thickness of the web"),
                ("TF", "20", "Thickness of the flanges"), ("TS", "12",
                                                           "Thickness of the stiffeners")])
    web, flange, stiffener = (o.group("Web", v("TW")), o.group("Flange", v("TF")),
                              o.group("Stiffener", v("TS")))
    h, b = v("HW"), v("BF", .5)
    for k in range(4):
        x1, x2 = v("S", k), v("S", k + 1)
        o.plate((x1, ZERO, ZERO), (x2, ZERO, ZERO), (x2, ZERO, h), (x1, ZERO, h), 5, 4, web)
        for z in (ZERO, h):
            for y in (b, -b):
                o.plate((x1, ZERO, z), (x2, ZERO, z), (x2, y, z), (x1, y, z), 5, 2, flange)
    for k in range(5):
        x = v("S", k)
        for y in (b, -b):
            o.plate((x, ZERO, ZERO), (x, ZERO, h), (x, y, h), (x, y, ZERO), 4, 2, stiffener)
    o.write()


# --- shells of revolution -------------------------------------------------------------------------

def wall(o, radius1, z1, radius2, z2, across, group):
    for k in range(8):
        a, b = (round_point(radius1, 45 * (k + j), z=z1) for j in (0, 1))
        c, d = (round_point(radius2, 45 * (k + j), z=z2) for j in (0, 1))
        o.quad(o.edge(a, b, 3, round_point(radius1, 45 * k + 22.5, z=z1)),
               o.edge(c, d, 3, round_point(radius2, 45 * k + 22.5, z=z2)),
               o.edge(a, c, across), o.edge(b, d, across), group)


def tank_ring():
    o = Object("tank ring", "Ring of a tank wall with a ring stiffener outside",
               [("R", "5000", "Radius of the wall"), ("H", "2000", "Height of the ring"),
                ("ZR", "1000", "Height of the stiffener"), ("BW", "300", "Web of the stiffener"),
                ("BF", "150", "Flange of the stiffener"), ("T", "12", "Thickness of the wall"),
                ("TS", "10", "Thickness of the stiffener")])
    shell, stiffener = o.group("Wall", v("T")), o.group("Ring stiffener", v("TS"))
    r, z, out = v("R"), v("ZR"), v("R") + v("BW")
    wall(o, r, ZERO, r, z, 3, shell)
    wall(o, r, z, r, v("H"), 3, shell)
    wall(o, r, z, out, z, 2, stiffener)
    wall(o, out, z - v("BF", .5), out, z, 1, stiffener)
    wall(o, out, z, out, z + v("BF", .5), 1, stiffener)
    o.write()


def cone():
    o = Object("cone transition", "Cone between two tubes",
               [("R1", "500", "Radius below"), ("R2", "300", "Radius above"),
                ("H1", "500", "Length of the tube below"), ("HC", "600", "Length of the cone"),
                ("H2", "500", "Length of the tube above"), ("T", "16", "Thickness")])
    g = o.group("Shell", v("T"))
    z1, z2 = v("H1"), v("H1") + v("HC")
    wall(o, v("R1"), ZERO, v("R1"), z1, 4, g)
    wall(o, v("R1"), z1, v("R2"), z2, 4, g)
    wall(o, v("R2"), z2, v("R2"), z2 + v("H2"), 4, g)
    o.write()


def pipe_bend():
    """About the z axis; each section of the pipe is at an angle from x."""
    o = Object("pipe bend", "Pipe bend of 90 degrees with straight ends",
               [("RB", "900", "Radius of the bend"), ("RP", "250", "Radius of the pipe"),
                ("LS", "600", "Length of the straight ends"), ("T", "10", "Thickness")])
    g = o.group("Pipe", v("T"))

    def place(round_pipe, along):
        c, s = turn(round_pipe)
        u, w = turn(along)
        r = v("RB") + v("RP") * c
        return (r * u, r * w, v("RP") * s)

    def shifted(p, x, y):
        return (p[0] + x, p[1] + y, p[2])
    for k in range(8):
        a, b = 45 * k, 45 * k + 45

        def section(along):
            return o.edge(place(a, along), place(b, along), 2, place(a + 22.5, along))
        for j in range(3):
            t = 30 * j
            o.quad(section(t), section(t + 30),
                   o.edge(place(a, t), place(a, t + 30), 3, place(a, t + 15)),
                   o.edge(place(b, t), place(b, t + 30), 3, place(b, t + 15)), g)
        for along, x, y, flip in ((0, ZERO, -v("LS"), True), (90, -v("LS"), ZERO, False)):
            p, q, m = (shifted(place(r, along), x, y) for r in (a, b, a + 22.5))
            o.quad(section(along), o.edge(p, q, 2, m), o.edge(place(a, along), p, 4),
                   o.edge(place(b, along), q, 4), g, flip)
    o.write()


# --- tubular joints -------------------------------------------------------------------------------

class Joint:
    """Braces on a chord along x, each in the plane y = 0 and leaning by cot = CT: brace number b
    has its foot where the cylinders cut, a ring of 16 exact points, and stands in a frame on the
    upper or lower half of the chord between x1 and x2."""

    def __init__(self, o, chord, brace):
        self.o, self.chord, self.brace = o, chord, brace
        for k in range(1, 9):  # heights of the foot, each 11.25 degrees
            s = sin(radians(11.25 * k))
            q = o.follows(f"Q{k}", v("R") * "R" - v("S") * "S" * s**2)
            o.follows(f"Z{k}", str(q) + "^.5")
        self.z = [v("R")] + [v(f"Z{k}") for k in range(1, 9)]

    def foot(self, step, x0, cot, csc, mirror):
        """Point `step` of 32; 0 is the side of larger x."""
        c, s = turn(11.25 * step)
        fold = step % 32
        k = min(fold % 16, 16 - fold % 16)
        z = self.z[k]
        x = x0 + (z * cot if cot else ZERO) + v("S") * c * csc if csc else x0 + v("S") * c
        return mirror((x, v("S") * s, z))

    def stand(self, name, x1, x2, x0=ZERO, cot=None, csc=None, mirror=lambda p: p, flip=False):
        """The frame and the feet; returns the foot as edges of four pieces each."""
        o = self.o
        c, s = turn(45)
        top = v("R")

        def frame(k):  # 16 points from the middle of the side x2 over y = R
            k %= 16
            if k > 8:
                p = frame(16 - k)
                return (p[0], -p[1], p[2])
            if k <= 2:
                return (x2, *((ZERO, top), (top * s, top * c), (top, ZERO))[k])
            if k >= 6:
                return (x1, *((top, ZERO), (top * s, top * c), (ZERO, top))[k - 6])
            part = (k - 2) / 4
            return (x2 * (1 - part) + x1 * part, top, ZERO)

        def arc(k):  # the middle of the frame's piece from point k, where it is round
            for side, x, first in ((0, x2, -2), (1, x1, 6)):
                j = (k - first) % 16
                if j < 4:
                    a = 90 - 22.5 - 45 * j if side == 0 else -(90 - 22.5 - 45 * j)
                    u, w = turn(a)
                    return (x, top * -w, top * u)
            return None

        feet, spokes = [], []
        for k in range(16):
            p, q = self.foot(2 * k, x0, cot, csc, lambda at: at), frame(k)
            spokes.append(o.edge(mirror(p), mirror(q), 5, self.between(f"{name}{k}", p, q, k,
                                                                      mirror)))
            feet.append(o.edge(self.foot(2 * k, x0, cot, csc, mirror),
                               self.foot(2 * k + 2, x0, cot, csc, mirror), 2,
                               self.foot(2 * k + 1, x0, cot, csc, mirror)))
        for k in range(16):
            m = arc(k)
            rim = o.edge(mirror(frame(k)), mirror(frame(k + 1)), 2, mirror(m) if m else None)
            o.quad(spokes[k], spokes[(k + 1) % 16], feet[k], rim, self.chord, flip)
        return [feet[4 * j:4 * j + 4] for j in range(4)]

    def between(self, name, p, q, k, mirror):
        """The point on the chord half way between two; none on the crown, which is straight."""
        if k % 8 == 0:
            return None
        k = min(k, 16 - k)
        sign = 1 if str(p[1])[0] != "-" else -1
        name = name.rstrip("0123456789") + str(k)
        if sign > 0 and not any(n == "N" + name for n, _, _ in self.o.variables):
            y = self.o.follows("Y" + name, p[1] + q[1])
            z = self.o.follows("H" + name, p[2] + q[2])
            n = self.o.follows("M" + name, y * ("Y" + name) + z * ("H" + name))
            self.o.follows("N" + name, str(n) + "^.5")
        y = v("Y" + name) * "R" / ("N" + name) * sign
        return mirror(((p[0] + q[0]) * .5, y, v("H" + name) * "R" / ("N" + name)))

    def tube(self, feet, top, x0, cot, csc, mirror, flip=False):
        """The brace from its foot up; top(a): its end at a degrees."""
        o = self.o
        for j in range(4):
            a, b = 90 * j, 90 * j + 90
            ends = [o.edge(self.foot(8 * i % 32, x0, cot, csc, mirror), mirror(top(90 * (i % 4))), 10,
                           factor=1.4) for i in (j, j + 1)]
            crest = o.edge(mirror(top(a)), mirror(top(b % 360)), 8, mirror(top(a + 45)))
            o.quad(feet[j], crest, ends[0], ends[1], self.brace, flip)

    def chordend(self, x1, x2):
        """The whole tube between two places along x."""
        for k in range(8):
            self.strip(k, x1, x2, 6)

    def strip(self, k, x1, x2, spaces):
        o, pieces = self.o, []
        for x in (x1, x2):
            a, b, m = (self.onchord(x, t) for t in (45 * k, 45 * k + 45, 45 * k + 22.5))
            pieces.append((a, b, o.edge(a, b, 2, m)))
        (a, b, first), (c, d, second) = pieces
        o.quad(first, second, o.edge(a, c, spaces), o.edge(b, d, spaces), self.chord, True)

    @staticmethod
    def onchord(x, degrees):
        p = round_point(v("R"), degrees)
        return (x, p[0], p[1])

    def lowerhalf(self, x1, x2):
        """From y = R below to y = -R, under a frame."""
        o = self.o
        xs = [x2 * (1 - k / 4) + x1 * (k / 4) for k in range(5)]
        sides = [[o.edge((a, y, ZERO), (b, y, ZERO), 2) for a, b in zip(xs, xs[1:])]
                 for y in (v("R"), -v("R"))]
        arcs = [[o.edge(self.onchord(x, 180 + 45 * k), self.onchord(x, 225 + 45 * k), 2,
                        self.onchord(x, 202.5 + 45 * k)) for k in range(4)] for x in (x2, x1)]
        o.quad(sides[1], sides[0], arcs[0], arcs[1], self.chord)


def joint_variables(more):
    return [("R", "300", "Radius of the chord"), ("S", "160", "Radius of the brace, below R"),
            ("L", "2400", "Length of the chord"), *more, ("TR", "16", "Thickness of the chord"),
            ("TS", "10", "Thickness of the brace")]


def upright(height):
    def top(a):
        c, s = turn(a)
        return (v("S") * c, v("S") * s, height)
    return top


def t_joint(name="tubular T joint", description="T joint of two tubes", braces=1):
    o = Object(name, description, joint_variables([("H", "900", "Height of the brace's end")]))
    j = Joint(o, o.group("Chord", v("TR")), o.group("Brace", v("TS")))
    x = o.follows("XF", v("S") + v("R", .6))
    for mirror, flip in ((lambda p: p, False), (lambda p: (p[0], p[1], -p[2]), True))[:braces]:
        feet = j.stand("A", -x, x, mirror=mirror, flip=flip)
        j.tube(feet, upright(v("H")), ZERO, None, None, mirror, flip)
    if braces == 1:
        j.lowerhalf(-x, x)
    j.chordend(x, v("L", .5))
    j.chordend(v("L", -.5), -x)
    o.write()


def x_joint():
    t_joint("tubular X joint", "X joint of a tube with two braces in line", 2)


def k_joint():
    o = Object("tubular K joint", "K joint of a chord with two leaning braces",
               joint_variables([("G", "100", "Gap between the braces"),
                                ("DX", "1", "Run of a brace along the chord"),
                                ("DZ", "1.2", "Its rise"), ("LB", "1100", "Length of a brace")]))
    cot = o.follows("CT", v("DX") / "DZ")
    o.follows("CQ", number(1) + cot * "CT")
    o.follows("CS", "CQ^.5")
    x0 = o.follows("XA", v("G", .5) + v("S") * "CS" - v("R") * "CT")
    x2 = o.follows("XF", v("G") + v("S") * "CS" * 2 + v("R", .4))
    j = Joint(o, o.group("Chord", v("TR")), o.group("Brace", v("TS")))

    def top(a):
        c, s = turn(a)
        return (x0 + v("LB") * "CT" / "CS" + v("S") * c / "CS", v("S") * s,
                v("LB") / "CS" - v("S") * c * "CT" / "CS")
    for mirror, flip in ((lambda p: p, False), (lambda p: (-p[0], p[1], p[2]), True)):
        feet = j.stand("A", ZERO, x2, x0, "CT", "CS", mirror, flip)
        j.tube(feet, top, x0, "CT", "CS", mirror, flip)
    j.lowerhalf(ZERO, x2)
    j.lowerhalf(-x2, ZERO)
    j.chordend(x2, v("L", .5) + x2)
    j.chordend(v("L", -.5) - x2, -x2)
    o.write()


# --- frames ---------------------------------------------------------------------------------------

def tube_group(o, name, d, t, letter):
    """A tube of outer diameter d and thickness t."""
    inner = o.follows(letter + "X1", v(d) - v(t, 2))
    area = o.follows(letter + "X2", f"{d}^2*.785398163-{inner}^2*.785398163")
    second = o.follows(letter + "X3", f"{d}^4*.0490873852-{inner}^4*.0490873852")
    modulus = o.follows(letter + "X4", second * 2 / d)
    return o.group(name, area, 0, 0, second, modulus, second, modulus, second * 2, modulus * 2)


def girder_group(o, name, h, tw, b, tf, letter):
    """A doubly symmetric I section: web h x tw, flanges b x tf."""
    arm = o.follows(letter + "X1", v(h, .5) + v(tf, .5))
    area = o.follows(letter + "X2", v(h) * tw + v(b) * tf * 2)
    strong = o.follows(letter + "X3", f"{h}^3*{tw}/12+{arm}^2*{b}*{tf}*2+{tf}^3*{b}/6")
    weak = o.follows(letter + "X4", f"{b}^3*{tf}/6+{tw}^3*{h}/12")
    torsion = o.follows(letter + "X5", f"{tf}^3*{b}*2/3+{tw}^3*{h}/3")
    half = o.follows(letter + "X6", v(h, .5) + v(tf))
    return o.group(name, area, 0, 0, strong, strong / str(half), weak, weak * 2 / b, torsion,
                   torsion / tf)


def truss_bay():
    o = Object("truss bay", "Bay of a four-legged truss tower with X bracing",
               [("B1", "6000", "Width below"), ("B2", "5000", "Width above"),
                ("H", "6000", "Height"), ("DL", "600", "Diameter of the legs"),
                ("TL", "20", "Thickness of the legs"), ("DB", "300", "Diameter of the braces"),
                ("TB", "10", "Thickness of the braces")])
    leg, brace = tube_group(o, "Legs", "DL", "TL", "L"), tube_group(o, "Braces", "DB", "TB", "B")
    o.follows("BB", v("B1") + v("B2"))
    corners = [(1, 1), (-1, 1), (-1, -1), (1, -1)]

    def at(k, b, z):
        x, y = corners[k % 4]
        return (v(b, .5 * x), v(b, .5 * y), z)
    # The diagonals of a face cut each other at the part B1/(B1+B2) of the height.
    o.follows("BM", v("B1") * "B2" * 2 / "BB")
    for k in range(4):
        o.beam(at(k, "B1", ZERO), at(k, "B2", v("H")), 2, leg)
        for b, z in (("B1", ZERO), ("B2", v("H"))):
            o.beam(at(k, b, z), at(k + 1, b, z), 2, brace)
        (x1, y1), (x2, y2) = corners[k], corners[(k + 1) % 4]
        cross = (v("BM", .25 * (x1 + x2)), v("BM", .25 * (y1 + y2)), v("H") * "B1" / "BB")
        for j in (k, k + 1):
            o.beam(at(j, "B1", ZERO), cross, 1, brace)
            o.beam(cross, at(j, "B2", v("H")), 1, brace)
    o.write()


def deck_frame():
    o = Object("deck frame", "Deck on girders and beams, on four columns",
               [("LX", "9000", "Length"), ("LY", "6000", "Width"), ("HC", "4000", "Height"),
                ("TP", "8", "Thickness of the deck"), ("HG", "600", "Web height of the girders"),
                ("TG", "10", "Web thickness of the girders"),
                ("BG", "250", "Flange width of the girders"),
                ("FG", "16", "Flange thickness of the girders"),
                ("HB", "300", "Web height of the beams"), ("TB", "8", "Web thickness of the beams"),
                ("BB", "150", "Flange width of the beams"),
                ("FB", "10", "Flange thickness of the beams"),
                ("DC", "400", "Diameter of the columns"), ("TC", "12",
                                                           "Thickness of the columns")])
    deck = o.group("Deck", v("TP"))
    girder = girder_group(o, "Girders", "HG", "TG", "BG", "FG", "G")
    beam = girder_group(o, "Beams", "HB", "TB", "BB", "FB", "B")
    column = tube_group(o, "Columns", "DC", "TC", "C")

    def at(i, j, z=v("HC")):
        return (v("LX", i / 3), v("LY", j / 2), z)
    for i in range(3):
        for j in range(2):
            o.plate(at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1), 3, 3, deck)
    for j in range(3):
        for i in range(3):
            o.beam(at(i, j), at(i + 1, j), 3, beam if j == 1 else girder)
    for i in range(4):
        for j in range(2):
            o.beam(at(i, j), at(i, j + 1), 3, girder if i in (0, 3) else beam)
    for i in (0, 3):
        for j in (0, 2):
            o.beam(at(i, j, ZERO), at(i, j), 4, column)
    o.write()


if __name__ == "__main__":
    for make in (plate_with_hole, pad_eye, manhole, bracket, panel_bay, i_girder, tank_ring, cone,
                 pipe_bend, t_joint, x_joint, k_joint, truss_bay, deck_frame):
        make()
