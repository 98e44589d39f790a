#!/usr/bin/python3
"""Plays the product's short sounds and writes them to data/sounds/ as 48 kHz, 16-bit, mono WAV.

    make_sounds.py            write every file
    make_sounds.py --check    play them again and compare with the committed files; exit 1 and name what is wrong

The same program gives the same bytes on every run.
"""

import argparse
import io
import pathlib
import sys
import wave

import numpy as np

from instruments import RATE, bell, bowl, breath, marimba, note, onset, seconds, woodblock

FOLDER = pathlib.Path(__file__).resolve().parents[2] / "data" / "sounds"
PEAK_DBFS = -9.0
SHORT, COMPLETION, BREATH = 0.6, 3.0, 4.2  # the longest each kind may be, in seconds
SHRILL_HZ, SHRILL_SHARE = 5000.0, 0.01     # how little of a sound's energy may lie above SHRILL_HZ


def mixed(length, *strokes):
    """Strokes laid over each other: each is (seconds from the start, level, samples)."""
    out = np.zeros(len(seconds(length)))
    for start, level, samples in strokes:
        first = int(round(start * RATE))
        last = min(first + len(samples), len(out))
        out[first:last] += level * samples[: last - first]
    return out


def swap():
    return mixed(0.42, (0.0, 0.8, marimba(note("E4"), 0.3, 0.32, seed=11)),
                 (0.085, 1.0, marimba(note("A4"), 0.335, 0.4, seed=12)))


def rise():
    return mixed(0.5, (0.0, 0.75, marimba(note("G4"), 0.4, 0.4, seed=21)),
                 (0.1, 1.0, marimba(note("D5"), 0.4, 0.48, seed=22)))


def pause():
    return mixed(0.34, (0.0, 1.0, marimba(note("D4"), 0.34, 0.26, seed=31)),
                 (0.0, 0.35, woodblock(note("D5"), 0.2, seed=32)))


def close():
    return mixed(0.46, (0.0, 0.8, marimba(note("D5"), 0.3, 0.3, seed=41)),
                 (0.095, 1.0, marimba(note("G4"), 0.365, 0.36, seed=42)))


def complete():
    return mixed(1.6, (0.0, 0.75, bell(note("C5"), 1.6, 1.2)), (0.16, 0.75, bell(note("E5"), 1.44, 1.2)),
                 (0.32, 0.9, bell(note("G5"), 1.28, 1.3)), (0.32, 0.5, marimba(note("C4"), 0.8, 0.7, seed=51)))


def opening():
    return mixed(0.24, (0.0, 0.7, woodblock(note("A5"), 0.2, seed=61)),
                 (0.012, 0.8, marimba(note("A4"), 0.22, 0.22, seed=62)))


def mira_complete():
    return mixed(2.9, (0.0, 1.0, bowl(note("F3"), 2.9, 2.9)), (0.45, 0.42, bell(note("C5"), 2.45, 1.8)),
                 (0.9, 0.36, bell(note("F5"), 2.0, 1.7)))


# Mira's cues say by their direction what to do: up to breathe in, down to breathe out, one note to stay. Their
# notes are those of her completion's chord, so that a session sounds of a piece.


def mira_inhale():
    return mixed(0.56, (0.0, 0.7, marimba(note("C4"), 0.4, 0.42, seed=121)),
                 (0.15, 1.0, marimba(note("F4"), 0.41, 0.5, seed=122)), (0.15, 0.22, bell(note("F4"), 0.41, 0.7)))


def mira_sip():
    return mixed(0.36, (0.0, 1.0, marimba(note("A4"), 0.36, 0.4, seed=131)), (0.0, 0.22, bell(note("A4"), 0.36, 0.6)))


def mira_hold():
    return mixed(0.58, (0.0, 1.0, bowl(note("A3"), 0.58, 2.4)), (0.0, 0.35, bell(note("A4"), 0.58, 1.6)))


def mira_exhale():
    return mixed(0.58, (0.0, 0.9, marimba(note("F4"), 0.4, 0.42, seed=141)),
                 (0.0, 0.18, bell(note("F4"), 0.4, 0.6)), (0.15, 1.0, marimba(note("C4"), 0.43, 0.55, seed=142)))


def mira_rest():
    return mixed(0.5, (0.0, 1.0, marimba(note("F3"), 0.5, 0.6, seed=151)), (0.0, 0.2, bowl(note("F3"), 0.5, 1.2)))


def pump_needs_you():
    return mixed(0.58, (0.0, 1.0, bell(note("E5"), 0.58, 0.5)), (0.17, 0.9, bell(note("E5"), 0.41, 0.55)),
                 (0.0, 0.4, woodblock(note("E5"), 0.2, seed=81)), (0.17, 0.35, woodblock(note("E5"), 0.2, seed=82)))


def clock_bell():
    return mixed(2.9, (0.0, 1.0, bell(note("A3"), 2.9, 2.6)), (0.0, 0.3, bowl(note("A3"), 2.9, 2.7)))


def breath_in():
    return breath(4.0, 420.0, 900.0, 0.68, seed=111)


def breath_out():
    return breath(4.0, 760.0, 300.0, 0.3, seed=112)


# resource name: (how it is played, the longest it may be)
SOUNDS = {
    "interface-swap": (swap, SHORT),
    "interface-rise": (rise, SHORT),
    "interface-pause": (pause, SHORT),
    "interface-close": (close, SHORT),
    "interface-complete": (complete, COMPLETION),
    "interface-open": (opening, SHORT),
    "mira-complete": (mira_complete, COMPLETION),
    "mira-inhale": (mira_inhale, SHORT),
    "mira-sip": (mira_sip, SHORT),
    "mira-hold": (mira_hold, SHORT),
    "mira-exhale": (mira_exhale, SHORT),
    "mira-rest": (mira_rest, SHORT),
    "pump-needs-you": (pump_needs_you, SHORT),
    "clock-bell": (clock_bell, COMPLETION),
    "breath-in": (breath_in, BREATH),
    "breath-out": (breath_out, BREATH),
}


def finished(samples):
    """Both ends brought to nothing, the mean removed, the peak at PEAK_DBFS; as 16-bit integers."""
    time = seconds(len(samples) / RATE)
    tail = min(0.06, time[-1] / 3.0)
    edges = onset(time, 0.002) * onset(time[-1] - time, tail)
    samples = samples * edges
    samples = (samples - np.sum(samples) / np.sum(edges) * edges)
    return np.round(samples / np.max(np.abs(samples)) * 10.0 ** (PEAK_DBFS / 20.0) * 32767.0).astype("<i2")


def wav_bytes(samples):
    buffer = io.BytesIO()
    with wave.open(buffer, "wb") as out:
        out.setnchannels(1)
        out.setsampwidth(2)
        out.setframerate(RATE)
        out.writeframes(samples.tobytes())
    return buffer.getvalue()


def faults(path, longest):
    """What is wrong with the file as it stands, as sentences. Reads the file itself, not our memory of it."""
    with wave.open(str(path), "rb") as sound:
        if (sound.getnchannels(), sound.getsampwidth(), sound.getframerate()) != (1, 2, RATE):
            return ["is not 48 kHz, 16-bit, mono"]
        samples = np.frombuffer(sound.readframes(sound.getnframes()), "<i2") / 32768.0
    found = []
    peak = 20.0 * np.log10(max(np.max(np.abs(samples)), 1e-9))
    if abs(peak - PEAK_DBFS) > 0.05:
        found.append(f"peaks at {peak:.2f} dBFS, not {PEAK_DBFS:.1f}")
    if len(samples) / RATE > longest:
        found.append(f"is {len(samples) / RATE:.2f} s long, more than {longest:.2f}")
    edge = max(np.max(np.abs(samples[:4])), np.max(np.abs(samples[-48:])))
    if samples[0] != 0.0 or samples[-1] != 0.0 or edge > 0.002:
        found.append(f"clicks at an end ({edge:.4f})")
    if abs(np.mean(samples)) > 0.0005:
        found.append(f"has an offset of {np.mean(samples):.4f}")
    energy = np.abs(np.fft.rfft(samples)) ** 2
    shrill = np.sum(energy[np.fft.rfftfreq(len(samples), 1.0 / RATE) > SHRILL_HZ]) / np.sum(energy)
    if shrill > SHRILL_SHARE:
        found.append(f"has {shrill:.1%} of its energy above {SHRILL_HZ:.0f} Hz")
    return found


def check(folder):
    """The number of files in `folder` that are wrong; each is named on standard error."""
    wrong = {}
    for name, (play, longest) in SOUNDS.items():
        path = folder / f"{name}.wav"
        if not path.is_file():
            wrong[path.name] = ["is missing"]
            continue
        try:
            found = faults(path, longest)
        except (wave.Error, EOFError) as error:
            found = [f"cannot be read: {error}"]
        if path.read_bytes() != wav_bytes(finished(play())):
            found.append("differs from what this program plays")
        if found:
            wrong[path.name] = found
    for path in folder.glob("*.wav"):
        if path.stem not in SOUNDS:
            wrong[path.name] = ["is not one of this program's sounds"]
    for name, found in sorted(wrong.items()):
        print(f"{name}: {'; '.join(found)}", file=sys.stderr)
    return len(wrong)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true", help="compare with the committed files instead of writing")
    parser.add_argument("--folder", type=pathlib.Path, default=FOLDER, help="where the files stand")
    arguments = parser.parse_args()
    if arguments.check:
        return 1 if check(arguments.folder) else 0
    arguments.folder.mkdir(parents=True, exist_ok=True)
    for name, (play, _) in SOUNDS.items():
        (arguments.folder / f"{name}.wav").write_bytes(wav_bytes(finished(play())))
    return 0


if __name__ == "__main__":
    sys.exit(main())
