// What the time axis shows, lane by lane. All but the cursor is drawn once for a view and kept.

const kLane = 22;      // CSS pixels
const kRuler = 30;
const kFoldAngle = 3, kCover = 65557;  // types of sensors

const lanes = {stale: true, picture: document.createElement("canvas"), list: []};

function makeLanes() {
  const panels = [...new Set(strokes.map(stroke => stroke.device))];
  for (const device of panels) {
    const ids = [...new Set(strokes.filter(stroke => stroke.device === device).map(stroke => stroke.id))];
    for (const id of ids.sort((one, other) => one - other)) {
      const own = strokes.filter(stroke => stroke.device === device && stroke.id === id);
      const name = `finger ${id}${panels.length > 1 ? `, ${device ?? "\u2013"}` : ""}`;
      lanes.list.push({name, draw: (context, y) => drawFingers(context, y, own)});
    }
  }
  const codes = [...new Set(keys.map(key => key.code))].sort((one, other) => one - other);
  for (const code of codes) {
    const own = keys.filter(key => key.code === code);
    lanes.list.push({name: `key ${code}`, draw: (context, y) => drawKeys(context, y, own)});
  }
  for (const sensor of sensors) {
    const name = sensor.type === kCover ? "cover" : sensor.type === kFoldAngle ? "fold angle" : `sensor ${sensor.type}`;
    lanes.list.push({name, draw: (context, y) => drawSensor(context, y, sensor)});
  }
  const held = [...new Set(surfaces.map(surface => surface.device))];
  for (const device of held) {
    const own = surfaces.filter(surface => surface.device === device);
    const turns = own.filter((surface, i) => i === 0 || surface.orientation !== own[i - 1].orientation);
    const name = `orientation${held.length > 1 ? `, ${device ?? "\u2013"}` : ""}`;
    lanes.list.push({name, draw: (context, y) => drawSpans(context, y, turns, surface =>
      `${[1, 3].includes(surface.orientation) ? "landscape" : "portrait"} ${surface.orientation}`)});
  }
  if (windows.length > 0) {
    lanes.list.push({name: "in front", draw: (context, y) => drawSpans(context, y, windows, line =>
      (line.keyguard ? "keyguard, " : "") + (line.focused == null ? "nothing" : shortName(line.windows[line.focused].name)))});
  }
  axis.style.height = `${heightOfLanes()}px`;
}

/// CSS pixels.
const heightOfLanes = () => kRuler + Math.max(1, lanes.list.length) * kLane + 6;

function drawTimeline(width) {
  timeline.width = width;
  timeline.gutter = width < 520 ? 62 : 78;
  const height = heightOfLanes();
  if (lanes.stale || lanes.width !== width) {
    lanes.stale = false;
    lanes.width = width;
    drawLanes(prepare(lanes.picture, width, height), width, height);
    drawOverview(width);
  }
  const context = prepare(axis, width, height);
  context.drawImage(lanes.picture, 0, 0, width, height);
  drawCursor(context, height);
  axis.setAttribute("aria-valuemin", (begin / 1e6).toFixed(3));
  axis.setAttribute("aria-valuemax", (end / 1e6).toFixed(3));
  axis.setAttribute("aria-valuenow", (cursor.time / 1e6).toFixed(3));
  const span = timeline.to - timeline.from;
  document.getElementById("extent").textContent =
    `${seconds(Math.max(timeline.from, begin))} to ${seconds(Math.min(timeline.to, end))}` +
    (span < end - begin ? ` (all: ${seconds(begin)} to ${seconds(end)})` : "");
}

function drawLanes(context, width, height) {
  context.font = "12px system-ui, sans-serif";
  context.textBaseline = "middle";
  lanes.list.forEach((lane, i) => {
    const y = kRuler + i * kLane;
    context.fillStyle = colours.muted;
    context.fillText(lane.name, 4, y + kLane / 2, timeline.gutter - 8);
    context.fillStyle = colours.line;
    context.fillRect(timeline.gutter, y + kLane - 0.5, width, 0.5);
  });
  context.save();
  context.beginPath();
  context.rect(timeline.gutter, 0, width - timeline.gutter, height);
  context.clip();
  drawRuler(context, height);
  lanes.list.forEach((lane, i) => lane.draw(context, kRuler + i * kLane + 3));
  drawMarks(context, height);
  context.restore();
}

/// Steps of 1, 2 or 5 of a power of ten, some 90 pixels apart.
function drawRuler(context, height) {
  const rough = (timeline.to - timeline.from) / Math.max(1, (timeline.width - timeline.gutter) / 90);
  const power = 10 ** Math.floor(Math.log10(rough));
  const step = Math.max(1, power * [1, 2, 5, 10].find(factor => factor * power >= rough));
  const digits = Math.max(0, 6 - Math.floor(Math.log10(step) + 1e-9));
  context.fillStyle = colours.muted;
  context.font = "11px system-ui, sans-serif";
  for (let time = Math.ceil(timeline.from / step) * step; time <= timeline.to; time += step) {
    const x = timeline.x(time);
    context.fillStyle = colours.line;
    context.fillRect(x, 14, 0.8, height);
    context.fillStyle = colours.muted;
    context.fillText(`${(time / 1e6).toFixed(Math.min(digits, 3))} s`, x + 3, 8);
  }
}

/// The decisions, as ticks under the ruler; a cancel goes across all lanes.
function drawMarks(context, height) {
  const first = countUntil(inTime, timeline.from - 1);
  const last = countUntil(inTime, timeline.to);
  for (const decision of inTime.slice(first, last)) {
    const x = timeline.x(decision.time);
    const cancel = decision.verdict === "cancelled";
    context.fillStyle = colourOf(decision.verdict);
    context.fillRect(x - 0.75, cancel ? 18 : 21, 1.5, cancel ? height : 6);
    if (!cancel) continue;
    context.font = "bold 12px system-ui, sans-serif";
    context.fillText(verdicts.cancelled.sign, x - 5, 22);
  }
}

function drawCursor(context, height) {
  const x = timeline.x(cursor.time);
  if (x < timeline.gutter - 1 || x > timeline.width) return;
  context.fillStyle = colours.accent;
  context.fillRect(x - 1, 12, 2, height);
  context.beginPath();
  context.moveTo(x - 7, 2);
  context.lineTo(x + 7, 2);
  context.lineTo(x, 15);
  context.fill();
}
