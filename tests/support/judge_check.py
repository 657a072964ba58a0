"""Judges the rows of `check` anew, from the JSON state and the words of the script alone: see script/judge_check."""

import collections
import concurrent.futures
import json
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

import mpmath
import numpy as np

from random_requests import request

jobs, seconds = 2, 60
high = 120  # dB: losses above it are compared to a thousandth; in a pass band those of 50 dB too much not at all
Wide, WideComplex = np.longdouble, np.clongdouble
pi = np.arccos(Wide(-1))
labels = {"filter_kind": ["LC", "Microwave", "Active RC", "IIR Digital"], "filter_type": ["Low pass", "High pass", "Band pass"],
          "passband_type": ["Max. flat", "Equal ripple", "Functional", "Sloping"],
          "stopband_type": ["Monotonic", "Equal min", "Placer", "Specified"],
          "bandpass_form": ["Conventional", "Parametric", "Matching"]}


z_fields = ("z_transform_type", "sampling", "frequency_transformation", "lower_passband", "upper_passband")
digital_edits = re.compile(r"^(do|choose) .*(Flat|Add|Delete|Resample|conv|undo|redo|rcl)", re.M)


# What was asked

def forms_of(script):
    """The design forms that the script closed with ok: kind, and fields as they add up; of a digital filter those of the z step."""
    kept, stored, forms, kind, hertz = {"Filter": {}, "FIR Filter": {}}, {}, [], None, 1.0
    for line in script.splitlines():
        verb, *words = shlex.split(line) or [""]
        if verb == "choose":
            kind = next((k for k in kept if " ".join(words).startswith(f"Design > {k} >")), None)
            fields, depth = dict(kept.get(kind, {})), 0
        elif verb == "file" and kind and words[0] in stored:
            fields = dict(stored[words[0]])
        elif verb == "file" and forms and forms[-1][1].get("save_design") == "yes":
            stored.setdefault(words[0], forms[-1][1])
        elif verb == "set" and kind is None and forms and words[0] in z_fields:
            forms[-1][1][f"z_{words[0]}"] = words[1]
        elif verb == "set" and words[0] == "Frequency unit":
            hertz = {"KHz": 1e3, "MHz": 1e6, "GHz": 1e9}.get(words[1], 1.0)
        elif kind and verb == "set" and depth == 0:
            choices = labels.get(words[0], [words[1]])
            value = choices[int(words[1]) - 1] if words[1].isdigit() and 0 < int(words[1]) <= len(choices) else words[1]
            fields |= {words[0]: value} if value in choices and value != "x" else {}  # no number
        elif kind and verb == "row":
            fields[listed] = fields.get(listed, []) + [[float(w) for w in words]]
        elif kind and verb == "button":
            depth, listed = depth + 1, words[0]
        elif kind and verb == "ok" and depth > 0:
            depth -= 1
        elif kind and verb in ("ok", "cancel"):
            if verb == "ok":
                kept[kind] = fields
                forms.append((kind, fields | {"hertz": hertz}))
            kind = None
    return forms


def asked_of_filter(fields):
    """The fields as far as they count, in SI units, by the names of `spec`; and what rows come of them."""
    of = lambda name, standard=0.0: float(fields.get(name, standard))
    hz = lambda name, counts: of(name) * fields["hertz"] * counts
    kind, type_, passband, stopband, form = (fields.get(name, values[0]) for name, values in labels.items())
    low, band, lines, ladder = type_ == "Low pass", type_ == "Band pass", kind == "Microwave", kind in ("LC", "Microwave")
    usual = passband in ("Max. flat", "Equal ripple")
    zeros_due = stopband == "Equal min" and (usual or passband == "Functional" and not band)
    estimated, matching = usual and stopband == "Monotonic" or zeros_due, band and usual and form == "Matching"
    a = {"implementation": "PMAI"[labels["filter_kind"].index(kind)], "passbandType": labels["passband_type"].index(passband),
         "filterType": 1 if low else 4 if band else 2, "flatLoss": of("flat_loss") * (passband == "Sloping"),
         "lowerPassEdge": hz("lower_passband", not low), "upperPassEdge": hz("upper_passband", low or band),
         "lowerStopEdge": hz("lower_stopband", estimated and not low),
         "upperStopEdge": hz("upper_stopband", estimated and (low or band)),
         "sampleFrequency": hz("fq_or_fs", lines or kind == "IIR Digital") * (1 + lines),
         "centerFrequency": hz("center_frequency", low and kind in ("LC", "Active RC")),
         "predistortionQ": abs(of("q_predistortion")) * ladder}
    r1, r2 = (of("r1", 50), of("r2", 50)) if ladder else (1.0, 0.0)
    r2 = 1.001 * r1 if a["predistortionQ"] and r1 == r2 else r2
    a["sourceResistance"], a["loadResistance"] = (r1, r2) if r1 else (r2 or 50.0, 0.0)
    shift, width, stop, top = a["centerFrequency"], a["upperPassEdge"], a["upperStopEdge"], a["sampleFrequency"] / 2 or np.inf
    if shift:
        a |= {"filterType": 4, "passbandType": 2, "lowerPassEdge": shift - width, "upperPassEdge": shift + width,
              "lowerStopEdge": (shift - stop) * bool(stop), "upperStopEdge": (shift + stop) * bool(stop)}
    typed = of("band_edge_loss")
    reflected = (typed / 100) ** 2 if typed < 0 else 10 ** (-typed / 10) if typed > 9.5 else None
    a["loss"] = typed if reflected is None else -10 * np.log10(1 - reflected)
    a["slope"], a["given"] = of("loss_slope") if passband == "Sloping" else None, passband == "Functional"
    given_e = shift or a["given"] and fields.get("function_type", "E") == "E"  # its poles stay with a single termination
    a["q"] = a["predistortionQ"] * (not (passband == "Sloping" or given_e and not a["loadResistance"]))
    edges = [a["lowerPassEdge"], top if type_ == "High pass" else a["upperPassEdge"]]
    a["pass"] = sorted(edge or 2 * top - max(edges) for edge in edges) if matching and lines else edges
    below = (0.0, a["lowerStopEdge"]), of("upper_stop_loss" if shift else "lower_stop_loss")
    above = (a["upperStopEdge"], top), of("upper_stop_loss")
    a["stop"] = [below] * bool(a["lowerStopEdge"] > 0 and not matching) + [above] * bool(a["upperStopEdge"] > 0)
    return a


def asked_of_digital(fields):
    """The same with the bands that the z step makes of them."""
    a, of = asked_of_filter(fields), lambda name: float(fields.get(f"z_{name}", 0))
    given, kind = of("sampling"), fields.get("z_frequency_transformation", "None")
    fs = a["sampleFrequency"] if a["given"] or not given else given if given > 1 else 1 / given
    top = fs / 2
    a |= {"fs": fs, "pass": [edge or (0.0 if n == 0 else top) for n, edge in enumerate(a["pass"])]}
    if a["filterType"] == 2:
        a["pass"][1] = top
    a["stop"] = [((band[0], top) if band[1] == a["sampleFrequency"] / 2 else band, loss) for band, loss in a["stop"]]
    a["passes"] = [a["pass"]]
    if a["filterType"] != 1 or kind == "None":
        return a
    lower, upper = of("lower_passband") * fields["hertz"], of("upper_passband") * fields["hertz"]
    th, w1, w2 = (np.pi * f / fs for f in (a["upperPassEdge"], lower, upper))
    images = {
        "Lowpass-to-lowpass": lambda w: np.tan(th) / np.tan(w2) * np.tan(w / 2),
        "Lowpass-to-highpass": lambda w: np.tan(th) * np.tan(w1) / np.tan(w / 2),
        "Lowpass-to-bandpass": lambda w: abs(np.tan(th) / np.tan(w2 - w1) * (np.cos(w2 + w1) / np.cos(w2 - w1) - np.cos(w)) / np.sin(w)),
        "Lowpass-to-bandreject": lambda w: abs(np.tan(th) * np.tan(w2 - w1) * np.sin(w) / (np.cos(w) - np.cos(w2 + w1) / np.cos(w2 - w1)))}
    wide = {"Lowpass-to-lowpass": [[0.0, upper]], "Lowpass-to-highpass": [[lower, top]], "Lowpass-to-bandpass": [[lower, upper]],
            "Lowpass-to-bandreject": [[0.0, lower], [upper, top]]}[kind]
    a["passes"], stops = wide, []
    middle = np.arccos(np.cos(w2 + w1) / np.cos(w2 - w1)) * fs / 2 / np.pi
    for (edge, _), loss in a["stop"]:
        level = np.tan(np.pi * edge / fs)

        def image(near, far):
            """Where the low-pass frequency is `edge`, between a frequency where it is below and one where it is above."""
            for _ in range(200):
                half = (near + far) / 2
                near, far = (half, far) if images[kind](2 * np.pi * half / fs) < level else (near, half)
            return half

        if kind == "Lowpass-to-lowpass":
            stops.append(((image(upper, top), top), loss))
        elif kind == "Lowpass-to-highpass":
            stops.append(((0.0, image(lower, 0.0)), loss))
        elif kind == "Lowpass-to-bandpass":
            stops += [((0.0, image(lower, 0.0)), loss), ((image(upper, top), top), loss)]
        else:
            stops.append(((image(lower, middle), image(upper, middle)), loss))
    a["stop"] = stops
    return a


def asked_of_fir(fields):
    """Its bands with their values and ripples, and its shape, in Hz."""
    of, hertz, single = lambda name: float(fields.get(name, 0)), fields["hertz"], np.float32
    type_, table = fields.get("fir_type", "Filter"), fields.get("Details", [])
    shape, top = fields.get("Shaped passband", []) if type_ == "Filter" else [], of("upper_frequency")
    rows = {"Filter": table[:([r[1] for r in table] + [0]).index(0)], "Differentiator": [[0, top, of("slope"), 1]],
            "Hilbert transformer": [[of("lower_frequency"), top, 1, 1]]}[type_]
    return {"fs": hertz * (2 * rows[-1][1] if type_ == "Filter" and rows else of("sampling_frequency")),
            "bands": [[r[0] * hertz, r[1] * hertz, *r[2:]] for r in rows], "slope": type_ == "Differentiator",
            "shape": sorted((float(single(f * hertz)), float(single(10) ** (single(gain) / single(20)))) for f, gain in shape),
            "ripples": type_ == "Filter" and fields.get("specification_type", "Ripple in dB") == "Ripple in dB"}


def request_of(state, script):
    """The last form of the script whose request is that of what is shown."""
    fir = state["segment"] == "fir"
    if state["segment"] == "iir":
        filters = [asked_of_digital(fields) for kind, fields in forms_of(script) if kind == "Filter" and fields.get("filter_kind") == "IIR Digital"]
        return filters[-1] if filters and state["design"] == "done" else None
    wanted, asked_of, shown = ("FIR Filter", asked_of_fir, "fir") if fir else ("Filter", asked_of_filter, "spec")
    shown, same = state.get(shown, {}), lambda x, y: x == y if isinstance(x, str) else np.isclose(x, y, rtol=1e-9, atol=0)
    all_asked = [asked_of(fields) for kind, fields in forms_of(script) if kind == wanted and shown]
    return next((a for a in all_asked[::-1] if all(same(shown[k], v) for k, v in a.items() if k in shown)), None)


# Losses, in wide numbers; `hertz` is an array

slots = {0: "R", 1: "L", 2: "C", 3: "LC", 13: "LCC", 14: "LCL"}
networks = {  # letters of the cells, and between which nodes each lies: 0 ground, 1 load side, 2 source side
    4: ("LCCL", "13 12 30 32"), 5: ("CLLC", "13 12 30 32"), 6: ("CLCLC", "13 12 12 30 32"), 7: ("LCLCL", "13 12 34 40 32"),
    8: ("LCCLCL", "13 14 30 40 42 32"), 9: ("LCCLCCL", "13 14 30 45 50 42 32"),
    15: ("RLRCLRCR", "13 14 12 42 50 35 50 32"), 16: ("RLRCLRCR", "13 12 12 12 34 45 50 32")}


def line_attenuation(fs, q, norm):
    """Of lines whose stubs have the quality q at the angular frequency norm."""
    within = [Wide(1e-12), Wide(1)]
    for _ in range(80):
        alpha = np.sqrt(within[0] * within[1])
        stub = np.tanh(alpha + 1j * Wide(norm) / 2 / fs)
        within[int(stub.imag / stub.real < q)] = alpha
    return alpha


def circuit_loss(circuit, q, norm):
    """Between the terminations; without two of them up to a constant. Negative elements have losses like positive ones."""
    branches, fs, alpha = circuit["branches"], Wide(circuit["fs"]), Wide(0)
    if len(branches) < 2 or branches[0]["id"] != 0:
        return None
    r1, r2 = (Wide(b["values"][0]) if b["id"] == 0 else Wide(0) for b in (branches[0], branches[-1]))
    if fs and q:
        alpha = line_attenuation(fs, q, norm)

    def loss(hertz):
        w = 2 * pi * np.asarray(hertz, Wide)
        line = alpha + 1j * w / 2 / fs if fs else 0
        unit = np.sinh(line) / np.cosh(line) if fs else 1j * w
        lost = 2 * pi * Wide(circuit["fnorm"]) / Wide(q) if q and not fs else 0

        def admittance(letter, value):
            x = Wide(value) * unit + abs(value) * lost if letter != "R" else value + 0 * unit
            return x if letter == "C" else 1 / x

        v, i = 1 + 0 * unit, 1 / r1 + 0 * unit
        for b in branches[1:-1] if r2 else branches[1:]:
            if b["id"] in slots:
                y = [admittance(*element) for element in zip(slots[b["id"]], b["values"])]
                around = [lambda y1, y2: y1 + y2, lambda y1, y2: 1 / (1 / y1 + 1 / y2)]
                inner, outer = around[::-1] if b["series"] else around
                y = y[0] if len(y) == 1 else outer(*y) if len(y) == 2 else outer(inner(*y[:2]), y[2])
                v, i = (v + i / y, i) if b["series"] else (v, i + v * y)
            elif b["id"] == 10:
                z, c, s = Wide(b["values"][0]), np.cosh(line), np.sinh(line)
                v, i = v * c + z * i * s, i * c + v * s / z
            else:
                letters, nodes = networks[b["id"]]
                y = np.zeros((6, 6, *np.shape(unit)), WideComplex)
                for letter, value, (j, k) in zip(letters, b["values"] + b["values"][:1], nodes.split()):
                    ends = np.eye(6)[int(j)] - np.eye(6)[int(k)]
                    y += np.multiply.outer(np.outer(ends, ends), admittance(letter, value))
                for n in range(int(max(nodes)), 2, -1):
                    y = y - y[:, n, None] * y[n] / y[n, n]
                source = -(i + y[1, 1] * v) / y[1, 2]
                v, i = source, y[2, 1] * v + y[2, 2] * source
        by_voltage = branches[-1]["branch"] % 2 == 0
        return 20 * np.log10(np.abs((v + r2 * i) * np.sqrt(r1 / r2) / 2 if r2 else v if by_voltage else i))

    loss.ratio, loss.places = float(r2 / r1), []
    for b in branches:
        cells = list(zip((slots.get(b["id"]) or networks.get(b["id"], " ")[0]), b["values"]))
        roots = [np.sqrt(abs(x * y)) for letter, x in cells for other, y in cells if letter + other == "LC" and x * y]
        loss.places += [np.arctan(1 / r) * fs / pi if fs else 1 / r / 2 / pi for r in roots]
    return loss


def function_loss(spec, transfer, q):
    """20 log10 1/|H| with H = level prod(s - zero)/prod(s - pole)."""
    fs, norm = Wide(spec["sampleFrequency"]), Wide(transfer["norm_frequency"])
    edge, unit = (np.tan(norm / 2 / fs), 1) if fs else (norm, norm)
    zeros, poles = (np.array([complex(*r) for r in transfer[of]], WideComplex) / unit for of in ("zeros", "poles"))
    level = 20 * np.log10(abs(Wide(transfer["level"]))) + 20 * (len(zeros) - len(poles)) * np.log10(Wide(unit))

    alpha = line_attenuation(fs, q, norm) if fs and q else 0

    def loss(hertz):
        w = 2 * pi * np.asarray(hertz, Wide)
        s = 1j * (np.tan(w / 2 / fs) if fs else w) / edge + (1 / Wide(q) if q and not fs else 0)
        s = np.tanh(alpha + 1j * w / 2 / fs) / edge if q and fs else s
        return sum(20 * np.log10(np.abs(s - r)) for r in poles) - sum(20 * np.log10(np.abs(s - r)) for r in zeros) - level

    places = [abs(r.imag) + k * abs(r.real) for r in poles for k in np.linspace(-4, 4, 41)] + [abs(r.imag) for r in zeros]
    loss.places = [fs / pi * np.arctan(w * edge) if fs else w * norm / 2 / pi for w in places]
    return loss


def highest(f, band, places=()):
    """The highest value of f in a band in Hz, by a dense grid in a variable in which it is bounded, closed in on."""
    start, end = (Wide(b) for b in band)
    scale, last = (start, Wide(1e9)) if np.isinf(end) else (end, Wide(1))
    near = np.concatenate([[0], np.logspace(-9, -1.5, 40), -np.logspace(-9, -1.5, 40)])
    grid = scale * np.tan(np.linspace(np.arctan(start / scale), np.arctan(last), 20001, dtype=Wide))
    points = np.concatenate([grid, [start, end], *(p * (1 + near) for p in places)])
    points = np.unique(points[(points >= start) & (points <= end) & np.isfinite(points)])
    values = np.concatenate([[-np.inf], np.nan_to_num(f(points), nan=-np.inf), [-np.inf]])
    peaks = np.flatnonzero((values[1:-1] >= values[:-2]) & (values[1:-1] >= values[2:]))
    best = values.max()
    for k in peaks[np.argsort(-values[peaks + 1])][:300]:  # a level response has as many as half its taps
        low, up = points[max(k - 1, 0)], points[min(k + 1, len(points) - 1)]
        for _ in range(9):
            closer = np.linspace(low, up, 25, dtype=Wide)
            at = np.nan_to_num(f(closer), nan=-np.inf)
            n = at.argmax()
            best, low, up = max(best, at[n]), closer[max(n - 1, 0)], closer[min(n + 1, 24)]
    return np.float64(best)


# Rows: what, band, asked, reached, margin; and what rounding may do to the value reached

def loss_rows(state, asked):
    q = state["transfer"].get("used_q", 0)
    function = function_loss(state["spec"], state["transfer"], q)
    circuit = state["circuit"] if state["segment"] == "passive" else None
    loss = circuit_loss(circuit, q, state["transfer"]["norm_frequency"]) if circuit else function
    loss = loss or (lambda hertz: np.full(np.shape(hertz), np.nan))
    available, wanted, band = getattr(loss, "ratio", 0.0), asked["loadResistance"] / asked["sourceResistance"], asked["pass"]
    places = function.places + getattr(loss, "places", [])
    most = lambda f, band: highest(f, band, places)
    least = lambda f, band: -highest(lambda hertz: -f(hertz), band, places)
    rows, open_level = [], circuit and not available
    if asked["slope"] is not None:
        about = lambda hertz: loss(hertz) - asked["slope"] * np.log2(Wide(1) * hertz / band[0])
        strip, floor = most(about, band) - least(about, band), least(loss, band) - asked["flatLoss"]
        rows.append(("slope", band, asked["loss"], strip, asked["loss"] - strip))
        if not open_level:
            margin = floor if floor <= asked["loss"] else -floor
            rows.append(("flat loss", band, asked["flatLoss"], floor + asked["flatLoss"], margin))
    elif not asked["given"]:  # a function has no losses that were asked for
        flat = least(loss if open_level else function, band)
        reached = most(loss, band) - flat
        rows.append(("pass band", band, asked["loss"], reached, asked["loss"] - reached))
        for stop, needed in asked["stop"]:
            reached = least(loss, stop) - flat
            rows += [("stopband", stop, needed, reached, reached - needed)] * (needed > 0)
    if circuit and (wanted or available):
        rows.append(("terminations", None, wanted, available, -abs(available - wanted)))
    return rows


def form_functions(iir):
    """H(w), w = z^-1, of every form there is by its coefficients, with its poles: the largest magnitude of one."""
    def ratio(rows, w):
        return np.prod([sum(Wide(c) * w**k for k, c in enumerate(row)) for row in rows] + [1 + 0 * w], axis=0)

    def largest(denominators):
        return max([abs(r) for d in denominators for r in mpmath.polyroots(np.trim_zeros(list(map(mpmath.mpmathify, d)), "b"), maxsteps=500, extraprec=2000)
                    if len(np.trim_zeros(d, "b")) > 1] + [0])

    def lattice(w):
        forward, backward = 1 + 0 * w, [1 + 0 * w]
        for k in iir["lattice"]["multipliers"]:
            forward, last = forward + Wide(k) * w * backward[-1], forward
            backward.append(w * backward[-1] + Wide(k) * last)
        return sum(Wide(tap) * b for tap, b in zip(iir["lattice"]["taps"], backward)) / forward

    def denominator_of_lattice():
        with mpmath.workdps(60):  # multipliers next to 1 cost digits
            d = [mpmath.mpf(1)]
            for k in map(mpmath.mpf, iir["lattice"]["multipliers"]):
                d = [x + k * y for x, y in zip([*d, 0], [0, *d[::-1]])]
            return d

    c, forms = iir["cascade"], {}
    forms["cascade"] = lambda w: Wide(c["front"]) * ratio(c["numerator"], w) / ratio(c["denominator"], w), largest(c["denominator"])
    if "parallel" in iir:
        p = iir["parallel"]
        forms["parallel"] = (lambda w: Wide(p["constant"]) + sum((Wide(al) + Wide(be) * w) / (1 + Wide(ga) * w + Wide(de) * w * w) for al, be, ga, de in p["blocks"]),
                             largest([[1, *b[2:]] for b in p["blocks"]]))
    if "lattice" in iir:
        forms["lattice"] = lattice, largest([denominator_of_lattice()])
    if "direct" in iir:
        n, d = (iir["direct"][part] for part in ("numerator", "denominator"))
        forms["direct"] = lambda w: ratio([n], w) / ratio([[1, *d[1:]]], w), largest([[1, *d[1:]]])
    if "allpass" in iir:
        a = iir["allpass"]
        sign = -1 if a["output"] == "difference" else 1
        chain = lambda rows, w: np.prod([(Wide(a2) + Wide(a1) * w + w * w) / (1 + Wide(a1) * w + Wide(a2) * w * w) if a2 else (Wide(a1) + w) / (1 + Wide(a1) * w)
                                         for a1, a2 in rows] + [1 + 0 * w], axis=0)
        forms["allpass"] = (lambda w: (chain(a["first"], w) + sign * chain(a["second"], w)) / 2,
                            largest([[1, *row] for row in a["first"] + a["second"]]))
    return forms


def digital_rows(state, asked):
    """By the roots of H on the unit circle; of a truncated filter by the coefficients of each form."""
    iir, fs = state["iir"], Wide(state["iir"]["fs"])
    zeros, poles = (np.array([complex(*r) for r in iir[of]], WideComplex) for of in ("zeros", "poles"))
    level = 20 * np.log10(abs(Wide(iir["zero_multiplier"]) / Wide(iir["pole_multiplier"])))
    angles = [abs(np.angle(r)) + k * (1 - abs(r)) for r in poles for k in np.linspace(-4, 4, 41)] + [abs(np.angle(r)) for r in zeros]
    places = [a * fs / 2 / pi for a in angles]
    on_circle = lambda hertz: np.exp(2j * pi * np.asarray(hertz, Wide) / fs)

    def loss(hertz):
        z = on_circle(hertz)
        return sum((20 * np.log10(np.abs(z - r)) for r in poles), 0 * np.abs(z)) - sum(20 * np.log10(np.abs(z - r)) for r in zeros) - level

    if iir["bits"] >= 50:
        return rows_of_loss(asked, loss, places, np.float64(max(np.abs(poles))))
    loss_of = lambda form: lambda hertz: -20 * np.log10(np.abs(form(1 / on_circle(hertz))))
    return [row for form, radius in form_functions(iir).values() for row in rows_of_loss(asked, loss_of(form), places, np.float64(radius))]


def rows_of_loss(asked, loss, places, radius):
    """Of a filter whose poles lie outside the unit circle there are no losses."""
    rows = []
    if radius < 1 and asked["slope"] is not None:
        band = asked["pass"]
        about = lambda hertz: loss(hertz) - asked["slope"] * np.log2(Wide(1) * hertz / band[0])
        strip = highest(about, band, places) + highest(lambda hertz: -about(hertz), band, places)
        floor = -highest(lambda hertz: -loss(hertz), band, places) - asked["flatLoss"]
        rows += [("slope", band, asked["loss"], strip, asked["loss"] - strip),
                 ("flat loss", band, asked["flatLoss"], floor + asked["flatLoss"], floor if floor <= asked["loss"] else -floor)]
    elif radius < 1 and not asked["given"]:
        for band in asked["passes"]:
            reached = highest(loss, band, places)
            rows.append(("pass band", band, asked["loss"], reached, asked["loss"] - reached))
        for stop, needed in asked["stop"]:
            reached = -highest(lambda hertz: -loss(hertz), stop, places)
            rows += [("stopband", stop, needed, reached, reached - needed)] * (needed > 0)
    if asked["slope"] is not None or not asked["given"]:
        rows.append(("stability", None, 1, radius, 1 - radius))
    return rows


def fir_rows(state, asked):
    function = state["fir"]["functions"][state["fir"]["shown"] - 1]
    taps, fs, rows = np.array(function["impulse"]) / 10 ** (function.get("gain", 0) / 20), asked["fs"], []
    delays, noise = (len(taps) - 1) / 2 - np.arange(len(taps)), 1e-15 * abs(taps).sum()
    wave = np.cos if function["symmetry"] == "even" else np.sin
    whole = function["symmetry"] == "none"  # judged by its magnitude
    points, levels = np.array(asked["shape"] or np.zeros((0, 2))).T
    ripple_of = lambda d: 20 * np.log10((1 + d) / np.maximum(1 - d, 0))
    for start, end, value, ripple in asked["bands"]:
        def deviation(hertz):
            f = np.asarray(hertz, Wide)
            wanted, weight = (f / fs * value, f / fs if value >= 1e-4 else 1) if asked["slope"] else (value, 1)
            if len(points) and value:
                wanted = np.where(f < points[-1], value * np.interp(f.astype(float), points, levels), levels[-1])
                wanted = np.where(f < points[0], value * f / fs, wanted)
                weight = np.where(wanted >= 1e-3, wanted, 1)
            if whole:
                angles = 2 * pi * f / fs
                return abs(np.hypot(sum(h * np.cos(angles * d) for h, d in zip(taps, delays)),
                                    sum(h * np.sin(angles * d) for h, d in zip(taps, delays))) - abs(wanted)) / weight
            amplitude = sum(h * wave(2 * pi * f / fs * d) * (2 if d else 1) for h, d in zip(taps, delays) if d >= 0)
            return abs(amplitude - wanted) / weight

        d = highest(deviation, (max(start, 1e-9 * fs * asked["slope"]), end), points)
        if not asked["ripples"]:
            rows.append(("deviation", (start, end), None, d, 0.0, noise))
        elif value:
            db = ripple_of(d)
            rows.append(("pass band", (start, end), ripple, db, ripple - db, ripple_of(d + noise) - db))
        else:
            db = -20 * np.log10(d)
            rows.append(("stopband", (start, end), ripple, db, db - ripple, 20 * np.log10(1 + noise / d)))
    return rows


def rows_of(state, asked):
    return {"fir": fir_rows, "iir": digital_rows}.get(state["segment"], loss_rows)(state, asked)


def differences(state, script, tally):
    """What is wrong with the rows of the state, in words."""
    if state["segment"] == "iir" and digital_edits.search(script):  # that move the request, or end it
        tally["edited"] += 1
        return []
    shown, asked = state.get("check"), request_of(state, script)
    if state["segment"] == "fir" and (state["fir"]["method"] != "equal ripple" or shown is None and len(state["fir"]["functions"]) > 1):
        tally["no bands"] += 1
        return ["rows of no bands"] if shown else []
    if shown is None and asked is not None and not rows_of(state, asked):  # a given function: nothing was asked
        asked = None
    if shown is None or asked is None:
        tally["no request"] += 1
        return [] if shown is asked else ["rows missing" if shown is None else "rows without a request in the script"]
    if state["segment"] not in ("fir", "iir") and state["transfer"]["level"] is None:  # roots of so many rad/s that no number holds it
        tally["no level"] += 1
        return []
    true = rows_of(state, asked)
    if [r["what"] for r in shown] != [r[0] for r in true]:
        return [f"rows {[r['what'] for r in shown]} instead of {[r[0] for r in true]}"]
    wrong, number = [], lambda v: np.inf if v is None else v
    for row, (what, band, wanted, reached, margin, *noise) in zip(shown, true):
        in_db, value, said = what not in ("deviation", "terminations", "stability"), number(row["reached"]), [row["asked"], *(row["band"] or [])]
        off, share = abs(value - reached), 1e-3 if in_db and reached > high else 1e-6
        close = max(1e-5 if in_db else 1e-12, share * abs(reached)) + sum(noise)
        tolerance = max(1e-6 * in_db, 1e-6 * abs(wanted or 0))
        beyond = value == reached or np.isnan(reached) and np.isinf(value)
        beyond = beyond or in_db and what != "stopband" and min(value, reached) > wanted + 50
        met = bool(margin > 0 if what == "stability" else margin >= -tolerance)  # a pole on the circle is one too far out
        tally[f"{what}, {'met' if met else 'missed'}"] += 1
        tally["largest"] = max(tally["largest"], off if in_db and off <= close and reached < high else 0.0)
        if off > close and not beyond or met != row["met"] and abs(margin + tolerance) > 1e-8 + sum(noise):
            wrong.append(f"{what} {row['band']}: {row['reached']} shown, {'met' if row['met'] else 'missed'}; it is {reached}")
        if not np.allclose([number(v) for v in said], [float(number(v)) for v in (wanted, *(band or []))], rtol=1e-9, atol=1e-15):
            wrong.append(f"{what}: {row['asked']} in {row['band']}, it was {wanted} in {band}")
        if row["margin"] is not None and abs(abs(row["margin"]) - abs(row["asked"] - value)) > 1e-12 * (1 + abs(value)):
            wrong.append(f"{what}: margin {row['margin']}")
    return wrong


def run(program, script):
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "request.kav").write_text(script, encoding="utf-8")
        line = ["nice", program, "-C", folder, "--keep-going", "-o", f"{folder}/report.txt", "--json", f"{folder}/state.json"]
        subprocess.run([*line, f"{folder}/request.kav"], capture_output=True, timeout=seconds, stdin=subprocess.DEVNULL)
        return json.loads((pathlib.Path(folder) / "state.json").read_text(encoding="utf-8"))


def judge(program, seed, number):
    script, tally = request(seed, number), collections.Counter()
    with np.errstate(all="ignore"):
        return number, differences(run(program, script), script, tally), tally


def main():
    if len(sys.argv) not in (2, 3, 4):
        sys.exit("usage: script/judge_check PROGRAM [N] [SEED]")
    program = str(pathlib.Path(sys.argv[1]).resolve(strict=True))
    count, seed = (int(word) for word in (sys.argv[2:] + ["500", "11"][len(sys.argv) - 2:]))
    tally, bad, largest = collections.Counter(), 0, 0.0
    with concurrent.futures.ProcessPoolExecutor(jobs) as pool:
        for number, wrong, found in pool.map(judge, [program] * count, [seed] * count, range(count)):
            largest, bad = max(largest, found.pop("largest", 0.0)), bad + bool(wrong)
            tally += found
            for line in wrong:
                print(f"request {number}: {line}", flush=True)
    print(f"{count} requests of seed {seed}, {bad} disagree, largest difference {largest:.1e} dB")
    print("  " + ", ".join(f"{what} {times}" for what, times in sorted(tally.items())))
    sys.exit(1 if bad else 0)


if __name__ == "__main__":
    main()
