// The verdicts: their colours (from the style sheet, which knows light, dark and paper), and the signs that say the same
// without colour.

const verdicts = {
  "kept": {sign: "\u25CF", dash: [], does: "passed on to apps"},
  "held back": {sign: "\u25CC", dash: [1, 6], does: "taken out of the frames"},
  "restored": {sign: "\u21BA", dash: [], core: true, does: "came back where it had landed"},
  "let through": {sign: "\u21B7", dash: [12, 5, 2, 5], does: "came back where it was"},
  "cancelled": {sign: "\u2715", dash: [9, 6], does: "its gesture was cancelled"},
  "lost": {sign: "\u25CB", dash: [1, 6], does: "lifted, and nobody has seen it"},
  "consumed": {sign: "\u25A0", does: "key taken"},
  "dispatched": {sign: "\u25B6", does: "key passed on"},
  "re-sent": {sign: "\u21BB", does: "key sent after all"},
  "dropped": {sign: "\u25A1", does: "held-back key forgotten"},
  "reported": {sign: "\u2691", does: "the host was told of a cancel"},
  "noted": {sign: "\u00B7", does: "what explains the rest"},
};

/// The ones that a path can have.
const pathVerdicts = ["kept", "held back", "restored", "let through", "cancelled"];

let colours = {};

/// Reads the colours anew: the reader's preference has changed, or it goes to paper.
function readColours() {
  const style = getComputedStyle(document.documentElement);
  colours = new Proxy({}, {get: (known, name) => known[name] ??= style.getPropertyValue(`--${String(name)}`).trim()});
}

const colourOf = verdict => colours[verdict.replace(" ", "-")];

/// Fits a canvas to its box on the page, sharp on this screen. Returns its context, in CSS pixels. The canvas is never
/// empty, even if the page has no size yet: an empty one cannot be drawn on another.
function prepare(canvas, width, height) {
  const density = Math.max(window.devicePixelRatio || 1, onPaper ? 3 : 1);
  const [across, down] = [width, height].map(length => Math.max(1, Math.round(length * density)));
  if (canvas.width !== across || canvas.height !== down) [canvas.width, canvas.height] = [across, down];
  const context = canvas.getContext("2d");
  context.setTransform(density, 0, 0, density, 0, 0);
  context.clearRect(0, 0, width, height);
  return context;
}

let onPaper = false;

/// A filling for the stretches in which a finger or a key is not passed on.
function hatch(context, verdict) {
  const size = 6;
  const tile = document.createElement("canvas");
  [tile.width, tile.height] = [size, size];
  const on = tile.getContext("2d");
  on.strokeStyle = colourOf(verdict);
  on.lineWidth = 1.4;
  on.beginPath();
  for (const from of [-size, 0, size]) {
    on.moveTo(from, size);
    on.lineTo(from + size, 0);
    if (verdict !== "cancelled") continue;
    on.moveTo(from, 0);
    on.lineTo(from + size, size);
  }
  on.stroke();
  return context.createPattern(tile, "repeat");
}
