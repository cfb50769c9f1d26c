// What the fingers move over: the panel, where the filters act, and the windows that matter to them.

function rectangle(context, view, area) {
  const [left, top, right, bottom] = area;
  context.beginPath();
  context.rect(view.x(left), view.y(top), view.factor * (right - left), view.factor * (bottom - top));
}

/// An area with its name, in the corner where there is room.
function drawArea(context, view, area, name, {line, fill = null, ink = line, dash = [], below = false}) {
  rectangle(context, view, area);
  if (fill) {
    context.globalAlpha = 0.16;
    context.fillStyle = fill;
    context.fill();
    context.globalAlpha = 1;
  }
  context.setLineDash(dash);
  context.lineWidth = 1.2;
  context.strokeStyle = line;
  context.stroke();
  context.setLineDash([]);
  context.fillStyle = ink;
  context.font = "11px system-ui, sans-serif";
  context.textBaseline = below ? "top" : "bottom";
  const y = below ? view.y(area[1]) + 3 : view.y(area[1]) - 2;
  const room = view.width - context.measureText(name).width - 2;
  const x = view.x(area[0]) + 3;
  if (view.x(area[2]) > 0) context.fillText(name, Math.max(3, Math.min(x, room)), Math.max(y, 12));
}

function drawGround(context, view, surface) {
  const panel = wholePanel(surface);
  rectangle(context, view, panel);
  context.fillStyle = colours.glass;
  context.fill();
  context.strokeStyle = colours.ink;
  context.lineWidth = 1.5;
  context.stroke();
  const places = lastUntil(data.places, cursor.time) ?? data.places[0];
  if (places?.central) {
    drawArea(context, view, areaOnDisplay(surface, places.central), "central area",
             {line: colours.faint, ink: colours.muted, dash: [2, 5], below: true});
  }
  const notch = places?.notch[surface.device];
  if (notch !== undefined) {
    const band = areaOnDisplay(surface, [surface.rawX[0], 0, surface.rawX[1], notch]);
    drawArea(context, view, band, "notch band", {fill: colours["held-back"], line: colours["held-back"], below: true});
  }
  for (const [index, window] of (lastUntil(windows, cursor.time)?.windows ?? []).entries()) {
    drawWindow(context, view, window, places, lastUntil(windows, cursor.time).focused === index);
  }
  if (places?.area) {
    drawArea(context, view, areaOnDisplay(surface, places.area), "filter area",
             {fill: colours.accent, line: colours.accent});
  }
}

/// The last part of a window's name says most: "com.example.mail.InboxActivity" of "Window{77 u0 com.example.mail/...}".
/// A name may be a megabyte; its end is enough.
function shortName(name) {
  const last = name.slice(-200);
  return last.match(/([^\/\s.{}]+)\}?$/)?.[1] ?? last;
}

function drawWindow(context, view, window, places, focused) {
  const isBar = window.type === 2019;
  if (!window.frame || window.frame[2] <= window.frame[0]) return;
  if (focused && !isBar && !window.notchArea) return;  // it fills the display: its name stands below
  const name = isBar ? `navigation bar${places?.navigationBar ? ", preferred" : ""}` : `${shortName(window.name)}, marked`;
  drawArea(context, view, window.frame, name,
           {fill: isBar ? colours.faint : colours.restored, line: isBar ? colours.muted : colours.restored, dash: [6, 3],
            below: true});
}
