// From raw panel units to the display as it is held, which is how the panel is drawn.

/// The panel that the fingers are on at a time: that of the one that landed last.
function deviceAt(time) {
  const landed = countUntil(strokes, time, stroke => stroke.from);
  return (strokes[landed - 1] ?? strokes[0])?.device ?? surfaces[0]?.device ?? null;
}

/// The surface of a panel at a time; before it is configured, the first one it gets.
function surfaceAt(device, time) {
  const own = surfaces.filter(surface => surface.device === device);
  return lastUntil(own, time) ?? own[0] ?? reachOf(device);
}

/// A panel that was never configured is as large as the fingers say.
const reaches = new Map();
function reachOf(device) {
  if (!reaches.has(device)) {
    const all = strokes.filter(stroke => stroke.device === device);
    const most = values => all.reduce((so, stroke) => stroke[values].reduce((a, b) => Math.max(a, b), so), 100);
    const [width, height] = [most("xs"), most("ys")];
    reaches.set(device, {device, width, height, orientation: 0, rawX: [0, width], rawY: [0, height], time: begin,
                         calibration: [1, 0, 0, 0, 1, 0], scale: [1, 1], translate: [0, 0], unknown: true});
  }
  return reaches.get(device);
}

/// Maps a raw place to the display.
function toDisplay(surface, rawX, rawY) {
  const [a, b, c, d, e, f] = surface.calibration;
  const x = a * rawX + b * rawY + c;
  const y = d * rawX + e * rawY + f;
  const turned = surface.orientation;
  const fromX = turned === 1 || turned === 2 ? surface.rawX[1] - x : x - surface.rawX[0];
  const fromY = turned === 2 || turned === 3 ? surface.rawY[1] - y : y - surface.rawY[0];
  const shownX = surface.translate[0] + surface.scale[0] * fromX;
  const shownY = surface.translate[1] + surface.scale[1] * fromY;
  return turned === 1 || turned === 3 ? [shownY, shownX] : [shownX, shownY];
}

/// A raw area as left, top, right, bottom of the display.
function areaOnDisplay(surface, [left, top, right, bottom]) {
  const [x1, y1] = toDisplay(surface, left, top);
  const [x2, y2] = toDisplay(surface, right, bottom);
  return [Math.min(x1, x2), Math.min(y1, y2), Math.max(x1, x2), Math.max(y1, y2)];
}

const wholePanel = surface =>
  areaOnDisplay(surface, [surface.rawX[0], surface.rawY[0], surface.rawX[1], surface.rawY[1]]);
