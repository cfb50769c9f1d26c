// Puts the page together: headline, legend, keyboard, and one picture for every move of the cursor.

function makeHeadline() {
  const all = data.summary;
  document.getElementById("name").textContent = data.name;
  const many = (count, what, more = what + "s") => `${count} ${count === 1 ? what : more}`;
  const facts = [`fingers ${all.fingers}`, many(all.frames, "frame"),
                 `${all.pointersRemoved} of ${many(all.pointersJudged, "pointer")} removed`,
                 `${many(all.gesturesCancelled, "gesture")} cancelled`,
                 `keys: ${all.keysConsumed} consumed, ${all.keysHeldBack} held back, ${all.keysDispatched} dispatched`];
  const outside = strokes.filter(stroke => isOutside(stroke, stroke.from)).length;
  if (outside > 0) facts.push(`${many(outside, "finger")} landed outside of the panel: is it another phone's?`);
  if (data.note) facts.push(data.note);
  if (all.filterOff) facts.push(`the front fingerprint filter is off: ${all.filterOff}`);
  document.getElementById("facts").textContent = facts.join(" \u00B7 ");
  const phone = document.getElementById("phone");
  for (const [name, value] of data.properties) phone.append(element("dt", "", name), element("dd", "", value));
  for (const {id, name} of data.devices) phone.append(element("dt", "", `device ${id}`), element("dd", "", name));
  for (const [rule, meaning] of meanings) phone.append(element("dt", "", rule), element("dd", "", meaning));
}

/// Each verdict with the line that it is drawn with.
function makeLegend() {
  const legend = document.getElementById("legend");
  for (const verdict of pathVerdicts) {
    const entry = element("li", classOf(verdict));
    entry.title = verdicts[verdict].does;
    const dashes = verdicts[verdict].dash.join(" ");
    entry.innerHTML = '<svg width="34" height="8" aria-hidden="true"><line x1="3" y1="4" x2="31" y2="4"/></svg>';
    const line = entry.querySelector("line");
    line.setAttribute("stroke-dasharray", dashes);
    if (verdicts[verdict].core) {
      const core = line.cloneNode();
      core.classList.add("core");
      line.after(core);
    }
    entry.append(`${verdicts[verdict].sign} ${verdict}`);
    legend.append(entry);
  }
  const ends = element("li", "ends");
  ends.append(element("b", "disc", "1"), "landed", element("b", "square", "1"), "lifted");
  legend.append(ends);
}

let room = {width: 0, height: 0, time: 0};  // for the panel, and the timeline's width: CSS pixels

function draw() {
  timeline.follow();
  drawTimeline(room.time);
  drawPanel(room);
  tellFingers();
  selectDecision();
  document.getElementById("clock").textContent = seconds(cursor.time);
  const here = listed.selected?.time === cursor.time ? listed.selected : null;
  axis.setAttribute("aria-valuetext", seconds(cursor.time) + (here ? `, ${here.verdict}, ${here.subject}` : ""));
  const play = document.getElementById("play");
  const word = cursor.playing ? "Pause" : "Play";
  if (play.textContent !== word) play.textContent = word;
}

const kPadding = 10;  // CSS pixels, of a section; as in the style sheet
const kPaper = 700;   // the width of what is printed; likewise

function layOut() {
  const panel = document.getElementById("panel");
  room = {width: onPaper ? kPaper : panel.clientWidth - 2 * kPadding,
          height: onPaper ? 380 : stacked() ? Math.min(460, innerHeight * 0.6) : panel.clientHeight - 2 * kPadding,
          time: onPaper ? kPaper : axis.parentElement.clientWidth - 2 * kPadding};
  lanes.stale = true;
  lanes.hatched = {};
  readColours();
  cursor.tell();
}

const frameStep = Math.max(1000, data.frameInterval || 8000);

/// A step goes to a decision that lies before its end, ten at once pass it by.
function step(by, ten) {
  const next = by > 0 ? inTime[countUntil(inTime, cursor.time)] : lastUntil(inTime, cursor.time - 1);
  const isNear = !ten && next && Math.abs(next.time - cursor.time) < Math.abs(by);
  cursor.go(isNear ? next.time : cursor.time + (ten ? 10 : 1) * by);
}

const doOnKey = {
  ArrowRight: event => step(frameStep, event.shiftKey),
  ArrowLeft: event => step(-frameStep, event.shiftKey),
  ArrowDown: () => hopDecision(true),
  ArrowUp: () => hopDecision(false),
  PageDown: () => cursor.hopLanding(true),
  PageUp: () => cursor.hopLanding(false),
  Home: () => cursor.go(begin),
  End: () => cursor.go(end),
  " ": () => cursor.play(!cursor.playing),
  "+": () => timeline.zoom(0.5),
  "=": () => timeline.zoom(0.5),
  "-": () => timeline.zoom(2),
  "z": () => lens.toFinger(),
  "0": () => timeline.show(...timeline.whole),
};

document.addEventListener("keydown", event => {
  const doIt = doOnKey[event.key];
  const ownKeys = elementOf(event).closest(event.key === " " ? "select, summary, button" : "select");
  if (!doIt || ownKeys || event.ctrlKey || event.altKey || event.metaKey) return;
  event.preventDefault();
  if (event.key !== " ") cursor.play(false);
  if (event.target === document.body) axis.focus({preventScroll: true});  // so that it is told
  doIt(event);
  if (stacked() && ["ArrowUp", "ArrowDown"].includes(event.key)) {
    document.getElementById("why").scrollIntoView({block: "nearest"});
  }
});

document.getElementById("play").addEventListener("click", () => cursor.play(!cursor.playing));
document.getElementById("previous").addEventListener("click", () => doOnKey.ArrowUp());
document.getElementById("next").addEventListener("click", () => doOnKey.ArrowDown());
const speed = /** @type {HTMLSelectElement} */ (document.getElementById("speed"));
let byMouse = false;  // then the keys go back to the cursor; else they may choose on
speed.addEventListener("pointerdown", () => { byMouse = true; });
speed.addEventListener("keydown", () => { byMouse = false; });
speed.addEventListener("change", () => {
  cursor.speed = Number(speed.value);
  if (byMouse) speed.blur();
});

/// Paper is light, as wide as it is, and has no window to scroll: all is there.
function toPaper(on) {
  onPaper = on;
  document.documentElement.toggleAttribute("data-paper", on);
  if (on) {
    fillAll();
    document.querySelector("details").open = true;
  }
  layOut();
  draw();
}
addEventListener("beforeprint", () => toPaper(true));
addEventListener("afterprint", () => toPaper(false));

readColours();
makeHeadline();
makeLegend();
makeFilters();
makeLanes();
openTimeline();
makeList();
layOut();
draw();
cursor.watchers.push(draw);
new ResizeObserver(layOut).observe(document.querySelector("main"));
matchMedia("(prefers-color-scheme: dark)").addEventListener("change", layOut);
performance.mark("first-picture");
