// The list of decisions: each with its rule, what the rule measured, and what the filter logged.

const list = document.getElementById("list");
const kGroup = 25;  // rows that are made together, when they come near
const listed = {shown: [], groups: [], selected: null, hidden: new Set(), buttons: new Map()};

const element = (tag, className, text) => {
  const made = document.createElement(tag);
  if (className) made.className = className;
  if (text !== undefined) made.textContent = text;
  return made;
};

/// What an event has happened to; the page where that is none of its elements.
const elementOf = event => event.target instanceof Element ? event.target : document.body;

const classOf = verdict => "v-" + verdict.replace(" ", "-");

function rowOf(decision) {
  const row = element("div", `decision ${classOf(decision.verdict)}`);
  row.id = `decision-${decision.index}`;
  row.setAttribute("role", "row");
  const cell = element("div");
  cell.setAttribute("role", "gridcell");
  row.append(cell);
  const head = element("div", "head");
  head.append(element("time", "", seconds(decision.time)),
              element("b", "verdict", `${verdicts[decision.verdict].sign} ${decision.verdict}`),
              element("span", "subject", decision.subject));
  if (decision.rule && decision.verdict !== "noted") {  // the subject of what is noted is its rule
    const by = element("span", "by");
    by.append(element("span", "filter", decision.filter), " ", element("code", "rule", decision.rule));
    head.append(by);
  }
  cell.append(head);
  if (meanings.has(decision.rule)) cell.append(element("p", "meaning", meanings.get(decision.rule)));
  if (decision.measures.length > 0) {
    const measures = element("div", "measures");
    const follow = cause => followCause(cause, decision);
    decision.measures.forEach(measure => measures.append(...measureCells(measure, follow)));
    cell.append(measures);
  } else if (decision.words.startsWith("(")) {
    cell.append(element("p", "words", decision.words));
  }
  for (const line of decision.log) cell.append(element("p", "log", line));
  setSelected(row, listed.selected === decision);
  return row;
}

/// The tab key reaches the links of the selected row only: a long list has thousands.
function setSelected(row, on) {
  row.setAttribute("aria-selected", String(on));
  row.querySelectorAll(".cause").forEach(link => { link.tabIndex = on ? 0 : -1; });
}

/// Groups are empty boxes of about their size until they come near the window, or the browser has nothing to do.
function makeList() {
  listed.shown = inTime.filter(decision => !listed.hidden.has(decision.verdict));
  listed.groups = [];
  list.replaceChildren();
  listed.watcher?.disconnect();
  listed.watcher = new IntersectionObserver(
    seen => seen.forEach(each => each.isIntersecting && fill(listed.groups.find(({box}) => box === each.target))),
    {root: list, rootMargin: "600px"});
  for (let from = 0; from < listed.shown.length; from += kGroup) {
    const rows = listed.shown.slice(from, from + kGroup);
    const box = element("div", "group");
    box.setAttribute("role", "rowgroup");
    const lines = rows.reduce((so, each) => so + 2.4 + 2.2 * each.measures.length + 1.2 * each.log.length, 0);
    box.style.minHeight = box.style.containIntrinsicHeight = `${Math.round(lines * 16)}px`;
    listed.groups.push({box, rows, filled: false});
    list.append(box);
    listed.watcher.observe(box);
  }
  if (listed.shown.length === 0) list.append(element("p", "none", "No decision of these kinds."));
  listed.selected = null;
  fillWhenIdle(listed.groups);
  cursor.tell();
}

function fill(group) {
  if (!group || group.filled) return;
  group.filled = true;
  group.box.append(...group.rows.map(rowOf));
  group.box.style.minHeight = "";
}

/// The rest of a long list is made when the browser has time, so that searching the page finds it.
function fillWhenIdle(groups, next = 0) {
  if (groups !== listed.groups || next >= groups.length) return;
  const later = window.requestIdleCallback ?? (work => setTimeout(work, 50));
  later(() => {
    if (groups === listed.groups) fill(groups[next]);
    fillWhenIdle(groups, next + 1);
  });
}

function fillAll() {
  listed.groups.forEach(fill);
}

/// The place in the list of the decision at the cursor: the one it was sent to, or the last one until then.
function placeAtCursor() {
  const last = countUntil(listed.shown, cursor.time) - 1;
  for (let place = last; cursor.decision && listed.shown[place]?.time === cursor.time; --place) {
    if (listed.shown[place] === cursor.decision) return place;
  }
  return last;
}

const goToDecision = decision => decision && cursor.go(decision.time, decision);

function hopDecision(forward) {
  const place = placeAtCursor();
  const passed = listed.shown[place]?.time <= cursor.time - 1;
  goToDecision(listed.shown[forward ? place + 1 : passed ? place : place - 1]);
}

/// Marks the decision at the cursor, and brings it into the list's window, never the page.
function selectDecision() {
  const place = placeAtCursor();
  const decision = listed.shown[place] ?? null;
  if (decision === listed.selected) return;
  const before = document.getElementById(`decision-${listed.selected?.index}`);
  if (before) setSelected(before, false);
  listed.selected = decision;
  if (!decision) return list.removeAttribute("aria-activedescendant");
  fill(listed.groups[Math.floor(place / kGroup)]);
  const row = document.getElementById(`decision-${decision.index}`);
  setSelected(row, true);
  list.setAttribute("aria-activedescendant", row.id);
  const [seen, own] = [list.getBoundingClientRect(), row.getBoundingClientRect()];
  if (own.top >= seen.top && own.bottom <= seen.bottom) return;
  const above = Math.max(0, Math.min(seen.height / 3, seen.height - own.height));
  list.scrollTop += own.top - seen.top - above;
}

function makeFilters() {
  const filters = document.getElementById("filters");
  for (const verdict of Object.keys(verdicts)) {
    const count = decisions.filter(decision => decision.verdict === verdict).length;
    if (count === 0) continue;
    const button = element("button", classOf(verdict), `${verdicts[verdict].sign} ${verdict} ${count}`);
    button.type = "button";
    button.title = `${verdict}: ${verdicts[verdict].does}`;
    button.setAttribute("aria-pressed", "true");
    button.addEventListener("click", () => setListed(verdict, listed.hidden.has(verdict)));
    listed.buttons.set(verdict, button);
    filters.append(button);
  }
}

/// Lists the decisions of a verdict, or hides them.
function setListed(verdict, on) {
  if (on) listed.hidden.delete(verdict); else listed.hidden.add(verdict);
  listed.buttons.get(verdict).setAttribute("aria-pressed", String(on));
  makeList();
}

const kCauseError = 1000;  // us: the library keeps some times to the millisecond

/// The decision on the event that a measurement of `decision` counts from; null where there is none.
function decisionOfCause(cause, decision) {
  const far = each => Math.abs(each.time - cause.time);
  const near = inTime.slice(countUntil(inTime, cause.time - kCauseError - 1), countUntil(inTime, cause.time + kCauseError))
    .sort((one, other) => far(one) - far(other) || one.index - other.index);
  if (cause.event === "key") return near.find(each => each.key === cause.key) ?? null;
  if (cause.event !== "landing") return null;
  const landed = near.filter(each => each.ids.length > 0 && ["kept", "held back"].includes(each.verdict));
  if (decision.ids.length === 0) return landed[0] ?? null;  // a key's or a report's: any finger that landed then
  return landed.find(each => each.device === decision.device && each.ids.some(id => decision.ids.includes(id))) ?? null;
}

/// Goes to the cause and lists its decision, even if decisions of its kind are hidden. The list gets the focus, because
/// the link may leave its window.
function followCause(cause, decision) {
  cursor.play(false);
  const target = decisionOfCause(cause, decision);
  if (target && listed.hidden.has(target.verdict)) setListed(target.verdict, true);
  list.focus({preventScroll: true});
  cursor.go(target?.time ?? cause.time, target);
}

list.addEventListener("click", event => {
  const row = elementOf(event).closest(".decision");
  if (!row || elementOf(event).closest(".cause") || getSelection().toString()) return;
  cursor.play(false);
  goToDecision(decisions[Number(row.id.slice("decision-".length))]);
});
