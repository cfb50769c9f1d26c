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
    this.from = Math.min(Math.max(from, least), most - span);
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

function openTimeline() {
  const interesting = decisions.find(each => !["noted", "kept", "consumed", "dispatched"].includes(each.verdict));
  const asked = /^#t=(\d+(?:\.\d+)?)$/.exec(location.hash);
  const opening = interesting ?? decisions.find(each => each.verdict !== "noted");
  if (asked) cursor.go(Math.round(Number(asked[1]) * 1e6)); else goToDecision(opening);
  if (end - begin > 1.5 * kOpeningView) {
    timeline.show(cursor.time - kOpeningView / 4, cursor.time + 3 * kOpeningView / 4);
  } else {
    timeline.show(...timeline.whole);
  }
}

/// Lets a pointer drag over a canvas: `each` is told where it is, in CSS pixels from the left.
function whileDragged(canvas, each) {
  const tell = event => each(event.clientX - canvas.getBoundingClientRect().left);
  canvas.addEventListener("pointerdown", event => {
    if (event.button !== 0) return;
    canvas.setPointerCapture(event.pointerId);
    tell(event);
  });
  canvas.addEventListener("pointermove", event => {
    if (canvas.hasPointerCapture(event.pointerId)) tell(event);
  });
}

whileDragged(axis, x => {
  cursor.play(false);
  cursor.go(timeline.time(x));
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
