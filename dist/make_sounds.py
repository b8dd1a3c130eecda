#!/usr/bin/env python3
"""Makes the ring sounds shipped beside the program: short sine-tone
chimes, written by this script (no third-party audio)."""
import math, struct, wave, os

RATE = 11025
here = os.path.dirname(os.path.abspath(__file__))

def tone(notes, name):
    frames = bytearray()
    for freq, ms in notes:
        n = int(RATE * ms / 1000)
        for i in range(n):
            env = min(1.0, i / 200.0) * min(1.0, (n - i) / 400.0)
            v = 0.45 * env * math.sin(2 * math.pi * freq * i / RATE) if freq else 0.0
            frames += struct.pack('<h', int(v * 32767))
    with wave.open(os.path.join(here, name), 'wb') as w:
        w.setnchannels(1); w.setsampwidth(2); w.setframerate(RATE)
        w.writeframes(bytes(frames))

tone([(880, 120), (0, 40), (1175, 160)], 'ring.wav')        # a ring to the peer
tone([(660, 90), (880, 90), (1320, 180)], 'connect.wav')    # session up
tone([(1320, 90), (880, 90), (660, 180)], 'close.wav')      # session closed
tone([(988, 150), (0, 60), (988, 150)], 'request.wav')     # a caller
tone([(330, 250), (262, 300)], 'error.wav')                 # session failed
tone([(1568, 70), (0, 50), (1568, 70), (0, 50), (1568, 70)], 'alert.wav')
