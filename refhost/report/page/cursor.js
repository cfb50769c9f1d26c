// The moment that panel, timeline and list show together.

const cursor = {
  time: begin,
  decision: null,
  playing: false,
  speed: 1,
  watchers: [],

  /// Goes to a time, and tells everybody once before the next picture.
  /// @param decision which one is meant, where several are at that time
  go(time, decision = null) {
    this.time = Math.min(Math.max(time, begin), end);
    this.decision = decision;
    this.tell();
  },

  tell() {
    this.pending ??= requestAnimationFrame(() => {
      this.pending = undefined;
      for (const watcher of this.watchers) watcher();
    });
  },

  /// Goes to the landing before or the next.
  hopLanding(forward) {
    const landed = time => countUntil(strokes, time, stroke => stroke.from);
    const stroke = strokes[forward ? landed(this.time) : landed(this.time - 1) - 1];
    if (stroke) this.go(stroke.from);
  },

  play(on) {
    if (on === this.playing) return;
    this.playing = on;
    if (on && this.time >= end) this.time = begin;
    let last = performance.now();
    const step = now => {
      if (!this.playing) return;
      const time = this.time + Math.max(0, now - last) * 1000 * this.speed;
      last = now;
      if (time >= end) this.play(false);
      this.go(time);
      requestAnimationFrame(step);
    };
    if (on) requestAnimationFrame(step);
    this.tell();
  },
};
