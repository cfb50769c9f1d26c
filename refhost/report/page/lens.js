// How much of the panel is seen: all of it, or a part that the reader has come closer to.

const kMargin = 12;  // CSS pixels around the panel

const lens = {
  zoom: 1,
  centre: null,  // of the display, where it is not all seen
  factor: 1,     // CSS pixels per unit of the display

  fit(surface, width, height) {
    const [left, top, right, bottom] = wholePanel(surface);
    const whole = Math.min((width - 2 * kMargin) / (right - left || 1), (height - 2 * kMargin) / (bottom - top || 1));
    this.factor = whole * this.zoom;
    this.width = width;
    const [middleX, middleY] = this.centre ?? [(left + right) / 2, (top + bottom) / 2];
    this.left = middleX - width / 2 / this.factor;
    this.top = middleY - height / 2 / this.factor;
    this.middle = [middleX, middleY];
  },

  /// Keeps the finger that landed last in sight when the cursor moves.
  follow(surface, width, height) {
    if (this.seen === cursor.time) return;
    this.seen = cursor.time;
    if (this.zoom === 1) return;
    const own = strokes.filter(stroke => stroke.device === surface.device && stroke.from <= cursor.time);
    const stroke = own.filter(each => cursor.time < each.to).at(-1) ?? own.at(-1);
    if (!stroke) return;
    const [x, y] = toDisplay(surface, ...placeAt(stroke, cursor.time));
    const isSeen = (at, room) => at > kMargin && at < room - kMargin;
    if (isSeen(this.x(x), width) && isSeen(this.y(y), height)) return;
    this.centre = [x, y];
    this.fit(surface, width, height);
  },

  x(shown) { return (shown - this.left) * this.factor; },
  y(shown) { return (shown - this.top) * this.factor; },

  /// Comes closer by `by`; what is at a place of the canvas stays there.
  magnify(by, x, y) {
    const zoom = Math.min(Math.max(this.zoom * by, 1), 40);
    if (zoom === 1) return this.reset();
    const [shownX, shownY] = [this.left + x / this.factor, this.top + y / this.factor];
    const share = this.zoom / zoom;
    this.centre = [shownX + (this.middle[0] - shownX) * share, shownY + (this.middle[1] - shownY) * share];
    this.zoom = zoom;
    cursor.tell();
  },

  move(byX, byY) {
    if (this.zoom === 1) return;
    this.centre = [this.middle[0] - byX / this.factor, this.middle[1] - byY / this.factor];
    cursor.tell();
  },

  reset() {
    this.zoom = 1;
    this.centre = null;
    cursor.tell();
  },

  /// To the finger that landed last, and back.
  toFinger() {
    const stroke = onGlass(cursor.time).at(-1) ?? strokes[countUntil(strokes, cursor.time, each => each.from) - 1];
    if (this.zoom > 1 || !stroke) return this.reset();
    this.zoom = 6;
    this.centre = toDisplay(surfaceAt(stroke.device, cursor.time), ...placeAt(stroke, cursor.time));
    cursor.tell();
  },
};

glass.addEventListener("wheel", event => {
  if (stacked() && !event.ctrlKey) return;
  event.preventDefault();
  const box = glass.getBoundingClientRect();
  lens.magnify(Math.exp(-event.deltaY * 0.002), event.clientX - box.left, event.clientY - box.top);
}, {passive: false});
glass.addEventListener("pointerdown", event => lens.zoom > 1 && glass.setPointerCapture(event.pointerId));
glass.addEventListener("pointermove",
                       event => glass.hasPointerCapture(event.pointerId) && lens.move(event.movementX, event.movementY));
glass.addEventListener("dblclick", () => lens.reset());
