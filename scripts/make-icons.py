#!/usr/bin/env python3
"""Writes the design window's tool icons (src/design/icons/*.svg) and their resource list.

One drawing style for all: a 24 x 24 grid, 1.5-unit dark strokes on whole and half units so
the lines fall on pixels at 16, 24 and 48 pixels, one blue accent, white fills. Run it again
after changing a drawing; the output is committed.
"""
import os

INK = "#26324a"
ACCENT = "#2f74d0"
PAPER = "#ffffff"
SOFT = "#c9d8ef"
RED = "#d23b2f"

def svg(body):
    return ('<svg xmlns="http://www.w3.org/2000/svg" width="24" height="24" viewBox="0 0 24 24" '
            f'fill="none" stroke="{INK}" stroke-width="1.5" stroke-linecap="round" stroke-linejoin="round">'
            + body + '</svg>\n')

def page(x=5, y=2.75, w=14, h=18.5, fold=4):
    return (f'<path d="M{x} {y}h{w-fold}l{fold} {fold}v{h-fold}h-{w}z" fill="{PAPER}"/>'
            f'<path d="M{x+w-fold} {y}v{fold}h{fold}"/>')

def letter(ch, x=12, y=17.5, size=15, weight="bold", style="normal", colour=INK):
    return (f'<text x="{x}" y="{y}" font-family="DejaVu Sans, Liberation Sans, Arial, sans-serif" '
            f'font-size="{size}" font-weight="{weight}" font-style="{style}" text-anchor="middle" '
            f'fill="{colour}" stroke="none">{ch}</text>')

def lines(ys, x1, x2):
    return "".join(f'<path d="M{x1} {y}H{x2}"/>' for y in ys)

def picture(x=3.75, y=5.75, w=16.5, h=12.5):
    return (f'<rect x="{x}" y="{y}" width="{w}" height="{h}" rx="1" fill="{PAPER}"/>'
            f'<path d="M{x+1.5} {y+h-2}l4.5-5 3.5 3.5 2.5-2.5 4.5 4" stroke="{ACCENT}"/>'
            f'<circle cx="{x+w-4.5}" cy="{y+3.5}" r="1.5" fill="{ACCENT}" stroke="none"/>')

def magnifier(sign):
    s = '<circle cx="10" cy="10" r="6.25" fill="#ffffff"/><path d="M14.5 14.5l6 6" stroke-width="2.5"/>'
    if sign in "+-":
        s += '<path d="M7 10h6"/>'
    if sign == "+":
        s += '<path d="M10 7v6"/>'
    if sign == "1":
        s += letter("1:1", 10, 12.5, 7)
    return s

def bars(kind):
    # Two items and the line they are lined up on.
    a = {"left": ('M4.5 3v18', [(5.25, 6, 12, 4), (5.25, 14, 8, 4)]),
         "right": ('M19.5 3v18', [(6.75, 6, 12, 4), (10.75, 14, 8, 4)]),
         "top": ('M3 4.5h18', [(6, 5.25, 4, 12), (14, 5.25, 4, 8)]),
         "bottom": ('M3 19.5h18', [(6, 6.75, 4, 12), (14, 10.75, 4, 8)]),
         "centre": ('M12 2.5v19', [(6, 5, 12, 4), (8, 14, 8, 4)]),
         "middle": ('M2.5 12h19', [(5, 6, 4, 12), (14, 8, 4, 8)])}[kind]
    body = "".join(f'<rect x="{x}" y="{y}" width="{w}" height="{h}" fill="{SOFT}"/>' for x, y, w, h in a[1])
    return body + f'<path d="{a[0]}" stroke="{ACCENT}" stroke-width="2"/>'

def arrow(d):
    return {"left": '<path d="M19 12H5m5-5-5 5 5 5"/>', "right": '<path d="M5 12h14m-5-5 5 5-5 5"/>',
            "up": '<path d="M12 19V5m-5 5 5-5 5 5"/>', "down": '<path d="M12 5v14m-5-5 5 5 5-5"/>'}[d]

stack_rects = lambda front: (
    (f'<rect x="9.75" y="9.75" width="10.5" height="10.5" fill="{SOFT}"/>'
     f'<rect x="3.75" y="3.75" width="10.5" height="10.5" fill="{ACCENT if front else PAPER}"/>')
    if front else
    (f'<rect x="3.75" y="3.75" width="10.5" height="10.5" fill="{ACCENT}"/>'
     f'<rect x="9.75" y="9.75" width="10.5" height="10.5" fill="{PAPER}"/>'))

ICONS = {
    "new": page(),
    "Open": f'<path d="M2.75 6.25v13h16l2.5-9H7l-2.5 9" fill="{PAPER}"/><path d="M2.75 6.25V4.75h6l1.5 1.5h7v3.5"/>',
    "miSave": (f'<path d="M3.75 3.75h13l3.5 3.5v13h-16.5z" fill="{PAPER}"/>'
               f'<rect x="7.25" y="3.75" width="8" height="5" fill="{SOFT}"/>'
               f'<rect x="6.75" y="13.25" width="10.5" height="7" fill="{ACCENT}" stroke="none"/>'),
    "miSaveAs": (f'<path d="M3.75 3.75h13l3.5 3.5v4M11 20.25H3.75v-16.5" fill="{PAPER}"/>'
                 f'<rect x="7.25" y="3.75" width="8" height="5" fill="{SOFT}"/>'
                 f'<path d="M13 21l.75-3 6-6 2.25 2.25-6 6z" fill="{ACCENT}"/>'),
    "miSaveFlyer": page() + f'<path d="M8 15h8M8 11.5h5" stroke="{ACCENT}"/>',
    "miSaveFlyerAs": page() + f'<path d="M8 15h8M8 11.5h5" stroke="{ACCENT}"/>',
    "miPageSetup": page() + f'<rect x="7.5" y="7.5" width="8" height="11" stroke="{ACCENT}" stroke-dasharray="1.5 1.5"/>',
    "miPrintSetup": (f'<rect x="3.75" y="9.25" width="16.5" height="7.5" rx="1" fill="{SOFT}"/>'
                     f'<path d="M7.25 9.25V3.75h9.5v5.5M7.25 14.25h9.5v6h-9.5z" fill="{PAPER}"/>'),
    "print": (f'<rect x="3.75" y="9.25" width="16.5" height="7.5" rx="1" fill="{SOFT}"/>'
              f'<path d="M7.25 9.25V3.75h9.5v5.5M7.25 14.25h9.5v6h-9.5z" fill="{PAPER}"/>'
              f'<circle cx="17" cy="11.75" r=".75" fill="{ACCENT}" stroke="none"/>'),
    "printpreview": page(3.75, 2.75, 12.5, 17) + '<circle cx="15" cy="15" r="3.75" fill="#ffffff" stroke="#2f74d0"/>'
                    '<path d="M17.75 17.75l3 3" stroke="#2f74d0" stroke-width="2"/>',
    "miSelectProperty": (f'<path d="M3.25 11.5 12 3.75l8.75 7.75" /><path d="M5.75 9.5v10.75h12.5V9.5" fill="{PAPER}"/>'
                         f'<rect x="10" y="14" width="4" height="6.25" fill="{ACCENT}"/>'),
    "exit": f'<path d="M13.25 3.75h-8.5v16.5h8.5" fill="{PAPER}"/><path d="M10 12h11m-4-4 4 4-4 4" stroke="{ACCENT}"/>',
    "miUndo": f'<path d="M9 5.5 4.5 10 9 14.5" stroke="{ACCENT}" stroke-width="2"/><path d="M5 10h9.5a5 5 0 0 1 0 10H10" stroke-width="2"/>',
    "miRedo": f'<path d="M15 5.5l4.5 4.5-4.5 4.5" stroke="{ACCENT}" stroke-width="2"/><path d="M19 10H9.5a5 5 0 0 0 0 10H14" stroke-width="2"/>',
    "miCut": (f'<circle cx="7" cy="17.5" r="3" fill="{PAPER}"/><circle cx="17" cy="17.5" r="3" fill="{PAPER}"/>'
              f'<path d="M9 15.25 17.5 3.5M15 15.25 6.5 3.5" stroke="{ACCENT}"/>'),
    "miCopy": f'<rect x="3.75" y="3.75" width="11" height="13" rx="1" fill="{SOFT}"/><rect x="9.25" y="7.25" width="11" height="13" rx="1" fill="{PAPER}"/>',
    "miPaste": (f'<rect x="4.75" y="4.25" width="14.5" height="16.5" rx="1.5" fill="{SOFT}"/>'
                f'<rect x="8.75" y="2.75" width="6.5" height="3.5" rx="1" fill="{PAPER}"/>'
                f'<rect x="9.75" y="10.25" width="11.5" height="11" rx="1" fill="{PAPER}"/>'),
    "miSelectByArea": f'<rect x="3.75" y="3.75" width="16.5" height="16.5" stroke-dasharray="2.5 2" stroke="{ACCENT}"/><rect x="8" y="8" width="8" height="8" fill="{SOFT}"/>',
    "miSelectAll": (f'<rect x="3.75" y="3.75" width="16.5" height="16.5" stroke-dasharray="2.5 2" stroke="{ACCENT}"/>'
                    f'<rect x="7" y="7" width="4.25" height="4.25" fill="{SOFT}"/><rect x="12.75" y="7" width="4.25" height="4.25" fill="{SOFT}"/>'
                    f'<rect x="7" y="12.75" width="4.25" height="4.25" fill="{SOFT}"/><rect x="12.75" y="12.75" width="4.25" height="4.25" fill="{SOFT}"/>'),
    "miDeleteObject": f'<path d="M5.5 5.5l13 13M18.5 5.5l-13 13" stroke="{RED}" stroke-width="2.5"/>',
    "miDuplicate": (f'<rect x="3.75" y="3.75" width="11.5" height="11.5" fill="{SOFT}"/><rect x="8.75" y="8.75" width="11.5" height="11.5" fill="{PAPER}"/>'
                    f'<path d="M14.5 11.5v6M11.5 14.5h6" stroke="{ACCENT}"/>'),
    "miDataView": (f'<rect x="3.75" y="4.75" width="16.5" height="14.5" rx="1" fill="{PAPER}"/><path d="M3.75 9.5h16.5M3.75 14.25h16.5M10 4.75v14.5"/>'
                   f'<path d="M12.5 7.25h5M12.5 12h4M12.5 16.75h5.5" stroke="{ACCENT}"/>'),
    "miTemplateView": (f'<rect x="3.75" y="4.75" width="16.5" height="14.5" rx="1" fill="{PAPER}"/>'
                       f'<path d="M9 8.5c-1.5 0-1.5 1-1.5 2s-.75 1.5-1.5 1.5c.75 0 1.5.5 1.5 1.5s0 2 1.5 2M15 8.5c1.5 0 1.5 1 1.5 2s.75 1.5 1.5 1.5c-.75 0-1.5.5-1.5 1.5s0 2-1.5 2" stroke="{ACCENT}"/>'),
    "miPageHeader": page() + f'<rect x="7" y="6.5" width="8" height="2.5" fill="{ACCENT}" stroke="none"/><rect x="7" y="16.5" width="10" height="2.5" fill="{ACCENT}" stroke="none"/>',
    "miShowOutline": f'<rect x="4.75" y="6.75" width="14.5" height="10.5" stroke-dasharray="2 1.5"/>' + letter("ab", 12, 14.5, 7, "normal", colour=ACCENT),
    "miGridSetup": "".join(f'<circle cx="{x}" cy="{y}" r=".9" fill="{INK}" stroke="none"/>' for x in (5, 9.67, 14.33, 19) for y in (5, 9.67, 14.33, 19)),
    "miProperties": (f'<rect x="3.75" y="3.75" width="16.5" height="16.5" rx="1" fill="{PAPER}"/><path d="M7 8.5h10M7 12h10M7 15.5h10"/>'
                     f'<circle cx="10" cy="8.5" r="1.5" fill="{ACCENT}"/><circle cx="15" cy="12" r="1.5" fill="{ACCENT}"/><circle cx="9" cy="15.5" r="1.5" fill="{ACCENT}"/>'),
    "miFieldList": f'<rect x="3.75" y="3.75" width="16.5" height="16.5" rx="1" fill="{PAPER}"/>' + lines((8, 12, 16), 9, 17) + "".join(f'<circle cx="6.5" cy="{y}" r=".9" fill="{ACCENT}" stroke="none"/>' for y in (8, 12, 16)),
    "miSendtoFront": stack_rects(True),
    "miSendtoBack": stack_rects(False),
    "miEffect": f'<rect x="6.75" y="6.75" width="13.5" height="13.5" fill="{SOFT}" stroke="none"/><rect x="3.75" y="3.75" width="13.5" height="13.5" fill="{PAPER}"/>',
    "miEffectFlat": f'<rect x="4.75" y="4.75" width="14.5" height="14.5" fill="{PAPER}"/>',
    "miEffectShadow": f'<rect x="6.75" y="6.75" width="13.5" height="13.5" fill="{INK}" stroke="none"/><rect x="3.75" y="3.75" width="13.5" height="13.5" fill="{PAPER}"/>',
    "miZoomIn": magnifier("+"),
    "miZoomOut": magnifier("-"),
    "miZoom100": magnifier("1"),
    "miZoomFitPage": page(6, 4.75, 12, 14.5, 3) + f'<path d="M2.5 8V2.5H8M16 2.5h5.5V8M21.5 16v5.5H16M8 21.5H2.5V16" stroke="{ACCENT}"/>',
    "miZoomFitWidth": page(6, 4.75, 12, 14.5, 3) + f'<path d="M2 12h20M5 9l-3 3 3 3M19 9l3 3-3 3" stroke="{ACCENT}"/>',
    "fnBold": letter("B", size=16),
    "fnItalic": letter("I", size=16, weight="normal", style="italic"),
    "fnUnderline": letter("U", 12, 15.5, 14, "normal") + f'<path d="M6 20.25h12" stroke="{ACCENT}" stroke-width="2"/>',
    "fnLeft": '<path d="M4 6h16M4 10h10M4 14h16M4 18h10"/>',
    "fnCenter": '<path d="M4 6h16M7 10h10M4 14h16M7 18h10"/>',
    "fnRight": '<path d="M4 6h16M10 10h10M4 14h16M10 18h10"/>',
    "fnForeColor": letter("A", 12, 16, 15) + f'<rect x="4" y="18.5" width="16" height="3" fill="{RED}" stroke="none"/>',
    "fnBackColor": (f'<path d="M11 3.5l7 7-6.5 6.5-7-7z" fill="{PAPER}"/><path d="M19.5 13.5s1.75 2.25 1.75 3.25a1.75 1.75 0 0 1-3.5 0c0-1 1.75-3.25 1.75-3.25z" fill="{ACCENT}" stroke="none"/>'
                    f'<rect x="3" y="19" width="18" height="3" fill="#f2c200" stroke="none"/>'),
    "tbBorderColor": f'<rect x="4.75" y="3.75" width="14.5" height="12.5" stroke="{ACCENT}" stroke-width="2"/><rect x="3" y="19" width="18" height="3" fill="{ACCENT}" stroke="none"/>',
    "tbSelectObjects": f'<path d="M6 3.5v15l4-4 2.75 6 2.5-1.1-2.75-6h5.5z" fill="{PAPER}"/>',
    "tbInsertLabel": f'<rect x="2.75" y="6.75" width="18.5" height="10.5" rx="1" fill="{PAPER}"/>' + letter("Ab", 12, 15, 8.5),
    "tbInsertPicture": picture(),
    "EmbedPhoto": picture(),
    "InsertLinkedPhoto": picture(3.75, 3.75, 14, 11) + f'<path d="M14.5 17.5h-1a2.5 2.5 0 0 0 0 5h2.5a2.5 2.5 0 0 0 2.3-1.5M17 19.75h3.25a2.5 2.5 0 0 0 0-5h-2.5a2.5 2.5 0 0 0-2.3 1.5" stroke="{ACCENT}" stroke-width="1.25"/>',
    "tbBoundPicture": picture(3.75, 3.75, 13.5, 11) + f'<ellipse cx="18" cy="15.5" rx="3.5" ry="1.5" fill="{SOFT}"/><path d="M14.5 15.5v5c0 .8 1.6 1.5 3.5 1.5s3.5-.7 3.5-1.5v-5" fill="{SOFT}"/>',
    "tbInsertRectangle": f'<rect x="3.75" y="5.75" width="16.5" height="12.5" fill="{SOFT}"/>',
    "tbInsertLine": f'<path d="M4 20L20 4" stroke-width="2"/>',
    "tbDateTime": f'<circle cx="12" cy="12" r="8.25" fill="{PAPER}"/><path d="M12 7v5l3.5 2" stroke="{ACCENT}"/>',
    "tbPageBreak": (f'<path d="M5.25 2.75v6h13.5v-6M5.25 21.25v-6h13.5v6" fill="{PAPER}"/>'
                    f'<path d="M2.5 12h19" stroke="{ACCENT}" stroke-dasharray="2 1.5"/>'),
    "tbSectionBreak": (f'<rect x="3.75" y="3.75" width="16.5" height="5.5" fill="{SOFT}"/><rect x="3.75" y="14.75" width="16.5" height="5.5" fill="{SOFT}"/>'
                       f'<path d="M2.5 12h19" stroke="{ACCENT}" stroke-dasharray="2 1.5"/>'),
    "tbSubReport": (f'<rect x="2.75" y="3.75" width="18.5" height="16.5" rx="1" fill="{PAPER}"/>'
                    f'<rect x="7.25" y="8.75" width="11" height="8.5" fill="{SOFT}"/><path d="M7.25 11.75h11M7.25 14.5h11M11 8.75v8.5"/>'),
    "miInsertFile": page() + f'<path d="M12 8.5v8m-3.5-3.5 3.5 3.5 3.5-3.5" stroke="{ACCENT}"/>',
    "miClearDataSource": (f'<ellipse cx="10.5" cy="6" rx="6.75" ry="2.5" fill="{SOFT}"/><path d="M3.75 6v11c0 1.4 3 2.5 6.75 2.5M17.25 6v5"/>'
                          f'<path d="M15 15l6 6M21 15l-6 6" stroke="{RED}" stroke-width="2"/>'),
    "mnuHelp": f'<circle cx="12" cy="12" r="9" fill="{PAPER}"/>' + letter("?", 12, 17, 13, colour=ACCENT),
    "miAlign": bars("left"),
    "miAlignLefts": bars("left"), "miAlignRights": bars("right"), "miAlignTops": bars("top"),
    "miAlignBottoms": bars("bottom"), "miAlignCentres": bars("centre"), "miAlignMiddles": bars("middle"),
    "miSize": f'<rect x="3.75" y="3.75" width="8" height="8" fill="{SOFT}"/><rect x="12.25" y="12.25" width="8" height="8" fill="{SOFT}"/><path d="M13 7h6m-2-2 2 2-2 2" stroke="{ACCENT}"/>',
    "miSameWidth": f'<rect x="3.75" y="4.75" width="16.5" height="5" fill="{SOFT}"/><rect x="3.75" y="14.25" width="16.5" height="5" fill="{SOFT}"/><path d="M3 12h18" stroke="{ACCENT}"/>',
    "miSameHeight": f'<rect x="4.75" y="3.75" width="5" height="16.5" fill="{SOFT}"/><rect x="14.25" y="3.75" width="5" height="16.5" fill="{SOFT}"/><path d="M12 3v18" stroke="{ACCENT}"/>',
    "miSameSize": f'<rect x="3.75" y="3.75" width="7.5" height="7.5" fill="{SOFT}"/><rect x="12.75" y="12.75" width="7.5" height="7.5" fill="{SOFT}"/><rect x="12.75" y="3.75" width="7.5" height="7.5" stroke="{ACCENT}" stroke-dasharray="1.5 1.5"/>',
    "miSpace": f'<rect x="2.75" y="7.75" width="4" height="8.5" fill="{SOFT}"/><rect x="10" y="7.75" width="4" height="8.5" fill="{SOFT}"/><rect x="17.25" y="7.75" width="4" height="8.5" fill="{SOFT}"/>',
    "miSpaceAcross": f'<rect x="2.75" y="7.75" width="4" height="8.5" fill="{SOFT}"/><rect x="10" y="7.75" width="4" height="8.5" fill="{SOFT}"/><rect x="17.25" y="7.75" width="4" height="8.5" fill="{SOFT}"/><path d="M7.5 19.5h2M14.75 19.5h2" stroke="{ACCENT}"/>',
    "miSpaceDown": f'<rect x="7.75" y="2.75" width="8.5" height="4" fill="{SOFT}"/><rect x="7.75" y="10" width="8.5" height="4" fill="{SOFT}"/><rect x="7.75" y="17.25" width="8.5" height="4" fill="{SOFT}"/><path d="M19.5 7.5v2M19.5 14.75v2" stroke="{ACCENT}"/>',
    "miCentreInPage": page() + f'<rect x="8.5" y="10" width="7" height="5" fill="{ACCENT}" stroke="none"/><path d="M12 6v2.5M12 16.5V19" stroke="{ACCENT}"/>',
    "miNudge": f'<path d="M12 3v18M3 12h18m-15-3-3 3 3 3m12-6 3 3-3 3M9 6l3-3 3 3M9 18l3 3 3-3" stroke="{ACCENT}"/>',
    "miNudgeLeft": arrow("left"), "miNudgeRight": arrow("right"), "miNudgeUp": arrow("up"), "miNudgeDown": arrow("down"),
    # Many pages out of one printer: sheets stacked behind the paper it gives out.
    "miPrintMany": (f'<path d="M9.75 2.75h9.5v6.5M8.5 4.75h9.5" />'
                    f'<rect x="3.75" y="10.25" width="16.5" height="7" rx="1" fill="{SOFT}"/>'
                    f'<path d="M7.25 10.25V6.75h9.5v3.5M7.25 14.75h9.5v5.5h-9.5z" fill="{PAPER}"/>'
                    f'<path d="M9.5 17.5h5" stroke="{ACCENT}"/>'),
    "fnFont": letter("A", x=9, size=16) + letter("a", x=17.5, size=12, weight="normal", colour=ACCENT),
    "fnFontSize": letter("A", x=8.5, size=17) + letter("A", x=18, size=10, colour=ACCENT),
}
# File > Print... is the tool bar's Print under the File menu's own name.
ICONS["PrintFromFileMenu"] = ICONS["print"]

def main():
    root = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "src", "design", "icons")
    os.makedirs(root, exist_ok=True)
    for name, body in sorted(ICONS.items()):
        with open(os.path.join(root, name + ".svg"), "w") as f:
            f.write(svg(body))
    with open(os.path.join(root, "icons.qrc"), "w") as f:
        f.write('<!DOCTYPE RCC><RCC version="1.0">\n<qresource prefix="/icons">\n')
        for name in sorted(ICONS):
            f.write(f'  <file>{name}.svg</file>\n')
        f.write('</qresource>\n</RCC>\n')

if __name__ == "__main__":
    main()
