#pragma once

#include <string_view>

namespace velox::console
{

/// How report pages look: light or dark as the reader's system is, from the width of a phone, and on paper. Neither '<' nor '&'
/// may stand in it, since the page is XML, too.
inline constexpr std::string_view ReportStyleSheet = R"(
:root { color-scheme: light dark;
  --page: #ffffff; --panel: #f5f7f9; --text: #1b1f24; --muted: #57606a; --line: #c9d1d9; --grid: #dde2e7;
  --wave: #24527a; --good: #116329; --bad: #a40e26; --near: #7a4d00; --shade: #1a7f3726; }
@media (prefers-color-scheme: dark) { :root {
  --page: #14171a; --panel: #1d2125; --text: #e6e8ea; --muted: #a8b1ba; --line: #444c54; --grid: #30363d;
  --wave: #8cc2f2; --good: #6fdd8b; --bad: #ff9c9c; --near: #f0c060; --shade: #6fdd8b2e; } }
* { box-sizing: border-box; }
body { margin: 0 auto; padding: 1.5rem 1rem 3rem; max-width: 64rem; background: var(--page); color: var(--text);
  font: 1rem/1.5 system-ui, "Segoe UI", sans-serif; overflow-wrap: anywhere; }
h1 { font-size: 1.5rem; line-height: 1.25; margin: 0 0 0.75rem; }
h2 { font-size: 1.15rem; line-height: 1.3; margin: 0 0 0.25rem; }
p, ul { margin: 0.25rem 0; }
ul { padding-left: 1.25rem; }
.fixes { list-style-type: "→ "; }
section { margin-top: 2rem; padding-top: 1.25rem; border-top: 1px solid var(--line); }
.verdict { font-weight: 600; }
.verdict .sign { display: inline-block; width: 1.5em; height: 1.5em; margin-right: 0.35em; border: 2px solid currentColor;
  border-radius: 50%; text-align: center; line-height: calc(1.5em - 4px); }
.good .sign, .good .word { color: var(--good); }
.bad .sign, .bad .word { color: var(--bad); }
.muted, .caption, footer { color: var(--muted); font-size: 0.875rem; }
dl { display: grid; grid-template-columns: 10rem 1fr; gap: 0.35rem 1rem; margin: 1rem 0; }
dt { color: var(--muted); }
dd { margin: 0; }
dd .muted { display: block; }
table { width: 100%; border-collapse: collapse; font-size: 0.9375rem; font-variant-numeric: tabular-nums; }
th, td { padding: 0.35rem 0.75rem 0.35rem 0; border-bottom: 1px solid var(--line); text-align: left; vertical-align: top;
  overflow-wrap: break-word; }
th { color: var(--muted); font-weight: 600; }
.figure { display: grid; grid-template-columns: 4.75rem minmax(0, 1fr); column-gap: 0.5rem; margin: 0.75rem 0 0.25rem; }
.figure .caption { grid-column: 2; margin: 0.6rem 0 0.15rem; }
.axis, .time { position: relative; font-size: 0.75rem; color: var(--muted); font-variant-numeric: tabular-nums; }
.axis span { position: absolute; right: 0; transform: translateY(-50%); line-height: 1; background: var(--page); }
.time { grid-column: 2; height: 1.4rem; margin-top: 0.25rem; }
.time span { position: absolute; transform: translateX(-50%); white-space: nowrap; }
.time span.first { transform: none; }
.time span.last { transform: translateX(-100%); }
.lane-name { font-size: 0.8125rem; line-height: 1.25rem; text-align: right; }
svg { display: block; width: 100%; background: var(--panel); overflow: hidden; print-color-adjust: exact; }
svg.sound { height: 6rem; }
svg.quality { height: 4.5rem; }
svg.score { height: 7.5rem; }
.figure svg[class^="lane"] { height: 1rem; margin: 0.125rem 0; }
rect, line, path { vector-effect: non-scaling-stroke; }
.grid { stroke: var(--grid); stroke-width: 1px; }
.curve { fill: none; stroke: var(--wave); stroke-width: 1.25px; stroke-linejoin: round; }
.threshold { stroke: var(--text); stroke-width: 1.5px; stroke-dasharray: 6 4; }
.shade { fill: var(--shade); }
rect.speech { fill: var(--wave); stroke: var(--wave); stroke-width: 1.5px; }
rect.phrase { fill: var(--good); stroke: var(--good); stroke-width: 1.5px; }
rect.near { fill: none; stroke: var(--near); stroke-width: 2px; }
rect.clipped, rect.fault { fill: var(--bad); stroke: var(--bad); stroke-width: 2px; }
.places { columns: 20rem; font-size: 0.875rem; list-style: none; padding: 0; font-variant-numeric: tabular-nums; }
footer { margin-top: 2rem; }
@media (max-width: 40rem) {
  body { padding-top: 1rem; }
  dl { grid-template-columns: 1fr; gap: 0; }
  dd { margin-bottom: 0.6rem; }
  .figure { grid-template-columns: 3.9rem minmax(0, 1fr); }
  thead { display: none; }
  tr { display: block; padding: 0.5rem 0; border-bottom: 1px solid var(--line); }
  td { display: grid; grid-template-columns: 7rem minmax(0, 1fr); gap: 0.5rem; padding: 0.1rem 0; border: 0; }
  td::before { content: attr(data-column); color: var(--muted); }
}
@media print {
  :root { --page: #ffffff; --panel: #ffffff; --text: #000000; --muted: #444444; --line: #999999; --grid: #dddddd;
    --wave: #24527a; --good: #116329; --bad: #a40e26; --near: #7a4d00; --shade: #1a7f3726; color-scheme: light; }
  svg { border: 1px solid var(--line); }
  .figure, tr, dl { break-inside: avoid; }
  h2 { break-after: avoid; }
}
)";

} // namespace velox::console
