// The panel to scale, as it is held; ground.js and paths.js draw on it.

const glass = document.getElementById("glass");

/// @param room {width, height} in CSS pixels
function drawPanel(room) {
  const surface = surfaceAt(deviceAt(cursor.time), cursor.time);
  const [left, top, right, bottom] = wholePanel(surface);
  const shape = (bottom - top) / (right - left || 1);
  document.getElementById("panel").classList.toggle("wide", shape < 1);
  const most = {width: room.width * (shape < 1 ? 1 : 0.62), height: room.height * (shape < 1 ? 0.7 : 1)};
  const width = Math.max(60, Math.floor(Math.min(most.width, most.height / shape)));
  const height = Math.max(60, Math.floor(Math.min(most.height, width * shape)));
  glass.style.width = `${width}px`;
  glass.style.height = `${height}px`;
  const context = prepare(glass, width, height);
  lens.fit(surface, width, height);
  drawGround(context, lens, surface);
  drawPaths(context, lens, surface, width, height);
}

/// The same in words, for those who do not see the picture, and to copy.
function tellFingers() {
  const panels = new Set(strokes.map(stroke => stroke.device)).size;
  const told = onGlass(cursor.time).map(stroke => {
    const [x, y] = placeAt(stroke, cursor.time).map(Math.round);
    const verdict = verdictAt(stroke, cursor.time);
    const where = panels > 1 ? ` of ${deviceName(stroke.device)}` : "";
    return `${verdicts[verdict].sign} finger ${stroke.id}${where} (${stroke.number}) at (${x}, ${y}): ${verdict}`;
  });
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
