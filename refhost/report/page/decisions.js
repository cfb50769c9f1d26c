// The list of decisions: each with its rule, what the rule measured, and what the filter said.

const list = document.getElementById("list");
const kGroup = 25;  // rows that are made together, when they come near
const listed = {shown: [], groups: [], selected: null, hidden: new Set()};

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
  row.setAttribute("role", "option");
  row.setAttribute("aria-selected", String(listed.selected === decision));
  const head = element("div", "head");
  head.append(element("time", "", seconds(decision.time)),
              element("b", "verdict", `${verdicts[decision.verdict].sign} ${decision.verdict}`),
              element("span", "subject", decision.subject), element("code", "rule", decision.rule));
  row.append(head, element("p", "meaning", meanings.get(decision.rule)));
  if (decision.measures.length > 0) {
    const measures = element("div", "measures");
    decision.measures.forEach(measure => measures.append(...measureCells(measure)));
    row.append(measures);
  }
  if (decision.words.startsWith("(")) row.append(element("p", "words", decision.words));
  for (const line of decision.log) row.append(element("p", "log", line));
  return row;
}

const amount = (value, unit) => `${Number.isInteger(value) ? value : value.toFixed(3)}${unit ? " " + unit : ""}`;

const isFlag = ({least, most}) => least === 1 && most === 1;

function threshold({least, most, unit}) {
  if (isFlag({least, most})) return "set";
  if (least === null) return `at most ${amount(most, unit)}`;
  if (most === null) return `at least ${amount(least, unit)}`;
  return `${amount(least, "")} to ${amount(most, unit)}`;
}

function marginText({value, least, most, unit, holds, margin}) {
  if (isFlag({least, most})) return holds ? "yes" : "no";
  const inside = least !== null && most !== null;  // then it may leave on either side
  if (holds && inside) return `yes, by ${amount(value - least, "")} and ${amount(most - value, unit)}`;
  if (holds) return `yes, by ${amount(margin, unit)}`;
  return `no, ${amount(-margin, unit)} too ${least !== null && value < least ? "little" : "much"}`;
}

/// Name, value, gauge, threshold, margin: cells of one row of a grid.
function measureCells(measure) {
  const flag = isFlag(measure);
  const margin = element("span", measure.holds ? "margin holds" : "margin", marginText(measure));
  return [element("span", "", measure.name),
          element("span", "value", flag ? (measure.value ? "set" : "not set") : amount(measure.value, measure.unit)),
          flag ? element("span") : gauge(measure), element("span", "threshold", threshold(measure)), margin];
}

/// The range in which the condition holds, as a band, and the value on it.
function gauge({value, least, most, holds}) {
  const open = least === null || most === null;
  const edges = [least, most, value, open ? 0 : value].filter(each => each !== null);
  const low = Math.min(...edges), high = Math.max(...edges);
  const room = (high - low) * 0.12 || 1;
  const share = each => 100 * (each - low + room) / (high - low + 2 * room);
  const [from, to] = [least === null ? 0 : share(least), most === null ? 100 : share(most)];
  const whole = element("span", holds ? "gauge holds" : "gauge");
  whole.setAttribute("aria-hidden", "true");
  const band = element("i", "band");
  Object.assign(band.style, {left: `${from}%`, width: `${Math.max(1, to - from)}%`});
  const mark = element("i", "mark");
  mark.style.left = `${share(value)}%`;
  whole.append(band, mark);
  return whole;
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
    box.setAttribute("role", "presentation");
    const lines = rows.reduce((so, each) => so + 2.4 + 1.25 * each.measures.length + 1.2 * each.log.length, 0);
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
  document.getElementById(`decision-${listed.selected?.index}`)?.setAttribute("aria-selected", "false");
  listed.selected = decision;
  if (!decision) return list.removeAttribute("aria-activedescendant");
  fill(listed.groups[Math.floor(place / kGroup)]);
  const row = document.getElementById(`decision-${decision.index}`);
  row.setAttribute("aria-selected", "true");
  list.setAttribute("aria-activedescendant", row.id);
  const [seen, own] = [list.getBoundingClientRect(), row.getBoundingClientRect()];
  if (own.top < seen.top || own.bottom > seen.bottom) list.scrollTop += own.top - seen.top - seen.height / 3;
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
    button.addEventListener("click", () => {
      const hide = !listed.hidden.delete(verdict);
      if (hide) listed.hidden.add(verdict);
      button.setAttribute("aria-pressed", String(!hide));
      makeList();
    });
    filters.append(button);
  }
}

list.addEventListener("click", event => {
  const row = elementOf(event).closest(".decision");
  if (!row || getSelection().toString()) return;
  cursor.play(false);
  goToDecision(decisions[Number(row.id.slice("decision-".length))]);
});
