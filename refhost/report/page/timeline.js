// The time axis: what part of it is shown, and how it is moved. lanes.js draws on it.

const axis = document.getElementById("axis");
const overview = document.getElementById("overview");
const kShortestView = 20e3;    // us
const kOpeningView = 20e6;     // of a longer trace, around the first decision of interest

const timeline = {
  from: begin,
  to: Math.max(end, begin + kShortestView),
  gutter: 78,   // CSS pixels at the left, for the lanes' names
  width: 0,     // of the canvas

  get whole() { return [begin - 0.01 * (end - begin), Math.max(end + 0.01 * (end - begin), begin + kShortestView)]; },

  show(from, to) {
    const [least, most] = this.whole;
    const span = Math.min(Math.max(to - from, kShortestView), most - least);
    const edge = 0.01 * span;
    const last = Math.max(end + edge, begin + kShortestView) - span;
    this.from = Math.max(begin - edge, Math.min(from, last));
    this.to = this.from + span;
    lanes.stale = true;
    cursor.tell();
  },

  /// Makes the view `factor` as long; what is at `time` stays where it is.
  zoom(factor, time = cursor.time) {
    const middle = Math.min(Math.max(time, this.from), this.to);
    this.show(middle - (middle - this.from) * factor, middle + (this.to - middle) * factor);
  },

  /// Moves the view where the cursor has left it.
  follow() {
    const span = this.to - this.from;
    if (this.from <= cursor.time && cursor.time <= this.to) return;
    this.show(cursor.time - span / 4, cursor.time + 3 * span / 4);
  },

  x(time) { return this.gutter + (time - this.from) / (this.to - this.from) * (this.width - this.gutter - 8); },
  time(x) { return this.from + (x - this.gutter) / (this.width - this.gutter - 8) * (this.to - this.from); },
};

/// Goes to the time in the page's address, if there is one.
function goToAddress() {
  const asked = /^#t=(\d+(?:\.\d+)?)$/.exec(location.hash);
  if (!asked) return false;
  const time = Math.round(Number(asked[1]) * 1e6);
  const told = inTime.find(each => seconds(each.time) === seconds(time));  // times are told to the millisecond
  if (told) goToDecision(told); else cursor.go(time);
  return true;
}
addEventListener("hashchange", goToAddress);

function openTimeline() {
  const interesting = decisions.find(each => !["noted", "kept", "consumed", "dispatched"].includes(each.verdict));
  const opening = interesting ?? decisions.find(each => each.verdict !== "noted");
  if (!goToAddress()) goToDecision(opening);
  if (end - begin > 1.5 * kOpeningView) {
    timeline.show(cursor.time - kOpeningView / 4, cursor.time + 3 * kOpeningView / 4);
  } else {
    timeline.show(...timeline.whole);
  }
}

/// Lets a pointer drag over a canvas: `each` is told where it is, in CSS pixels from the left.
function whileDragged(canvas, each) {
  const placeOf = event => event.clientX - canvas.getBoundingClientRect().left;
  let pressed = null;  // where; null once it has moved from there
  canvas.addEventListener("pointerdown", event => {
    if (event.button !== 0 || placeOf(event) < timeline.gutter) return;
    canvas.setPointerCapture(event.pointerId);
    pressed = placeOf(event);
    each(pressed, true);
  });
  canvas.addEventListener("pointermove", event => {
    if (!canvas.hasPointerCapture(event.pointerId)) return;
    if (pressed !== null && Math.abs(placeOf(event) - pressed) < 3) return;
    pressed = null;
    each(placeOf(event), false);
  });
}

/// The decision that a press on the axis means: the nearest within 5 pixels, of several at one time the first.
function decisionNear(time) {
  const reach = 5 * (timeline.to - timeline.from) / (timeline.width - timeline.gutter - 8);
  const far = each => Math.abs(each.time - time);
  return listed.shown.slice(countUntil(listed.shown, time - reach), countUntil(listed.shown, time + reach))
    .reduce((best, each) => best && far(best) <= far(each) ? best : each, null);
}

whileDragged(axis, (x, pressed) => {
  cursor.play(false);
  const time = Math.min(Math.max(timeline.time(x), timeline.from), timeline.to);
  const near = pressed && decisionNear(time);
  if (near) goToDecision(near); else cursor.go(time);
});

whileDragged(overview, x => {
  const share = (x - timeline.gutter) / (timeline.width - timeline.gutter - 8);
  const time = begin + share * (end - begin);
  const span = timeline.to - timeline.from;
  cursor.play(false);
  timeline.show(time - span / 2, time + span / 2);
  cursor.go(time);
});

axis.addEventListener("wheel", event => {
  if (stacked() && !event.ctrlKey) return;
  event.preventDefault();
  const across = event.shiftKey && event.deltaX === 0 ? event.deltaY : event.deltaX;
  if (Math.abs(across) > Math.abs(event.deltaY) || event.shiftKey) {
    const by = across / timeline.width * (timeline.to - timeline.from);
    timeline.show(timeline.from + by, timeline.to + by);
  } else {
    timeline.zoom(Math.exp(event.deltaY * 0.002), timeline.time(event.clientX - axis.getBoundingClientRect().left));
  }
}, {passive: false});

document.getElementById("in").addEventListener("click", () => timeline.zoom(0.5));
document.getElementById("out").addEventListener("click", () => timeline.zoom(2));
document.getElementById("whole").addEventListener("click", () => timeline.show(...timeline.whole));
