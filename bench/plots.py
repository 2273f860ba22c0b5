"""Curves as pictures and as text, by gnuplot."""

import subprocess


def drawn(curve, terminal):
    """What gnuplot makes of it: bytes of a picture, or of text."""
    peers = list(curve.peers.items())
    lines = [
        f"set terminal {terminal}",
        f'set title "{curve.title}"',
        f'set xlabel "{curve.x}"',
        f'set ylabel "{curve.y}"',
        "set key outside bottom center horizontal width 2",
        "set logscale x 2",
        "set yrange [0:*]",
        "set grid",
    ]
    for number, (_, points) in enumerate(peers):
        rows = "\n".join(f"{x} {y}" for x, y in points)
        lines.append(f"$peer{number} << end\n{rows}\nend")
    plotted = [
        f'$peer{number} with linespoints linewidth 2 title "{name}"'
        for number, (name, _) in enumerate(peers)
    ]
    lines.append("plot " + ", ".join(plotted))
    script = "\n".join(lines).encode()
    return subprocess.run(["gnuplot"], input=script, check=True, stdout=subprocess.PIPE).stdout


def as_picture(curve):
    return drawn(curve, "pngcairo size 900,540")


def as_text(curve):
    text = drawn(curve, "dumb size 78,24").decode().replace("\f", "")
    return "\n".join(line.rstrip() for line in text.strip("\n").split("\n"))
