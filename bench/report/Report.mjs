// How a report grows with its trace: a minute and an hour of gestures at 120 Hz, in one run. ./run bench-report

import {execFileSync} from "node:child_process";
import {closeSync, mkdtempSync, openSync, rmSync, statSync, writeSync} from "node:fs";
import {tmpdir} from "node:os";
import {fileURLToPath} from "node:url";
import {chromium} from "../../tests/browser/node_modules/playwright-core/index.mjs";

const root = fileURLToPath(new URL("../..", import.meta.url));
const folder = mkdtempSync(`${tmpdir()}/zqaft-bench-`);
const kFrame = 8_333_000;  // ns

/// The same numbers every time, 0 to 1.
let seed = 1;
const random = () => (seed = (seed * 48271) % 2147483647) / 2147483647;
const noise = size => (random() + random() + random() - 1.5) * 2 * size;

/// Writes gestures of one or two fingers of up to two seconds, every fourth over the sensor after its key.
function writeTrace(path, seconds) {
  const file = openSync(path, "w");
  const line = fields => writeSync(file, JSON.stringify(fields) + "\n");
  line({trace: "zqaft", version: 1, properties: {"ro.zqaft.tpfp.filter_area": "400,2100,680,2340"},
        devices: [{id: 3, name: "touchpanel"}, {id: 5, name: "fingerprint", sources: 257}]});
  let t = 60e9;
  line({t, call: "configureSurface", device: 3, width: 1080, height: 2340, orientation: 0, rawX: [0, 1079], rawY: [0, 2339]});
  for (let gesture = 0; t < (60 + seconds) * 1e9; ++gesture) {
    const near = gesture % 4 === 0;
    if (near) line({t, call: "processKey", device: 5, when: t, keyCode: 516, down: true});
    const fingers = Array.from({length: gesture % 7 === 0 ? 2 : 1}, (_, id) => ({
      id, x: near ? 440 + 200 * random() : 1079 * random(), y: near ? 2150 + 150 * random() : 2000 * random(),
      across: noise(4), down: noise(6) - 4}));
    for (let left = 20 + 200 * random(); left > 0; --left, t += kFrame) {
      const pointers = fingers.map(finger => {
        const within = (place, most) => Math.min(Math.max(place, 0), most);
        finger.x = within(finger.x + (finger.across += noise(0.5)) + noise(0.4), 1079);
        finger.y = within(finger.y + (finger.down += noise(0.5)) + noise(0.4), 2339);
        return {id: finger.id, x: Math.round(finger.x), y: Math.round(finger.y)};
      });
      line({t, call: "processRawTouches", device: 3, when: t, pointers});
    }
    line({t, call: "processRawTouches", device: 3, when: t, pointers: []});
    t += Math.round(0.3e9 * random());
  }
  closeSync(file);
}

/// Milliseconds between pictures while the cursor goes by keys, from decision to landing to frame: median, p95.
const scrub = page => page.evaluate(async () => {
  const gaps = [];
  let last = performance.now();
  for (let i = 0; i < 240; ++i) {
    const key = ["ArrowRight", "ArrowDown", "PageDown"][i % 3];
    document.body.dispatchEvent(new KeyboardEvent("keydown", {key, bubbles: true}));
    await new Promise(requestAnimationFrame);
    gaps.push(performance.now() - last);
    last = performance.now();
  }
  gaps.sort((one, other) => one - other);
  return [gaps[120], gaps[228]];
});

async function measure(browser, seconds) {
  const [trace, report] = [`${folder}/${seconds}.trace.jsonl`, `${folder}/${seconds}.html`];
  writeTrace(trace, seconds);
  const start = performance.now();
  execFileSync(`${root}/build/release/bin/zqaft`, ["report", trace, "-o", report], {stdio: "ignore"});
  const figures = {"trace, MB": statSync(trace).size / 1e6, "report, MB": statSync(report).size / 1e6,
                   "written in, ms": performance.now() - start};
  const page = await browser.newPage({viewport: {width: 1280, height: 800}});
  await page.goto(`file://${report}`);
  figures["first picture, ms"] =
    await page.evaluate(() => performance.getEntriesByName("first-picture")[0].startTime);
  await page.waitForFunction(() => !document.querySelector(".group:empty"));
  [figures["scrub, median ms"], figures["scrub, p95 ms"]] = await scrub(page);
  await page.keyboard.press("Home");
  await page.keyboard.press("0");
  [figures["whole in view, median ms"], figures["whole in view, p95 ms"]] = await scrub(page);
  await page.close();
  return figures;
}

const asRoot = process.getuid() === 0 ? ["--no-sandbox"] : [];
const browser = await chromium.launch({executablePath: "/usr/bin/chromium", args: [...asRoot, "--disable-gpu"]});
const [minute, hour] = [await measure(browser, 60), await measure(browser, 3600)];
await browser.close();
rmSync(folder, {recursive: true});
console.log(`${"".padEnd(28)}${"minute".padStart(10)}${"hour".padStart(10)}${"ratio".padStart(10)}`);
for (const name of Object.keys(hour)) {
  const cells = [minute[name], hour[name], hour[name] / minute[name]];
  console.log(name.padEnd(28) + cells.map(cell => cell.toFixed(cell < 10 ? 2 : 0).padStart(10)).join(""));
}
