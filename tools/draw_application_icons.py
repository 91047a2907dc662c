#!/usr/bin/env python3
"""Draws the icons of the sample applications into a folder, as NAME.svg.

    tools/draw_application_icons.py resources/applications/icons/hicolor/scalable/apps

Each is a glyph on a rounded square of 29 units, shaded from one colour at the top to another at the bottom. In a glyph,
W stands for the attributes of a white shape, L for those of a white line and P for the lower colour of the plate.
Needs nothing but Python.
"""
import sys
from pathlib import Path

AMBER = 'fill="#ffa63d"'
PREFIX = "org.lumora.samples."

# name: upper colour, lower colour, glyph
ICONS = {
    "Books": ("#ffb155", "#f0802b",
              '<path W d="M13.9 8.6c-2-1.3-5-1.6-7.9-1.2v12.4c2.9-.4 5.9 0 7.9 1.3z"/>'
              '<path W d="M15.1 8.6c2-1.3 5-1.6 7.9-1.2v12.4c-2.9-.4-5.9 0-7.9 1.3z"/>'),
    "Browser": ("#52c7ff", "#1a78e6",
                '<circle L cx="14.5" cy="14.5" r="8.4"/><ellipse L cx="14.5" cy="14.5" rx="3.6" ry="8.4"/>'
                '<path L d="M6.1 14.5h16.8M7.5 10h14M7.5 19h14"/>'),
    "Calculator": ("#5f6b7a", "#343d49",
                   '<rect W x="7" y="6" width="15" height="5" rx="1.4"/>'
                   + "".join(f'<circle {AMBER if x == 20 else "W"} cx="{x}" cy="{y}" r="1.7"/>'
                             for y in (14.5, 18.5, 22.5) for x in (9, 14.5, 20))),
    "Calendar": ("#ff7468", "#e0413b",
                 '<path W d="M7 12h15v8.5a2 2 0 0 1-2 2H9a2 2 0 0 1-2-2z"/>'
                 '<path W d="M7 10.6V9a2 2 0 0 1 2-2h11a2 2 0 0 1 2 2v1.6z"/><path L d="M10.5 5.4v3M18.5 5.4v3"/>'
                 + "".join(f'<circle fill="P" cx="{x}" cy="{y}" r="1.1"/>'
                           for y in (15, 19) for x in (10.5, 14.5, 18.5))),
    "Camera": ("#98a2b0", "#5c6673",
               '<path W d="M7.5 9.5h2.6l1.5-2.3h5.8l1.5 2.3h2.6a2 2 0 0 1 2 2v8a2 2 0 0 1-2 2h-14a2 2 0 0 1-2-2v-8a2 '
               '2 0 0 1 2-2z"/>'
               '<circle fill="P" cx="14.5" cy="15.2" r="4.2"/><circle W cx="14.5" cy="15.2" r="2.5"/>'),
    "Clock": ("#4b5563", "#1f2630",
              '<circle W cx="14.5" cy="14.5" r="9"/>'
              '<path fill="none" stroke="P" stroke-width="1.6" stroke-linecap="round" d="M14.5 8.6v5.9l4 2.4"/>'
              '<circle fill="#f0802b" cx="14.5" cy="14.5" r="1.2"/>'),
    "Contacts": ("#d3a77d", "#a5744a",
                 '<circle W cx="14.5" cy="11" r="4"/><path W d="M6.8 22.2c.5-4.3 3.6-6 7.7-6s7.2 1.7 7.7 6z"/>'),
    "Files": ("#6fb5ff", "#2f7be8",
              '<path W d="M6 10.2V9a1.8 1.8 0 0 1 1.8-1.8h4.3l2 2h7.1A1.8 1.8 0 0 1 23 11v.2z"/>'
              '<path W d="M6 12.4h17v7.8a1.8 1.8 0 0 1-1.8 1.8H7.8A1.8 1.8 0 0 1 6 20.2z"/>'),
    "Fitness": ("#ff6f9d", "#e22f66",
                '<path W d="M14.5 22.6C9 18.6 5.8 15.6 5.8 11.9c0-2.7 2-4.7 4.5-4.7 1.7 0 3.3.9 4.2 2.5.9-1.6 '
                '2.5-2.5 4.2-2.5 2.5 0 4.5 2 4.5 4.7 0 3.7-3.2 6.7-8.7 10.7z"/>'
                '<path fill="none" stroke="P" stroke-width="1.4" stroke-linejoin="round" d="M6 14.3h4.6l1.6-3 2.5 '
                '5.4 1.7-2.4H23"/>'),
    "Keys": ("#8fa0b8", "#55657e",
             '<circle fill="none" stroke="#fff" stroke-width="2.2" cx="10.6" cy="14.5" r="3.7"/>'
             '<path fill="none" stroke="#fff" stroke-width="2.2" stroke-linecap="round" d="M14.3 14.5h8M19 '
             '14.5v3M22.3 14.5v2.2"/>'),
    "Mail": ("#48b1ff", "#1767e8",
             '<path W d="M5.5 9.6 14.5 16l9-6.4v9.7a1.7 1.7 0 0 1-1.7 1.7H7.2a1.7 1.7 0 0 1-1.7-1.7z"/>'
             '<path W d="M6 8.3A1.7 1.7 0 0 1 7.2 8h14.6a1.7 1.7 0 0 1 1.2.3l-8.5 6z"/>'),
    "Maps": ("#7fd68a", "#35a65a",
             '<path fill="none" stroke="#fff" stroke-opacity=".55" stroke-width="2.6" d="M-1 23.5 10 19l8 4.5 '
             '12-6M20 30l4.5-12L21 -1"/>'
             '<path W d="M13 20.5c-3.6-4.6-5.2-6.9-5.2-9.3a5.2 5.2 0 0 1 10.4 0c0 2.4-1.6 4.7-5.2 9.3z"/>'
             '<circle fill="P" cx="13" cy="11.2" r="2"/>'),
    "Messages": ("#58d6b4", "#1d9d86",
                 '<path W d="M14.5 6.5c5.3 0 9 3.1 9 7.2s-3.7 7.2-9 7.2c-1 0-2-.1-2.9-.4-1.1 1-2.7 1.7-4.6 1.9.7-1 '
                 '1.1-2.1 1.2-3.3-1.7-1.3-2.7-3.2-2.7-5.4 0-4.1 3.7-7.2 9-7.2z"/>'
                 + "".join(f'<circle fill="P" cx="{x}" cy="13.7" r="1.2"/>' for x in (10.6, 14.5, 18.4))),
    "Music": ("#ff7ac0", "#d8317f",
              '<path W d="M11 8.8 21 6.5v11.2a2.8 2.4 0 1 1-1.8-2.3v-5.3l-6.4 1.5v7.6a2.8 2.4 0 1 1-1.8-2.3z"/>'),
    "Notes": ("#ffd966", "#f2b01e",
              '<rect W x="7" y="6" width="15" height="17" rx="1.8"/>'
              '<path fill="none" stroke="P" stroke-width="1.4" stroke-linecap="round" d="M9.8 10.5h9.4M9.8 '
              '14.2h9.4M9.8 17.9h5.8"/>'),
    "Phone": ("#7be07f", "#2fae4c",
              '<path W d="M9.4 6.6c.7-.6 1.7-.5 2.2.2l2 2.9c.5.7.4 1.5-.2 2.1l-1.3 1.2c.9 1.7 2.2 3 3.9 '
              '3.9l1.2-1.3c.6-.6 1.4-.7 2.1-.2l2.9 2c.7.5.8 1.5.2 2.2-1.2 1.4-2.5 2.6-4.5 '
              '2.2-5-1-9.7-5.7-10.7-10.7-.4-2 .8-3.3 2.2-4.5z"/>'),
    "Photos": ("#5fd0c5", "#21909c",
               '<rect W x="5.5" y="7" width="18" height="15" rx="2"/><circle fill="#ffc83d" cx="10.3" cy="11.4" '
               'r="1.9"/>'
               '<path fill="P" d="m7.5 20 4.6-5 2.9 2.9 3.3-4.4 3.7 6.5z"/>'),
    "Podcasts": ("#b78bff", "#7a3fe0",
                 '<path fill="none" stroke="#fff" stroke-width="2" stroke-linecap="round" d="M6.5 17.5v-2.7a8 8 0 0 '
                 '1 16 0v2.7"/>'
                 '<rect W x="5.7" y="15.5" width="4.4" height="7" rx="1.7"/><rect W x="18.9" y="15.5" width="4.4" '
                 'height="7" rx="1.7"/>'),
    "Recorder": ("#ff8a6b", "#d9412f",
                 '<path L d="M6 13.2v2.6M9.4 10.2v8.6M12.8 6.8v15.4M16.2 9.4v10.2M19.6 11.7v5.6M23 13.3v2.4"/>'),
    "Reminders": ("#8ea2ff", "#4a5be0",
                  "".join(f'<circle L cx="8.6" cy="{y}" r="1.7"/><path L d="M13 {y}h9.5"/>'
                          for y in (8.7, 14.5, 20.3))),
    "Shares": ("#44566c", "#1c2a3c",
               '<path fill="none" stroke="#59d98e" stroke-width="2" stroke-linecap="round" stroke-linejoin="round" '
               'd="m5.8 19.5 5-5.5 4 3 8.2-9"/>'
               '<path fill="none" stroke="#fff" stroke-opacity=".35" d="M5.5 23h18"/>'),
    "Terminal": ("#4a4f58", "#1d2025",
                 '<path fill="none" stroke="#fff" stroke-width="2" stroke-linecap="round" stroke-linejoin="round" '
                 'd="m7.5 9 5 4.5-5 4.5M14.5 20h7"/>'),
    "Translator": ("#5ad1d8", "#1b8fa8",
                   '<path L d="M6 9.5h9M10.5 7.5v2M13.2 9.5c-.7 4-3.2 7-6.7 8.5M8 11.5c1 2.5 2.8 4.3 5 5.3"/>'
                   '<path L d="m14 22.5 4.2-10 4.2 10M15.5 19.2h5.4"/>'),
    "Videos": ("#7d8cff", "#3b3fc9",
               '<rect W x="5.5" y="9" width="12" height="11" rx="2"/><path W d="m18.8 13 4.7-3v9l-4.7-3z"/>'),
    "Weather": ("#69bdff", "#2b82e0",
                '<circle fill="#ffd84d" cx="11" cy="10.8" r="4.3"/>'
                '<path W d="M9.7 21.5a3.6 3.6 0 0 1-.4-7.2 5.1 5.1 0 0 1 9.7-1.1 4.2 4.2 0 0 1 .8 8.3z"/>'),
}


def svg(upper, lower, glyph):
    stops = f'<stop stop-color="{upper}"/><stop offset="1" stop-color="{lower}"/>'
    plate = '<rect width="29" height="29" rx="6.5"'
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="29" height="29" viewBox="0 0 29 29">\n'
            f'<linearGradient id="p" x2="0" y2="1">{stops}</linearGradient>\n'
            f'<clipPath id="c">{plate}/></clipPath>\n'
            f'{plate} fill="url(#p)"/>\n<g clip-path="url(#c)">{attributes(glyph, lower)}</g>\n</svg>\n')


def attributes(glyph, lower):
    line = 'fill="none" stroke="#fff" stroke-width="1.4" stroke-linecap="round" stroke-linejoin="round"'
    return glyph.replace(" W ", ' fill="#fff" ').replace(" L ", f" {line} ").replace('"P"', f'"{lower}"')


def main():
    if len(sys.argv) != 2 or not Path(sys.argv[1]).is_dir():
        sys.exit("usage: draw_application_icons.py FOLDER")
    for name, (upper, lower, glyph) in ICONS.items():
        (Path(sys.argv[1]) / f"{PREFIX}{name}.svg").write_text(svg(upper, lower, glyph))


if __name__ == "__main__":
    main()
