// The panel to scale, as it is held; ground.js and paths.js draw on it.

const glass = document.getElementById("glass");

const kLegend = 154;  // CSS pixels: the width of what stands beside the panel, where it does not stand below

/// Panel, timeline and list lie one below the other; as in the style sheet. The wheel is the page's then.
const stacked = () => innerWidth <= 820;

/// @param room {width, height} in CSS pixels
function drawPanel(room) {
  const surface = surfaceAt(deviceAt(cursor.time), cursor.time);
  const [left, top, right, bottom] = wholePanel(surface);
  const shape = (bottom - top) / (right - left || 1);
  const beside = Math.min(0.62 * room.width, room.width - kLegend, room.height / shape);
  const below = Math.min(room.width, 0.7 * room.height / shape);
  const wide = below > beside;
  document.getElementById("panel").classList.toggle("wide", wide);
  const width = Math.max(60, Math.floor(wide ? below : beside));
  const height = Math.max(60, Math.floor(Math.min(width * shape, room.height)));
  glass.style.width = `${width}px`;
  glass.style.height = `${height}px`;
  const context = prepare(glass, width, height);
  lens.fit(surface, width, height);
  lens.follow(surface, width, height);
  drawGround(context, lens, surface);
  drawPaths(context, lens, surface, width, height);
}

/// Whether a finger is where its panel is not: the trace may be of another.
function isOutside(stroke, time) {
  const surface = surfaceAt(stroke.device, time);
  const [left, top, right, bottom] = wholePanel(surface);
  const [x, y] = toDisplay(surface, ...placeAt(stroke, time));
  return x < left || x > right || y < top || y > bottom;
}

const waiting = time => keys.filter(key => key.until !== null && key.down <= time && time < key.until);

/// The same in words, for those who do not see the picture, and to copy.
function tellFingers() {
  const panels = new Set(strokes.map(stroke => stroke.device)).size;
  const told = onGlass(cursor.time).map(stroke => {
    const [x, y] = placeAt(stroke, cursor.time).map(Math.round);
    const verdict = verdictAt(stroke, cursor.time);
    const where = panels > 1 ? ` of ${deviceName(stroke.device)}` : "";
    return `${verdicts[verdict].sign} finger ${stroke.id}${where} (${stroke.number}) at (${x}, ${y}): ${verdict}` +
      (isOutside(stroke, cursor.time) ? ", outside of the panel" : "");
  });
  told.push(...waiting(cursor.time).map(key => `${verdicts["held back"].sign} key ${key.code}: held back`));
  const front = lastUntil(windows, cursor.time);
  const focused = front && front.focused != null ? front.windows[front.focused] : undefined;
  const surface = surfaceAt(deviceAt(cursor.time), cursor.time);
  const size = `${Math.round(surface.width)} \u00D7 ${Math.round(surface.height)}`;
  const panel = strokes.length + surfaces.length === 0 ? "no panel" :
    `${deviceName(surface.device)}, ${size}${surface.unknown ? ", as far as the fingers went" : ""}`;
  const scene = [panel, focused ? `in front: ${shortName(focused.name)}` : "", front?.keyguard ? "keyguard" : ""];
  const text = [...told, scene.filter(Boolean).join(" \u00B7 ")].join("\n");
  const fingers = document.getElementById("fingers");
  if (fingers.textContent !== text) fingers.textContent = text;
  glass.setAttribute("aria-label", `The panel at ${seconds(cursor.time)}. ${text}`);
}
