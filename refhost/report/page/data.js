// What happened. Times are microseconds on the trace's clock, places raw panel units.

const data = JSON.parse(document.getElementById("data").textContent);
const [begin, end] = data.span;

/// The fingers from landing to lift, in the order of landing: that is their number.
const strokes = data.strokes.map(([device, id, lift, points, states]) => {
  const count = points.length / 3;
  const stroke = {device, id, lift, times: new Float64Array(count), xs: new Float64Array(count),
                  ys: new Float64Array(count), states: []};
  for (let i = 0, time = 0, x = 0, y = 0; i < count; ++i) {
    stroke.times[i] = time += points[3 * i];
    stroke.xs[i] = x += points[3 * i + 1];
    stroke.ys[i] = y += points[3 * i + 2];
  }
  stroke.from = stroke.times[0];
  stroke.to = lift ?? Math.max(end, stroke.times[count - 1]);
  for (let i = 0; i < states.length; i += 2) stroke.states.push({time: states[i], verdict: states[i + 1]});
  return stroke;
}).sort((one, other) => one.from - other.from || one.id - other.id);
strokes.forEach((stroke, index) => { stroke.number = index + 1; });

const keys = data.keys.map(([device, code, down, up, verdict, until, then]) =>
  ({device, code, down, up: up ?? down, verdict, until: verdict === "held back" ? until ?? end : null, then}));

const sensors = data.sensors.map(([type, handle, points]) => {
  const sensor = {type, handle, times: [], values: []};
  for (let i = 0; i < points.length; i += 2) {
    sensor.times.push(points[i]);
    sensor.values.push(points[i + 1]);
  }
  return sensor;
});

const toUs = ns => Math.trunc(ns / 1000);

/// With its cause's times in microseconds, and values of nanoseconds in milliseconds.
function measureOf({cause, ...measure}) {
  const inMs = value => value === null ? null : value / 1e6;
  const scaled = measure.unit === "ns" ? {unit: "ms", value: inMs(measure.value), least: inMs(measure.least),
                                          most: inMs(measure.most), margin: inMs(measure.margin)} : {};
  const at = cause && {...cause, time: toUs(cause.time), until: cause.until && toUs(cause.until)};
  return {...measure, ...scaled, cause: at};
}

const decisions = data.decisions.map((decision, index) =>
  ({...decision, index, time: toUs(decision.time), measures: decision.measures.map(measureOf)}));
const meanings = new Map(data.rules);  // by rule; without the rules of another build
const inTime = decisions.slice().sort((one, other) => one.time - other.time || one.index - other.index);
const surfaces = data.surfaces.map(surface => ({
  calibration: [1, 0, 0, 0, 1, 0], scale: [1, 1], translate: [0, 0], ...surface, time: toUs(surface.t)}));
const windows = data.windows.map(line => ({...line, time: toUs(line.t)}));

/// How many of a sorted list lie at or before a time.
function countUntil(list, time, timeOf = each => each.time) {
  let low = 0;
  for (let high = list.length; low < high;) {
    const middle = (low + high) >> 1;
    if (timeOf(list[middle]) <= time) low = middle + 1; else high = middle;
  }
  return low;
}

/// The last of a list sorted by time that holds at `time`; undefined before the first.
const lastUntil = (list, time) => list[countUntil(list, time) - 1];

const deviceName = id => data.devices.find(device => device.id === id)?.name ?? (id === null ? "no device" : `device ${id}`);

/// Where a finger was, between the points that were kept.
function placeAt(stroke, time) {
  const after = countUntil(stroke.times, time, each => each);
  if (after === 0) return [stroke.xs[0], stroke.ys[0]];
  const before = after - 1;
  if (after === stroke.times.length) return [stroke.xs[before], stroke.ys[before]];
  const share = (time - stroke.times[before]) / (stroke.times[after] - stroke.times[before]);
  const between = values => values[before] + share * (values[after] - values[before]);
  return [between(stroke.xs), between(stroke.ys)];
}

const verdictAt = (stroke, time) => (lastUntil(stroke.states, time) ?? stroke.states[0])?.verdict ?? "kept";

/// Calls `each(verdict, from, to)` for every stretch of a finger in one state.
function forStretches(stroke, each) {
  stroke.states.forEach((state, i) => each(state.verdict, state.time, stroke.states[i + 1]?.time ?? stroke.to, i));
}

const onGlass = time => strokes.filter(stroke => stroke.from <= time && (time < stroke.to || stroke.lift === null));

const seconds = time => `${(time / 1e6).toFixed(3)} s`;
