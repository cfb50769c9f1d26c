// The paths of the fingers, with the verdicts along them, and the fingers at the cursor.

const kMostPaths = 80;     // drawn at a time: some 80 around the cursor
const kMostNumbered = 30;  // paths whose ends have numbers; of more, only those on the glass

/// The paths in view as they are drawn when nothing happens: kept for as long as they are the same.
const paths = {picture: document.createElement("canvas"), of: ""};

/// Those in the timeline's view, as many as can be told apart. Of more, the choice moves on in steps.
function pathsInView(device) {
  const inView = strokes.filter(
    stroke => stroke.device === device && stroke.to >= timeline.from && stroke.from <= timeline.to);
  if (inView.length <= kMostPaths) return inView;
  const step = kMostPaths / 4;
  const middle = Math.floor(countUntil(inView, cursor.time, stroke => stroke.from) / step) * step;
  return inView.slice(Math.max(0, middle - 2 * step), middle + 2 * step);
}

function drawPaths(context, view, surface, width, height) {
  const all = pathsInView(surface.device);
  const down = onGlass(cursor.time).filter(stroke => stroke.device === surface.device);
  const same = [width, height, view.zoom, view.middle, surfaces.indexOf(surface), all.length, all[0]?.number,
                all.at(-1)?.number, colours.kept, onPaper].join();
  if (paths.of !== same) {
    paths.of = same;
    const on = prepare(paths.picture, width, height);
    for (const stroke of all) drawPath(on, view, surface, stroke, false);
    if (all.length <= kMostNumbered) for (const stroke of all) drawEnds(on, view, surface, stroke);
  }
  context.globalAlpha = all.length > 1 && down.length > 0 ? 0.65 : 1;
  context.drawImage(paths.picture, 0, 0, width, height);
  context.globalAlpha = 1;
  for (const stroke of down) {
    drawPath(context, view, surface, stroke, true);
    drawEnds(context, view, surface, stroke);
    drawFinger(context, view, surface, stroke);
  }
}

function drawPath(context, view, surface, stroke, bold) {
  const on = (x, y) => {
    const [shownX, shownY] = toDisplay(surface, x, y);
    return [view.x(shownX), view.y(shownY)];
  };
  context.lineJoin = context.lineCap = "round";
  forStretches(stroke, (verdict, from, to) => {
    context.beginPath();
    context.moveTo(...on(...placeAt(stroke, from)));
    for (let i = countUntil(stroke.times, from, each => each); i < stroke.times.length && stroke.times[i] <= to; ++i) {
      context.lineTo(...on(stroke.xs[i], stroke.ys[i]));
    }
    const {dash, core} = verdicts[verdict];
    context.strokeStyle = colourOf(verdict);
    context.lineWidth = (bold ? 3 : 2) + (core ? 2 : 0);
    context.setLineDash(dash);
    context.stroke();
    if (core) {  // a double line
      context.strokeStyle = colours.glass;
      context.lineWidth = bold ? 2 : 1.2;
      context.stroke();
    }
  });
  context.setLineDash([]);
}

/// Its number, in a disc where it landed and in a frame where it lifted; a cross where it was cancelled.
function drawEnds(context, view, surface, stroke) {
  const at = time => {
    const [x, y] = toDisplay(surface, ...placeAt(stroke, time));
    return [view.x(x), view.y(y)];
  };
  const [fromX, fromY] = at(stroke.from);
  let [toX, toY] = at(stroke.to);
  const size = 8;
  if (Math.hypot(toX - fromX, toY - fromY) < 2.4 * size) toX = fromX + 2.4 * size;
  context.font = "bold 10px system-ui, sans-serif";
  context.textAlign = "center";
  context.textBaseline = "middle";
  const first = stroke.states[0]?.verdict ?? "kept";
  context.beginPath();
  context.arc(fromX, fromY, size, 0, 2 * Math.PI);
  context.fillStyle = colourOf(first);
  context.fill();
  context.fillStyle = colours.glass;
  context.fillText(stroke.number, fromX, fromY + 0.5);
  if (stroke.lift !== null) {
    context.beginPath();
    context.rect(toX - size, toY - size, 2 * size, 2 * size);
    context.fillStyle = colours.glass;
    context.fill();
    context.lineWidth = 1.5;
    context.strokeStyle = context.fillStyle = colourOf(stroke.states.at(-1)?.verdict ?? "kept");
    context.stroke();
    context.fillText(stroke.number, toX, toY + 0.5);
  }
  for (const state of stroke.states) {
    if (state.verdict !== "cancelled") continue;
    const [x, y] = at(state.time);
    context.strokeStyle = colourOf("cancelled");
    context.lineWidth = 2.5;
    context.beginPath();
    for (const side of [-1, 1]) {
      context.moveTo(x - 11, y - 11 * side);
      context.lineTo(x + 11, y + 11 * side);
    }
    context.stroke();
  }
  context.textAlign = "start";
}

/// A finger as it is at the cursor: full where it is passed on, broken where it is taken out.
function drawFinger(context, view, surface, stroke) {
  const [x, y] = toDisplay(surface, ...placeAt(stroke, cursor.time));
  const verdict = verdictAt(stroke, cursor.time);
  context.beginPath();
  context.arc(view.x(x), view.y(y), 16, 0, 2 * Math.PI);
  context.fillStyle = context.strokeStyle = colourOf(verdict);
  context.globalAlpha = 0.22;
  context.fill();
  context.globalAlpha = 1;
  context.lineWidth = 2.5;
  context.setLineDash(verdicts[verdict].dash.length > 0 ? [4, 5] : []);
  context.stroke();
  context.setLineDash([]);
}
