// The strip above the time axis.

/// The whole trace in a strip, with the part in view; not shown where that is all.
function drawOverview(width) {
  overview.classList.toggle("idle", timeline.to - timeline.from >= 0.98 * (end - begin));
  const height = 22;
  const context = prepare(overview, width, height);
  const room = width - timeline.gutter - 8;
  const x = time => timeline.gutter + (time - begin) / (end - begin) * room;
  context.fillStyle = colours.line;
  context.fillRect(timeline.gutter, 10, room, 2);
  for (const stroke of strokes) {
    context.fillStyle = colourOf(stroke.states.at(-1)?.verdict ?? "kept");
    context.fillRect(x(stroke.from), 6, Math.max(1, x(stroke.to) - x(stroke.from)), 10);
  }
  for (const decision of decisions) {
    if (decision.verdict !== "cancelled") continue;
    context.fillStyle = colourOf("cancelled");
    context.fillRect(x(decision.time), 0, 1.5, height);
  }
  context.strokeStyle = colours.accent;
  context.lineWidth = 2;
  const [left, right] = [Math.max(x(timeline.from), timeline.gutter), Math.min(x(timeline.to), width - 8)];
  context.strokeRect(left, 1.5, Math.max(3, right - left), height - 3);
  context.fillStyle = colours.muted;
  context.font = "12px system-ui, sans-serif";
  context.textBaseline = "middle";
  context.fillText("all", 4, height / 2);
}
