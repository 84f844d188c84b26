#include "internet/web_server.h"

namespace tavora {

// Titles and artists only ever reach the page through textContent: a title
// holding markup shows as text.
const char* const kWebPageHtml = R"HTML(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="theme-color" content="#101522">
<title>Tavora · Request a song</title>
<link rel="stylesheet" href="/app.css">
</head>
<body>
<header class="top">
  <div class="brand"><span class="logo" aria-hidden="true">&#9835;</span> Tavora</div>
  <div id="mode" class="mode idle">Off air</div>
</header>
<main>
  <section class="card now" aria-live="polite">
    <div class="label">Now playing</div>
    <div id="now-title" class="now-title">&nbsp;</div>
    <div id="now-artist" class="now-artist">&nbsp;</div>
    <div class="bar"><div id="now-bar" class="fill"></div></div>
    <div class="times"><span id="now-pos"></span><span id="now-left"></span></div>
  </section>
  <div class="columns">
    <section class="card">
      <h2>Up next</h2>
      <ol id="next" class="tracks"></ol>
    </section>
    <section class="card">
      <h2>Just played</h2>
      <ol id="last" class="tracks"></ol>
    </section>
  </div>
  <section class="card request">
    <h2>Request a song</h2>
    <form id="search" role="search">
      <input id="q" type="search" placeholder="Search titles and artists" autocomplete="off"
             aria-label="Search titles and artists">
    </form>
    <div id="count" class="count"></div>
    <ul id="results" class="results"></ul>
    <nav class="pager">
      <button id="prev" type="button">&#8249; Back</button>
      <span id="pageinfo"></span>
      <button id="more" type="button">More &#8250;</button>
    </nav>
  </section>
</main>
<div id="toast" class="toast" role="status"></div>
<!--BOOT-->
<script src="/app.js"></script>
</body>
</html>
)HTML";

const char* const kWebPageStyle = R"CSS(
:root { --bg:#0d1220; --card:#161d30; --line:#263051; --text:#eef1fa; --dim:#97a1c0;
  --accent:#ff9f43; --accent2:#ffbe76; --ok:#2ecc71; --warn:#ff6b6b; }
* { box-sizing:border-box; }
body { margin:0; background:radial-gradient(1200px 600px at 10% -10%, #1f2a4d 0%, var(--bg) 60%);
  color:var(--text); font:16px/1.45 system-ui, -apple-system, "Segoe UI", Roboto, sans-serif;
  min-height:100vh; }
.top { display:flex; align-items:center; justify-content:space-between; padding:14px 18px;
  max-width:1100px; margin:0 auto; }
.brand { font-weight:800; font-size:22px; letter-spacing:.5px; }
.logo { display:inline-grid; place-items:center; width:34px; height:34px; border-radius:10px;
  background:linear-gradient(135deg, var(--accent), #e55039); margin-right:6px; }
.mode { font-size:13px; text-transform:uppercase; letter-spacing:1px; padding:5px 10px;
  border-radius:999px; border:1px solid var(--line); color:var(--dim); }
.mode.running { color:#0d1220; background:var(--ok); border-color:var(--ok); }
.mode.paused, .mode.break { color:#0d1220; background:var(--accent2); border-color:var(--accent2); }
main { max-width:1100px; margin:0 auto; padding:0 14px 40px; }
.card { background:var(--card); border:1px solid var(--line); border-radius:16px; padding:16px 18px;
  margin:12px 0; box-shadow:0 10px 30px rgba(0,0,0,.25); }
h2 { margin:0 0 10px; font-size:14px; text-transform:uppercase; letter-spacing:1.2px;
  color:var(--dim); }
.label { font-size:12px; text-transform:uppercase; letter-spacing:1.5px; color:var(--accent2); }
.now-title { font-size:28px; font-weight:800; margin-top:4px; overflow-wrap:anywhere; }
.now-artist { font-size:18px; color:var(--dim); overflow-wrap:anywhere; }
.bar { height:6px; background:#0b1020; border-radius:3px; margin-top:14px; overflow:hidden; }
.fill { height:100%; width:0; background:linear-gradient(90deg, var(--accent), #e55039);
  transition:width 1s linear; }
.times { display:flex; justify-content:space-between; font-size:13px; color:var(--dim);
  margin-top:6px; font-variant-numeric:tabular-nums; }
.columns { display:grid; grid-template-columns:1fr 1fr; gap:12px; }
.columns .card { margin:0; }
.tracks { list-style:none; margin:0; padding:0; }
.tracks li { padding:7px 0; border-bottom:1px solid var(--line); overflow-wrap:anywhere; }
.tracks li:last-child { border-bottom:0; }
.tracks .t { font-weight:600; }
.tracks .a { color:var(--dim); font-size:14px; }
.tracks .empty { color:var(--dim); font-style:italic; }
#q { width:100%; font-size:17px; padding:12px 14px; border-radius:12px; border:1px solid var(--line);
  background:#0b1020; color:var(--text); outline:none; }
#q:focus { border-color:var(--accent); }
.count { color:var(--dim); font-size:13px; margin:10px 2px; }
.results { list-style:none; margin:0; padding:0; }
.results li { display:flex; align-items:center; gap:12px; padding:10px 2px;
  border-bottom:1px solid var(--line); }
.results .info { flex:1; min-width:0; }
.results .t { font-weight:600; overflow-wrap:anywhere; }
.results .a { color:var(--dim); font-size:14px; overflow-wrap:anywhere; }
.chart { display:inline-block; font-size:11px; font-weight:700; color:#0d1220;
  background:var(--accent2); border-radius:6px; padding:1px 6px; margin-left:6px; vertical-align:2px; }
.results button, .pager button { font:inherit; font-weight:700; border:0; border-radius:10px;
  padding:9px 14px; cursor:pointer; color:#0d1220; background:var(--accent); min-height:40px; }
.results button:disabled { background:#3a4566; color:var(--dim); cursor:default; }
.pager { display:flex; align-items:center; justify-content:space-between; margin-top:12px;
  color:var(--dim); font-size:14px; }
.pager button { background:#26304f; color:var(--text); }
.pager button:disabled { opacity:.35; cursor:default; }
.toast { position:fixed; left:50%; bottom:22px; transform:translateX(-50%) translateY(140%);
  background:#0b1020; border:1px solid var(--line); border-left:5px solid var(--ok);
  padding:12px 16px; border-radius:12px; max-width:92vw; transition:transform .25s ease;
  visibility:hidden;
  box-shadow:0 10px 30px rgba(0,0,0,.4); }
.toast.show { transform:translateX(-50%) translateY(0); visibility:visible; }
.toast.bad { border-left-color:var(--warn); }
@media (max-width:700px) {
  .columns { grid-template-columns:1fr; }
  .now-title { font-size:23px; }
  .top { padding:12px 14px; }
}
)CSS";

const char* const kWebPageScript = R"JS(
"use strict";
const $ = (id) => document.getElementById(id);
const state = { q: "", page: 1, perPage: 25, total: 0, now: null, at: 0 };

function el(tag, cls, text) {
  const e = document.createElement(tag);
  if (cls) e.className = cls;
  if (text !== undefined) e.textContent = text;
  return e;
}
function clock(s) {
  s = Math.max(0, Math.round(s));
  return Math.floor(s / 60) + ":" + String(s % 60).padStart(2, "0");
}
function toast(text, good) {
  const t = $("toast");
  t.textContent = text;
  t.className = "toast show" + (good ? "" : " bad");
  clearTimeout(toast.timer);
  toast.timer = setTimeout(() => { t.className = "toast"; }, 4000);
}
function fillTracks(list, items, emptyText) {
  list.replaceChildren();
  if (!items.length) { list.append(el("li", "empty", emptyText)); return; }
  for (const it of items) {
    const li = el("li");
    li.append(el("div", "t", it.title || it.slot_title), el("div", "a", it.artist || ""));
    list.append(li);
  }
}
const modeWords = { running: "On air", paused: "Paused", break: "On a break", idle: "Off air" };
function showNow(data) {
  const m = $("mode");
  m.textContent = modeWords[data.mode] || data.mode;
  m.className = "mode " + data.mode;
  state.now = data.now;
  state.at = Date.now();
  $("now-title").textContent = data.now ? (data.now.title || data.now.slot_title) : "Nothing on the air";
  $("now-artist").textContent = data.now ? data.now.artist : "";
  fillTracks($("next"), data.next.slice(0, 6), "Nothing lined up yet");
  fillTracks($("last"), data.last, "Nothing played yet");
  tick();
}
function tick() {
  const n = state.now;
  if (!n || !n.length_s) { $("now-bar").style.width = "0"; $("now-pos").textContent = "";
    $("now-left").textContent = ""; return; }
  const gone = $("mode").classList.contains("running") ? (Date.now() - state.at) / 1000 : 0;
  const left = Math.max(0, n.left_s - gone);
  const pos = n.length_s - left;
  $("now-bar").style.width = (100 * pos / n.length_s).toFixed(2) + "%";
  $("now-pos").textContent = clock(pos);
  $("now-left").textContent = "-" + clock(left);
}
async function refreshNow() {
  try {
    const r = await fetch("/api/now-playing", { cache: "no-store" });
    if (r.ok) showNow(await r.json());
  } catch (e) { /* the stream reconnects by itself */ }
}
async function search() {
  const url = "/api/library?q=" + encodeURIComponent(state.q) + "&page=" + state.page +
              "&per_page=" + state.perPage;
  const r = await fetch(url, { cache: "no-store" });
  if (r.ok) showLibrary(await r.json());
}
function showLibrary(data) {
  state.total = data.total;
  const list = $("results");
  list.replaceChildren();
  for (const row of data.rows) {
    const li = el("li");
    const info = el("div", "info");
    const t = el("div", "t", row.title);
    if (row.chart) t.append(el("span", "chart", row.chart));
    info.append(t, el("div", "a", row.artist));
    const b = el("button", "", "Request");
    b.type = "button";
    b.addEventListener("click", () => requestSong(row.title, b));
    li.append(info, b);
    list.append(li);
  }
  const pages = Math.max(1, Math.ceil(data.total / state.perPage));
  $("count").textContent = data.total === 1 ? "1 song" : data.total.toLocaleString() + " songs";
  $("pageinfo").textContent = "Page " + state.page + " of " + pages;
  $("prev").disabled = state.page <= 1;
  $("more").disabled = state.page >= pages;
  if (!document.body.dataset.listMs) {
    // Marks for monitoring: when the first list stood, and the first paint.
    document.body.dataset.listMs = Math.round(performance.now());
    const paint = performance.getEntriesByName("first-contentful-paint")[0];
    if (paint) document.body.dataset.paintMs = Math.round(paint.startTime);
  }
}
async function requestSong(title, button) {
  button.disabled = true;
  try {
    const r = await fetch("/api/request", { method: "POST",
      headers: { "Content-Type": "application/x-www-form-urlencoded" },
      body: "title=" + encodeURIComponent(title) });
    const data = await r.json();
    toast(data.message, data.result === "requested");
    if (data.result === "requested") { button.textContent = "Requested"; return; }
  } catch (e) { toast("The station can't be reached right now.", false); }
  button.disabled = false;
}
let typing;
$("q").addEventListener("input", () => {
  clearTimeout(typing);
  typing = setTimeout(() => { state.q = $("q").value.trim(); state.page = 1; search(); }, 250);
});
$("search").addEventListener("submit", (e) => { e.preventDefault(); });
$("prev").addEventListener("click", () => { if (state.page > 1) { state.page--; search(); } });
$("more").addEventListener("click", () => { state.page++; search(); });
const events = new EventSource("/api/events");
events.addEventListener("now", refreshNow);
events.addEventListener("air", refreshNow);
setInterval(tick, 1000);
setInterval(refreshNow, 30000);
// The first list and what plays come with the page, so it paints whole.
const boot = $("boot");
if (boot) {
  const first = JSON.parse(boot.textContent);
  showNow(first.now);
  showLibrary(first.library);
} else {
  refreshNow();
  search();
}
)JS";

}  // namespace tavora
