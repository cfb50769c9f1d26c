// The report in a real browser, as an engineer uses it: ./run test-browser.

import assert from "node:assert/strict";
import {execFileSync} from "node:child_process";
import {mkdtempSync, readFileSync, rmSync, writeFileSync} from "node:fs";
import {tmpdir} from "node:os";
import {fileURLToPath} from "node:url";
import {after, before, test} from "node:test";
import {chromium} from "playwright-core";

const root = fileURLToPath(new URL("../..", import.meta.url));
const folder = mkdtempSync(`${tmpdir()}/zqaft-report-`);
const zqaft = (...words) => execFileSync(`${root}/build/release/bin/zqaft`, words, {cwd: root, maxBuffer: 1 << 28});

const examples = [
  ["phone", "swipe-from-sensor"], ["phone", "unlock"], ["phone", "key-held-back"], ["phone-navigation-bar", "navigation-bar"],
  ["phone-in-call", "call"], ["phone-landscape", "notch"], ["phone-slide-cover", "slide-cover"],
  ["phone-slide-cover-settles", "slide-cover"], ["phone-sensor-service-dies", "slide-cover"], ["phone-foldable", "folding"],
];
const played = ([profile, recording]) => ["--profile", `examples/${profile}.yaml`, `examples/${recording}.getevent`];

let browser;
before(async () => {
  const asRoot = process.getuid() === 0 ? ["--no-sandbox"] : [];
  browser = await chromium.launch({
    executablePath: "/usr/bin/chromium",
    args: [...asRoot, "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
           "--disable-component-update", "--disable-sync"]});
});
after(async () => {
  await browser.close();
  rmSync(folder, {recursive: true});
});

/// Opens the report of what is played. `faults` gathers what the console says and what the page reaches for.
/// @param edit changes the page's text before it is opened
async function open(words, {hash = "", edit = null, ...settings} = {}) {
  zqaft("report", ...words, "-o", `${folder}/report.html`);
  if (edit) writeFileSync(`${folder}/report.html`, edit(readFileSync(`${folder}/report.html`, "utf8")));
  const page = await browser.newPage({viewport: {width: 1280, height: 800}, ...settings});
  page.faults = [];
  page.on("console", message => page.faults.push(message.text()));
  page.on("pageerror", fault => page.faults.push(fault.message));
  page.on("request", request => request.url().startsWith("file:") || page.faults.push(request.url()));
  await page.addInitScript(record);
  await page.goto(`file://${folder}/report.html${hash}`);
  return page;
}

/// Keeps what is drawn: `where` in CSS pixels, on the canvas with this id ("": one that is copied to another).
function record() {
  globalThis.drawn = [];
  for (const how of ["rect", "fillRect", "fillText", "arc", "stroke"]) {
    const draw = CanvasRenderingContext2D.prototype[how];
    CanvasRenderingContext2D.prototype[how] = function (...where) {
      const hatched = this.fillStyle instanceof CanvasPattern;
      drawn.push({on: this.canvas.id, how, where, hatched, dash: this.getLineDash().join(), width: this.lineWidth});
      return draw.apply(this, where);
    };
  }
}

/// What the three say of the cursor.
const shown = page => page.evaluate(async () => {
  await new Promise(requestAnimationFrame);
  await new Promise(requestAnimationFrame);
  return {
    time: document.getElementById("axis").getAttribute("aria-valuenow"),
    fingers: document.getElementById("fingers").textContent,
    panel: document.getElementById("glass").toDataURL(),
    axis: document.getElementById("axis").toDataURL(),
    row: document.querySelector("[aria-selected=true]")?.querySelector("time").textContent,
    subject: document.querySelector("[aria-selected=true]")?.querySelector(".subject").textContent,
  };
});

/// All that is drawn when the timeline is shown whole.
async function picture(page) {
  await shown(page);
  await page.evaluate(() => { drawn.length = 0; });
  await page.keyboard.press("0");
  await shown(page);
  return page.evaluate(() => drawn);
}

/// Of the panel, then of its areas: left, top, width, height.
const rectangles = drawn => drawn.filter(({on, how}) => on === "glass" && how === "rect").map(({where}) => where);

// The engineer would open a bug's report and see an empty box, a part of the decisions, or nothing without a network.
test("every example is drawn, with all of its decisions", async () => {
  for (const example of examples) {
    const page = await open(played(example));
    const explained = zqaft("explain", "--json", ...played(example)).toString().trim().split("\n").map(JSON.parse);
    await page.waitForFunction(count => document.querySelectorAll(".decision").length === count, explained.length);
    const rows = await page.$$eval(".decision", all => all.map(row => ["verdict", "subject", "rule", "filter"]
      .map(part => row.querySelector("." + part)?.textContent.replace(/^. /, "") ?? "").join("|")));
    assert.deepEqual(rows.sort(), explained.map(({verdict, subject, rule, filter}) =>
      [verdict, subject, ...(verdict === "noted" ? ["", ""] : [rule, filter])].join("|")).sort());
    assert.equal(await page.locator(".log").count(), explained.flatMap(decision => decision.log).length);
    assert.deepEqual(page.faults, []);
    assert.equal(await page.evaluate(() => fetch("data:,").then(() => "reached", () => "kept in")), "kept in");
    await page.close();
  }
});

// A finger would be drawn as passed on while it was taken out, or beside the area that it was in.
test("the picture says what happened: stretches, marks, lines and numbers, to scale", async () => {
  const page = await open(played(examples[0]), {hash: "#t=60.1"});
  const opened = await shown(page).then(() => page.evaluate(() => drawn));
  for (const number of [2, 3]) assert.ok(opened.some(({on, where}) => on === "" && where[0] === number), `finger ${number}, which is up`);
  assert.ok(opened.some(({on, how, dash}) => on === "" && how === "stroke" && dash === "1,6"), "and its path");
  const drawn = await picture(page);
  const texts = drawn.filter(({how}) => how === "fillText").map(({where}) => where[0]);
  for (const text of ["finger 0", "finger 1", "key 516", "key 601", "orientation", "portrait 0", "filter area", "1 \u25CC", "\u21BA", "\u25A0", 1]) {
    assert.ok(texts.includes(text), `${text}`);
  }
  const [first, second] = drawn.filter(({how, hatched}) => how === "fillRect" && hatched).map(({where}) => where);
  const aSecond = (second[0] - first[0]) / (60.989 - 60.062);  // in pixels
  assert.ok(Math.abs(first[2] - (60.128 - 60.062) * aSecond) < 2, "taken out until it is restored");
  assert.ok(Math.abs(second[2] - (61.375 - 60.989) * aSecond) < 2, "taken out until it lifts");
  const cursor = drawn.find(({on, how}) => on === "axis" && how === "fillRect").where;
  assert.ok(Math.abs(cursor[0] + 1 - first[0] - (60.1 - 60.062) * aSecond) < 2, "the cursor is on the time axis");
  const [panel, , area] = rectangles(drawn);
  const unit = panel[2] / 1079;
  const [x, y] = drawn.find(({on, how, where}) => on === "glass" && how === "arc" && where[2] === 16).where;
  const {fingers} = await shown(page);
  const near = (one, other) => assert.ok(one.every((at, i) => Math.abs(at - other[i]) < 2), `${one}: ${other}`);
  near([(x - panel[0]) / unit, (y - panel[1]) / unit], fingers.match(/\((\d+), (\d+)\)/).slice(1));
  near([(area[0] - panel[0]) / unit, (area[1] - panel[1]) / unit, area[2] / unit, area[3] / unit], [400, 2100, 280, 240]);
  const lines = drawn.filter(({on, how}) => on === "glass" && how === "stroke").map(({dash, width}) => `${dash}/${width}`);
  for (const line of ["1,6/3", "/5"]) assert.ok(lines.includes(line), `held back is dotted, restored double: ${lines}`);

  await page.close();
  const cover = await open(played(examples[6]));
  const {height} = await cover.locator("#axis").boundingBox();
  const marks = await picture(cover);
  assert.ok(marks.some(({how, where}) => how === "fillRect" && where[2] === 1.5 && where[3] >= height), "the cancel goes across");
  assert.ok(marks.some(({where}) => where[0] === "state 2"), "the cover");
  await cover.close();
  const turned = await open(played(examples[5]));
  const areas = await picture(turned);
  const [held, , band] = rectangles(areas);
  const size = held[2] / 2339;
  near([held[3] / size, band[0] - held[0], band[1] - held[1], band[2] / size, band[3] / size], [1079, 0, 0, 100, 1079]);
  const hand = areas.find(({on, how, where}) => on === "glass" && how === "arc" && where[2] === 16).where;
  near([(hand[0] - held[0]) / size, (hand[1] - held[1]) / size], [37, 1079 - 556]);
  await turned.close();
  const bar = await open(played(examples[3]), {hash: "#t=60.06"});
  assert.ok((await picture(bar)).some(({where}) => where[0] === "navigation bar, preferred"), "the window that matters");
  await bar.close();
});

// Panel, timeline and list would show three different moments.
test("the cursor moves all three: dragged, by a click on a decision, and by the address", async () => {
  const page = await open(played(examples[0]), {hash: "#t=60.1"});
  const opened = await shown(page);
  assert.equal(opened.time, "60.100");
  assert.match(opened.fingers, /finger 0 \(1\) at \(54\d, 22\d\d\): held back/);
  const axis = await page.locator("#axis").boundingBox();
  await page.mouse.move(axis.x + 200, axis.y + 60);
  await page.mouse.down();
  await page.mouse.move(axis.x + 330, axis.y + 60);
  await page.mouse.up();
  const dragged = await shown(page);
  for (const part of ["time", "fingers", "panel", "axis", "row"]) assert.notEqual(dragged[part], opened[part], part);
  assert.ok(parseFloat(dragged.row) <= Number(dragged.time));
  assert.match(dragged.fingers, /finger 0 \(1\) at \(\d+, \d+\): restored/);
  const lost = page.locator(".decision", {hasText: "no-gesture"});
  assert.match(await lost.textContent(), /x in the area531400 to 680yes, by 131 and 149setting ro\.zqaft\.tpfp\.filter_area/);
  assert.match(await lost.textContent(), /moved up-1at least 40no, 41 too littlelanding at 60\.989 s \u00B7 fixed/);
  assert.equal(await lost.locator(".gauge .mark").count(), 5);
  await lost.click();
  const clicked = await shown(page);
  assert.equal(clicked.time, "61.375");
  assert.equal(clicked.subject, "finger 0 at (531, 2262)");
  assert.notEqual(clicked.panel, dragged.panel);
  assert.ok(await lost.locator(".meaning").isVisible());
  await page.evaluate(() => { location.hash = "#t=60.128"; });
  assert.deepEqual(await shown(page).then(({row, fingers}) => [row, /restored/.test(fingers)]), ["60.128 s", true]);

  const ticks = (await picture(page)).filter(({how, where}) => how === "fillRect" && where[2] === 1.5 && where[3] === 6);
  await page.mouse.click(axis.x + ticks[2].where[0] + 4, axis.y + 60);
  assert.equal((await shown(page)).time, "60.062", "a press beside a decision means the decision");
  await page.mouse.click(axis.x + 20, axis.y + 60);
  assert.equal((await shown(page)).time, "60.062", "a lane's name is no time");
  for (let i = 0; i < 3; ++i) await page.keyboard.press("+");
  const part = (await shown(page), await page.textContent("#extent"));
  await page.mouse.move(axis.x + 300, axis.y + 60);
  await page.mouse.down();
  for (const beyond of [0, 9, 18]) {
    await page.mouse.move(axis.x + axis.width + beyond, axis.y + 60);
    assert.equal((await shown(page), await page.textContent("#extent")), part, "the view stays where it is dragged over");
  }
  await page.mouse.up();
  await page.close();
  const call = await open(played(examples[4]));  // its first three decisions are at one time
  for (const at of [1, 0]) {
    await call.locator(".decision").nth(at + 1).click();
    assert.equal((await shown(call)).subject, ["finger 0 at (299, 699)", "gesture of finger 0"][at]);
  }
  await call.keyboard.press("ArrowDown");
  assert.equal((await shown(call)).subject, "gesture of finger 0");
});

// The engineer would see a limit without a way to change it, and a delay without the event that it counts from.
test("a measurement leads to its cause, by mouse and by keys, and says what sets its range", async () => {
  const edit = text => text.replaceAll("60335897000", "60061997000");  // finger 1 lands with finger 0
  const page = await open(played(examples[0]), {hash: "#t=60.062", edit});
  const headline = await page.textContent("#facts");
  assert.match(headline, /^fingers 3: 1 kept, 1 restored \(66 ms late\), 1 lost \u00B7 65 frames \u00B7/);
  await page.locator("#filters button", {hasText: "consumed"}).click();
  await page.locator(".decision", {hasText: "finger-on-sensor"}).first().locator(".cause").click();
  let now = await shown(page);
  assert.deepEqual([now.subject, now.time], ["key 516 down", "60.000"], "although its kind was hidden");
  assert.equal(await page.locator("#filters [aria-pressed=false]").count(), 0);
  assert.equal(await page.evaluate(() => document.activeElement.id), "list");

  await page.locator(".decision", {hasText: "moved-up"}).click();
  await shown(page);
  await page.focus("#list");
  await page.keyboard.press("Tab");
  const focused = () => page.evaluate(() => document.activeElement.textContent);
  assert.equal(await focused(), "landing at 60.062 s", "of the selected row");
  for (let i = 0; i < 3; ++i) await page.keyboard.press("Tab");
  assert.notEqual((await focused()).slice(0, 7), "landing", "past the three links of the selected row, and no others");
  await page.keyboard.press("Shift+Tab");
  await page.keyboard.press("Enter");
  now = await shown(page);
  assert.deepEqual([now.subject, now.time], ["finger 0 at (548, 2230)", "60.062"]);
  assert.match(await page.textContent("[aria-selected=true] .verdict"), /held back/);
  assert.deepEqual(page.faults, []);
  await page.close();

  const waits = await open(played(examples[2]));  // the landing is another decision's, at the time of one that is noted
  await waits.locator(".decision", {hasText: "waits-for-finger"}).first().locator(".cause").click();
  assert.equal((await shown(waits)).subject, "finger 0 at (537, 2240)");
  assert.match(await waits.textContent(".decision:has-text('re-sent')"), /key held for69\.997 msat least 1 msyes, by 68\.997 ms/);
  await waits.close();
  const cover = await open(played(examples[6]));
  const fact = cover.locator(".decision", {hasText: "cover-moved"});
  assert.match(await fact.textContent(), /cover state2cover state at 61\.250 scover state before0mCur/);
  assert.match(await cover.textContent(".decision:has-text('reported')"), /landing at 61\.000 s until 61\.250 s \u00B7 fixed/);
  await fact.locator(".cause").click();
  assert.deepEqual(await shown(cover).then(({time, subject}) => [time, subject]), ["61.250", "slide-cover cover-state"]);
  await cover.close();
});

// The report of another build's library would be empty, or say that a rule means "undefined".
test("rules that this build does not know, and decisions without one, are listed", async () => {
  const edit = text => text.replaceAll('"rule":"finger-on-sensor"', '"rule":"from-another-build"')
    .replaceAll('"rule":"moved-up"', '"rule":""');
  const page = await open(played(examples[0]), {hash: "#t=60.062", edit});
  const selected = page.locator("[aria-selected=true]");
  await shown(page);
  assert.equal(await selected.locator(".rule").textContent(), "from-another-build");
  assert.equal(await selected.locator(".meaning").count(), 0);
  await page.keyboard.press("ArrowDown");
  assert.match((await shown(page), await selected.textContent()), /restoredfinger 0 at \(548, 2230\)x in the area/);
  assert.deepEqual(page.faults, []);
  await page.close();
});

// One odd line in a bug's trace, and the page would hang, be empty, or be as long as a street.
test("odd traces are drawn, too", async () => {
  const panel = '"call":"configureSurface","device":3,"width":9,"height":9999,"orientation":0,"rawX":[0,9],"rawY":[0,9999]';
  const sample = i => `{"t":${100 + i}000000,"platform":"sensorEvent","type":1,"handle":1,"timestamp":0,"values":[${i % 7}]}\n`;
  writeFileSync(`${folder}/odd`, `{"trace":"zqaft","version":1,"devices":[{"id":3,"name":"panel"}]}
{"t":100000000,${panel}}
{"call":"processInputWindow","windows":[{"name":"${"a".repeat(1e6)}/"}],"focused":0}
${Array.from({length: 150000}, (_, i) => sample(i)).join("")}{"call":"processRawTouches","device":3,"when":150100000000,"pointers":[{"id":7,"x":5,"y":50}]}
`);
  const page = await open([`${folder}/odd`]);
  await page.keyboard.press("End");
  await page.keyboard.press("0");
  assert.match((await shown(page)).fingers, /finger 7 \(1\) at \(5, 50\): kept/);
  assert.ok(await page.evaluate(() => document.getElementById("glass").clientHeight < innerHeight));
  assert.deepEqual(page.faults, []);
});

// Without a mouse the engineer would be stuck at the first moment.
test("the keyboard alone is enough", async () => {
  const page = await open(played(examples[0]));
  const times = [];
  for (const key of ["Home", "ArrowDown", "ArrowDown", "ArrowUp", "ArrowRight", "Shift+ArrowRight", "ArrowLeft", "PageDown", "PageUp", "End"]) {
    await page.keyboard.press(key);
    times.push((await shown(page)).time);
  }
  assert.deepEqual(times, ["60.000", "60.062", "60.128", "60.062", "60.070", "60.154", "60.146", "60.336", "60.062", "61.375"]);
  const whole = await page.textContent("#extent");
  await page.keyboard.press("+");
  assert.notEqual((await shown(page), await page.textContent("#extent")), whole);
  await page.keyboard.press("0");
  assert.equal((await shown(page), await page.textContent("#extent")), whole);
  const far = (await shown(page)).panel;
  await page.keyboard.press("z");
  assert.notEqual((await shown(page)).panel, far);
  await page.keyboard.press("Home");
  await page.keyboard.press(" ");
  await page.waitForFunction(() => Number(document.getElementById("axis").getAttribute("aria-valuenow")) > 60.3);
  await page.waitForFunction(() => document.getElementById("play").textContent === "Play");  // stops where the trace ends
  assert.equal((await shown(page)).time, "61.375");
  assert.deepEqual(page.faults, []);
});

// Of an hour, decisions would be missing, or the chosen one would be somewhere out of sight.
test("a long trace shows each decision where the cursor is, and hides the kinds that are not wanted", async () => {
  const tap = (at, pointers) =>
    `{"t":${at}000000,"call":"processRawTouches","device":3,"when":${at}000000,"pointers":[${pointers}]}\n`;
  let trace = '{"trace":"zqaft","version":1,"devices":[{"id":3,"name":"panel"}]}\n';
  for (let i = 0; i < 900; ++i) trace += tap(1000 + 500 * i, `{"id":0,"x":${i},"y":9}`) + tap(1100 + 500 * i, "");
  writeFileSync(`${folder}/long`, trace);
  const page = await open([`${folder}/long`]);
  for (const key of ["End", "PageUp", "PageUp", "Home"]) {
    await page.keyboard.press(key);
    const {time} = await shown(page);
    const inSight = await page.evaluate(() => {
      const [row, list] = [document.querySelector("[aria-selected=true]"), document.getElementById("list")]
        .map(each => each.getBoundingClientRect());
      return row.top >= list.top - 2 && row.bottom <= list.bottom + 2;
    });
    assert.ok(inSight, `${key}, ${time}`);
  }
  await page.waitForFunction(() => document.querySelectorAll(".decision").length === 901);
  await page.locator("#filters button", {hasText: "kept"}).click();
  await page.waitForFunction(() => document.querySelectorAll(".decision").length === 1);  // no filter area: that is noted
  await page.locator("#filters button", {hasText: "kept"}).click();
  await page.waitForFunction(() => document.querySelectorAll(".decision").length === 901);
  assert.deepEqual(page.faults, []);
});

// In the dark the page would blind; on a phone it would have to be pushed about; on paper decisions would be missing.
test("it is dark where that is preferred, fits a narrow screen, and prints all", async () => {
  const page = await open(played(examples[5]), {colorScheme: "dark", viewport: {width: 390, height: 844}});
  const brightness = () => page.evaluate(() =>
    Number(getComputedStyle(document.body).backgroundColor.match(/\d+/)[0]));
  assert.ok(await brightness() < 60);
  assert.ok(await page.evaluate(() => document.documentElement.scrollWidth) <= 390);
  for (const width of [821, 853, 960, 1100, 1280, 1720]) {
    await page.setViewportSize({width, height: 768});
    const broken = await page.evaluate(() => {
      const right = document.getElementById("list").getBoundingClientRect().right;
      return [...document.querySelectorAll(".margin, .origin")].map(each => each.getBoundingClientRect())
        .filter(box => box.height > 24 || box.right > right).length;
    });
    assert.equal(broken, 0, `margins and causes at ${width}`);
  }
  const paper = (await page.pdf({format: "A4"})).length;
  assert.ok(paper > 20000, `${paper} bytes`);
  await page.evaluate(() => dispatchEvent(new Event("beforeprint")));
  assert.ok(await brightness() > 200);
  await page.evaluate(() => dispatchEvent(new Event("afterprint")));
  assert.ok(await brightness() < 60);
  assert.deepEqual(page.faults, []);
});
