// What a rule measured. Each measurement is a row of a grid: name, value, gauge, threshold, margin, and below them its
// cause and what sets its range.

/// Without the noise of a float.
const digits = value => value.toFixed(Math.abs(value - Math.round(value)) < 5e-7 ? 0 : 3);

const amount = (value, unit) => digits(value) + (unit ? " " + unit : "");

const isFact = ({least, most}) => least === null && most === null;  // no condition
const isFlag = ({least, most}) => least === 1 && most === 1;

/// @param follow called with the measurement's cause when its link is clicked
function measureCells(measure, follow) {
  const value = isFlag(measure) ? (measure.value ? "set" : "not set") : amount(measure.value, measure.unit);
  const cells = [element("span", "name", measure.name), element("span", "value", value)];
  if (!isFact(measure)) {
    cells.push(isFlag(measure) ? element("span") : gauge(measure), element("span", "threshold", threshold(measure)),
               element("span", measure.holds ? "margin holds" : "margin", marginText(measure)));
  }
  const origin = originParts(measure, follow);
  if (origin.length > 0) {
    cells.push(element("span", isFact(measure) ? "origin fact" : "origin"));
    cells.at(-1).append(...origin);
  }
  return cells;
}

function threshold({least, most, unit}) {
  if (isFlag({least, most})) return "set";
  if (least === null) return `at most ${amount(most, unit)}`;
  if (most === null) return `at least ${amount(least, unit)}`;
  return `${amount(least, "")} to ${amount(most, unit)}`;
}

function marginText({value, least, most, unit, holds, margin}) {
  if (isFlag({least, most})) return holds ? "yes" : "no";
  const hasTwoEnds = least !== null && most !== null;
  if (holds && hasTwoEnds) return `yes, by ${amount(value - least, "")} and ${amount(most - value, unit)}`;
  if (holds) return `yes, by ${amount(margin, unit)}`;
  return `no, ${amount(-margin, unit)} too ${least !== null && value < least ? "little" : "much"}`;
}

/// The event that the value counts from, as a link, and the property that sets the range.
function originParts(measure, follow) {
  const {cause, setting} = measure;
  const parts = cause ? [causeLink(cause, follow)] : [];
  if (cause?.until) parts.push(` until ${seconds(cause.until)}`);
  const limit = setting ? `setting ${setting}` : isFact(measure) || isFlag(measure) ? "" : "fixed";
  if (limit) parts.push(cause ? ` \u00B7 ${limit}` : limit);
  return parts;
}

/// Its address opens the same time in another tab.
function causeLink(cause, follow) {
  const name = cause.key === undefined ? cause.event : `${cause.event} ${cause.key}`;
  const link = element("a", "cause", `${name} at ${seconds(cause.time)}`);
  link.href = `#t=${(cause.time / 1e6).toFixed(3)}`;
  link.addEventListener("click", event => {
    if (event.ctrlKey || event.metaKey || event.shiftKey) return;
    event.preventDefault();
    follow(cause);
  });
  return link;
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
