"""The instruments the sounds are played on: struck wood, a small bell, a bowl and breath.

Every function returns float64 samples at RATE, mono, unscaled. A struck body is a sum of decaying sine modes
(modal synthesis: N. H. Fletcher and T. D. Rossing, "The Physics of Musical Instruments", 2nd ed., chapters 19
and 21): a marimba bar is tuned so that its second mode is four times and its third about ten times the first;
a small bell has hum, prime, tierce, quint and nominal at 0.5, 1, 1.2, 1.5 and 2.
"""

import numpy as np

RATE = 48_000


def seconds(length):
    """The instants of `length` seconds of samples."""
    return np.arange(int(round(length * RATE))) / RATE


def note(name):
    """The frequency in Hz of a note such as "A4" or "F#3", equal temperament with A4 = 440 Hz."""
    steps = {"C": -9, "D": -7, "E": -5, "F": -4, "G": -2, "A": 0, "B": 2}
    semitones = steps[name[0]] + name.count("#") + 12 * (int(name[-1]) - 4)
    return 440.0 * 2.0 ** (semitones / 12.0)


def noise(length, seed):
    """White noise in -1...1. Raw PCG64 output, because NumPy promises that stream across its versions."""
    raw = np.random.PCG64(seed).random_raw(len(seconds(length)))
    return (raw >> np.uint64(11)).astype(np.float64) / 2.0**52 - 1.0


def shaped(signal, response):
    """`signal` through the zero-phase filter whose gain at f Hz is `response(f)`."""
    padded = len(signal) + RATE // 10
    spectrum = np.fft.rfft(signal, padded)
    return np.fft.irfft(spectrum * response(np.fft.rfftfreq(padded, 1.0 / RATE)), padded)[: len(signal)]


def onset(time, rise):
    """Half a cosine from 0 to 1 over `rise` seconds: a felt mallet has no edge."""
    return 0.5 - 0.5 * np.cos(np.pi * np.clip(time / rise, 0.0, 1.0))


def modes(length, frequency, partials, rise):
    """A struck body. `partials` holds (ratio, level, seconds until the mode has fallen by 60 dB)."""
    time = seconds(length)
    body = np.zeros_like(time)
    for ratio, level, ring in partials:
        body += level * np.exp(-6.91 * time / ring) * np.sin(2.0 * np.pi * frequency * ratio * time)
    return damped(body * onset(time, rise))


def damped(stroke):
    """A stroke whose last 40 ms sink to nothing, so that its end is never heard inside a longer sound."""
    time = seconds(len(stroke) / RATE)
    return stroke * onset(time[-1] - time, 0.04)


def thump(length, cutoff, fall, seed):
    """The mallet's own touch: dull noise that is gone after `fall` seconds."""
    dull = shaped(noise(length, seed), lambda f: 1.0 / (1.0 + (f / cutoff) ** 4))
    time = seconds(length)
    dull = dull / np.max(np.abs(dull))
    return dull * np.exp(-6.91 * time / fall) * onset(time, 0.0015)


def marimba(frequency, length, ring=0.45, seed=1):
    """A soft mallet on a wooden bar."""
    bar = modes(length, frequency, [(1.0, 1.0, ring), (3.98, 0.16, ring * 0.35), (9.9, 0.03, ring * 0.12)], 0.004)
    return bar + 0.12 * thump(length, 900.0, 0.05, seed)


def woodblock(frequency, length, seed=2):
    """A small hollow block, hardly pitched."""
    block = modes(length, frequency, [(1.0, 1.0, 0.11), (1.52, 0.45, 0.08), (2.71, 0.14, 0.05)], 0.0025)
    return block + 0.22 * thump(length, 1400.0, 0.04, seed)


def bell(frequency, length, ring=1.3):
    """A small bell struck with leather; a pair of primes a hair apart makes it live."""
    partials = [(0.5, 0.35, ring * 1.1), (1.0, 1.0, ring), (1.0023, 0.35, ring), (1.2, 0.22, ring * 0.6),
                (1.5, 0.12, ring * 0.45), (2.0, 0.28, ring * 0.4), (2.67, 0.06, ring * 0.2)]
    return modes(length, frequency, partials, 0.005)


def bowl(frequency, length, ring):
    """A bronze bowl with a padded stick: slow to speak, slow to go, with a gentle beat."""
    partials = [(1.0, 1.0, ring), (1.0041, 0.6, ring), (2.76, 0.32, ring * 0.6), (2.768, 0.2, ring * 0.6),
                (5.2, 0.05, ring * 0.25)]
    return modes(length, frequency, partials, 0.03)


def breath(length, from_hz, to_hz, swell, seed):
    """Air through a relaxed mouth: noise whose soft band glides between two frequencies.

    `swell` is where the loudest moment lies, as a share of the length.
    """
    air = noise(length, seed)
    time = seconds(length) / length
    low, high = (shaped(air, lambda f, c=c: band(f, c)) for c in (from_hz, to_hz))
    glide = onset(time, 1.0)
    rising = onset(time, swell)
    falling = onset(1.0 - time, 1.0 - swell)
    return (low * np.cos(0.5 * np.pi * glide) + high * np.sin(0.5 * np.pi * glide)) * (rising * falling) ** 1.2


def band(frequencies, centre):
    """A wide, round band: a Gaussian of 0.65 octaves' deviation around `centre`, nothing below 80 Hz."""
    octaves = np.log2(np.maximum(frequencies, 1.0) / centre)
    return np.exp(-0.5 * (octaves / 0.65) ** 2) * (frequencies > 80.0)
