#pragma once

namespace spx::console {

/// The style sheet of a report: light and dark, for screens, telephones and paper.
inline constexpr char HTML_STYLE[] = R"css(
:root { --text: #1c2733; --soft: #5a6672; --line: #d5dce2; --page: #ffffff; --card: #f5f7f9; --link: #0b5cad; }
@media (prefers-color-scheme: dark) {
  :root { --text: #e4e8ec; --soft: #a4afb9; --line: #3a444e; --page: #14191f; --card: #1d242c; --link: #7db8f0; }
}
* { box-sizing: border-box; }
html { scroll-behavior: smooth; }
body { margin: 0 auto; max-width: 64rem; padding: 1.5rem 1rem 4rem; background: var(--page); color: var(--text);
  font: 1rem/1.5 system-ui, "Segoe UI", "DejaVu Sans", sans-serif; }
h1 { font-size: 1.9rem; line-height: 1.2; margin: 0 0 .3rem; }
h2 { font-size: 1.4rem; margin: 2.6rem 0 .6rem; padding-top: .6rem; border-top: 2px solid var(--line); }
h3 { font-size: 1.08rem; margin: 1.6rem 0 .4rem; }
p, li { max-width: 46rem; }
a { color: var(--link); }
header p, figcaption, .note { color: var(--soft); margin: .2rem 0; }
header img { float: right; max-height: 6rem; max-width: 12rem; }
nav ul { columns: 2; padding-left: 1.2rem; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; font-size: .88rem; font-variant-numeric: tabular-nums; margin: .4rem 0; }
caption { text-align: left; color: var(--soft); padding: .2rem 0; }
th, td { padding: .2rem .6rem .2rem 0; text-align: left; vertical-align: top; border-bottom: 1px solid var(--line);
  unicode-bidi: isolate; overflow-wrap: break-word; max-width: 24rem; }
thead th { border-bottom-width: 2px; }
tbody th { font-weight: 500; }
th.part { padding-left: 1.2rem; font-weight: 400; }
td.n, th.n { text-align: right; }
.figures { display: grid; grid-template-columns: repeat(auto-fill, minmax(9.5rem, 1fr)); gap: .6rem; margin: .8rem 0; }
.figures div { background: var(--card); border-radius: .4rem; padding: .6rem .8rem; }
.figures b { display: block; font-size: 1.35rem; }
.figures span { color: var(--soft); font-size: .85rem; }
figure { margin: 1rem 0; }
figure svg { width: 45rem; max-width: 100%; height: auto; }
details { margin: .3rem 0; }
summary { color: var(--soft); cursor: pointer; }
dl { font-size: .88rem; } dt { font-weight: 600; } dd { margin: 0 0 .3rem 1rem; }
.cards { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(19rem, 100%), 1fr)); gap: .6rem; }
.card { background: var(--card); border-radius: .4rem; padding: .5rem .8rem; break-inside: avoid; min-width: 0;
  overflow-wrap: anywhere; }
.card p { margin: .2rem 0; font-size: .92rem; }
.pedigree { font-size: .78rem; width: 100%; table-layout: fixed; }
.pedigree tr { height: 1.6em; }
.pedigree td { vertical-align: middle; padding: .1rem .3rem; border: 1px solid var(--line); }
h1, h2, h3, li, p, figcaption, summary { overflow-wrap: anywhere; }
.card h4 { margin: 0; font-size: 1rem; }
bdi { unicode-bidi: isolate; }
@media (prefers-color-scheme: dark) { figure svg { background: #ffffff; border-radius: .4rem; } }
@media (max-width: 36rem) { nav ul { columns: 1; } h1 { font-size: 1.5rem; } }
@media print {
  :root { --text: #000; --soft: #444; --line: #bbb; --page: #fff; --card: #f4f4f4; --link: #000; }
  body { max-width: none; font-size: 10pt; } nav { display: none; } a { text-decoration: none; }
  h2, h3, caption { break-after: avoid; } figure, tr { break-inside: avoid; } .scroll { overflow: visible; }
  details:not([open]) { display: none; } figure svg { width: 36rem; } .cards { grid-template-columns: 1fr 1fr; }
}
)css";

}  // namespace spx::console
