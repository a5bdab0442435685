#!/usr/bin/python3
"""How alike two WAV renderings of one song are.

usage: similarity.py A.wav B.wav [SECONDS]

Prints the correlation of their log spectrograms, both lengths in seconds and the ratio of the lengths. A spectrogram
has 48 bands, log-spaced from 60 Hz to 8 kHz, and a frame every 50 ms. Each band's mean over time is taken out, so
what is compared is when which band rises and falls: the notes, their pitch and their timing, not the tone of a player.
The renderings may be a few frames apart: the best shift counts."""
import struct
import sys

import numpy as np

BANDS = 48
LOWEST, HIGHEST = 60, 8000      # Hz
HOP = 0.05                      # seconds
MAX_SHIFT = 4                   # frames
FLOOR = 1e-6                    # power below which everything is silence

# (format tag, bits) -> numpy type, value of silence, full scale
LAYOUTS = {
    (1, 8): ('u1', 128, 128),
    (1, 16): ('<i2', 0, 2**15),
    (1, 32): ('<i4', 0, 2**31),
    (3, 32): ('<f4', 0, 1),
}


def read_chunks(data):
    position = 12
    while position + 8 <= len(data):
        size = struct.unpack_from('<I', data, position + 4)[0]
        yield data[position:position + 4], data[position + 8:position + 8 + size]
        position += 8 + size + size % 2


def read_wav(path):
    """The rate and the mono mix, full scale 1."""
    with open(path, 'rb') as file:
        data = file.read()
    chunks = dict(reversed(list(read_chunks(data))))
    if data[:4] != b'RIFF' or b'fmt ' not in chunks or b'data' not in chunks:
        raise ValueError(f'{path}: not a WAV file')
    tag, channels, rate, _, _, bits = struct.unpack_from('<HHIIHH', chunks[b'fmt '])
    if tag == 0xFFFE:           # extensible: the tag stands at the head of the sub-format
        tag = struct.unpack_from('<H', chunks[b'fmt '], 24)[0]
    if (tag, bits) not in LAYOUTS:
        raise ValueError(f'{path}: format {tag} with {bits} bits')
    kind, silence, full = LAYOUTS[tag, bits]
    whole = len(chunks[b'data']) // (bits // 8 * channels) * channels
    values = np.frombuffer(chunks[b'data'], kind, whole).astype(np.float32)
    return rate, ((values - silence) / full).reshape(-1, channels).mean(axis=1)


def spectrogram(rate, mono):
    size = 4096 if rate > 24000 else 2048
    hop = int(rate * HOP)
    mono = np.pad(mono, (0, max(0, size + hop - len(mono))))
    frames = np.lib.stride_tricks.sliding_window_view(mono, size)[::hop]
    edges = (np.geomspace(LOWEST, HIGHEST, BANDS + 1) * size / rate).astype(int)
    low, high = edges[:-1], np.maximum(edges[1:], edges[:-1] + 1)
    window = np.hanning(size).astype(np.float32)
    bands = np.empty((len(frames), BANDS), np.float32)
    for i, frame in enumerate(frames):
        power = np.abs(np.fft.rfft(frame * window)) ** 2
        summed = np.concatenate([[0], np.cumsum(power)])
        bands[i] = summed[high] - summed[low]
    return np.log10(bands + FLOOR)


def correlation(a, b):
    a, b = a - a.mean(axis=0), b - b.mean(axis=0)
    scale = np.sqrt((a * a).sum() * (b * b).sum())
    return float((a * b).sum() / scale) if scale > 0 else 0.0


def compare(path_a, path_b, seconds=0):
    """Correlation from -1 to 1, and the two lengths in seconds."""
    (rate_a, a), (rate_b, b) = read_wav(path_a), read_wav(path_b)
    lengths = len(a) / rate_a, len(b) / rate_b
    if seconds:
        a, b = a[:int(rate_a * seconds)], b[:int(rate_b * seconds)]
    a, b = spectrogram(rate_a, a), spectrogram(rate_b, b)
    count = min(len(a), len(b))
    a, b = a[:count], b[:count]
    best = -1.0
    for shift in range(-MAX_SHIFT, MAX_SHIFT + 1):
        early, late = a[max(0, shift):count + min(0, shift)], b[max(0, -shift):count - max(0, shift)]
        if len(early) > 1:
            best = max(best, correlation(early, late))
    return best, *lengths


if __name__ == '__main__':
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    similarity, length_a, length_b = compare(sys.argv[1], sys.argv[2], float(sys.argv[3]) if sys.argv[3:] else 0)
    print(f'{similarity:.3f}  {length_a:.1f} s  {length_b:.1f} s  {length_a / max(length_b, 1e-9):.3f}')
