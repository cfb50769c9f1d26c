// What stands in a lane: stretches of fingers and keys, curves of sensors, and how things were.

/// A bar from one time to another; nothing where that is out of view.
function bar(context, y, from, to, verdict, label) {
  if (to < timeline.from || from > timeline.to) return;
  const left = Math.max(timeline.x(from), timeline.gutter - 4);
  const right = Math.min(Math.max(timeline.x(to), left + 1.5), timeline.width + 4);
  const taken = ["held back", "cancelled", "dropped", "lost"].includes(verdict);
  context.fillStyle = taken ? lanes.hatched[verdict] ??= hatch(context, verdict) : colourOf(verdict);
  context.fillRect(left, y, right - left, kLane - 7);
  if (right - left > 4) {
    context.strokeStyle = colourOf(verdict);
    context.lineWidth = 1.2;
    context.strokeRect(left + 0.6, y + 0.6, right - left - 1.2, kLane - 8.2);
  }
  const text = label && right - left > 18 ? label : "";
  if (!text) return;
  context.font = "bold 11px system-ui, sans-serif";
  const room = context.measureText(text).width + 6;
  if (room > right - left) return;
  context.fillStyle = colours.paper;
  context.fillRect(left + 3, y + 2, room - 2, kLane - 11);
  context.fillStyle = colourOf(verdict);
  context.fillText(text, left + 5, y + (kLane - 7) / 2 + 0.5);
}

function drawFingers(context, y, own) {
  for (const stroke of own) {
    if (stroke.to < timeline.from || stroke.from > timeline.to) continue;
    forStretches(stroke, (verdict, from, to, i) => {
      bar(context, y, from, to, verdict, `${i === 0 ? stroke.number + " " : ""}${verdicts[verdict].sign}`);
    });
  }
}

function drawKeys(context, y, own) {
  for (const key of own) {
    if (key.until !== null) bar(context, y, key.down, key.until, "held back", "");
    bar(context, y, key.down, Math.max(key.up, key.down), key.verdict, verdicts[key.verdict].sign);
    if (!key.then) continue;
    context.fillStyle = colourOf(key.then);
    context.font = "bold 13px system-ui, sans-serif";
    context.fillText(verdicts[key.then].sign, timeline.x(Math.max(key.until, key.up)) + 3, y + (kLane - 7) / 2);
  }
}

function drawSensor(context, y, sensor) {
  const {times, values} = sensor;
  const first = Math.max(0, countUntil(times, timeline.from, each => each) - 1);
  const last = Math.min(times.length, countUntil(times, timeline.to, each => each) + 1);
  if (sensor.type === kCover) {
    for (let i = first; i < last; ++i) span(context, y, times[i], times[i + 1] ?? end, `state ${values[i]}`);
    return;
  }
  let least = Infinity, most = -Infinity;  // in a loop: an hour's samples are too many for arguments
  for (let i = first; i < last; ++i) {
    least = Math.min(least, values[i]);
    most = Math.max(most, values[i]);
  }
  context.beginPath();
  for (let i = first; i < last; ++i) {
    context.lineTo(timeline.x(times[i]), y + (kLane - 8) * (1 - (values[i] - least) / (most - least || 1)));
  }
  context.strokeStyle = colours.accent;
  context.lineWidth = 1.5;
  context.stroke();
  context.fillStyle = colours.muted;
  context.font = "10px system-ui, sans-serif";
  const range = `${least.toFixed(0)} \u2026 ${most.toFixed(0)}`;
  const room = timeline.width - context.measureText(range).width - 4;
  context.fillText(range, Math.min(timeline.x(times[last - 1]) + 4, room), y + kLane / 2 - 3);
}

function span(context, y, from, to, text) {
  if (to < timeline.from || from > timeline.to) return;
  const left = Math.max(timeline.x(from), timeline.gutter);
  const right = timeline.x(to);
  context.fillStyle = colours.line;
  context.fillRect(left, y, Math.max(1, right - left - 1), kLane - 7);
  context.fillStyle = colours.muted;
  context.fillRect(left, y - 1, 1.5, kLane - 5);
  if (right - left < 24) return;
  context.save();
  context.beginPath();
  context.rect(left, y - 2, right - left - 2, kLane);
  context.clip();
  context.fillStyle = colours.ink;
  context.font = "11px system-ui, sans-serif";
  context.fillText(text, left + 5, y + (kLane - 7) / 2 + 0.5);
  context.restore();
}

function drawSpans(context, y, changes, nameOf) {
  changes.forEach((change, i) => span(context, y, change.time, changes[i + 1]?.time ?? end, nameOf(change)));
}
