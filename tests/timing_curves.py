"""Timing curves: cubic Béziers from (0, 0) to (1, 1), solved by bisection to the last bit."""

from fractions import Fraction

CONTROL_POINTS = {
    "linear": (0.0, 0.0, 1.0, 1.0),
    "default": (0.25, 0.1, 0.25, 1.0),
    "easeIn": (0.42, 0.0, 1.0, 1.0),
    "easeOut": (0.0, 0.0, 0.58, 1.0),
}

_STEPS = 80


def _bezier(first, second, t):
    """One coordinate of the curve, for control values `first` and `second`."""
    rest = 1 - t
    return 3 * rest * rest * t * first + 3 * rest * t * t * second + t * t * t


def progress(name, fraction):
    """How far a value has come when `fraction` of its time has passed."""
    if fraction <= 0:
        return 0.0
    if fraction >= 1:
        return 1.0
    x1, y1, x2, y2 = (Fraction(value).limit_denominator(100) for value in CONTROL_POINTS[name])
    x = Fraction(fraction)
    lo, hi = 0, 1 << _STEPS  # in units of 2 to the -80
    while hi - lo > 1:
        middle = (lo + hi) // 2
        if _bezier(x1, x2, Fraction(middle, 1 << _STEPS)) < x:
            lo = middle
        else:
            hi = middle
    return float(_bezier(y1, y2, Fraction(lo, 1 << _STEPS)))


def between(start, end, part):
    return start + (end - start) * part
