"use strict";

const WEB_SITE = "http://www.tessaro.example/";
const INTERNATIONAL = 1;

function query(name) {
  return new URLSearchParams(location.search).get(name);
}

// The language of the query; without one the browser's, else the international one.
function languageIndex() {
  const asked = query("lang");
  if (asked !== null && /^[0-6]$/.test(asked)) return Number(asked);
  if (asked !== null) return INTERNATIONAL;
  for (const wanted of navigator.languages || []) {
    const index = LANGUAGES.findIndex((language) => language.code === wanted.slice(0, 2).toLowerCase());
    if (index >= 0) return index;
  }
  return INTERNATIONAL;
}

// An element with text: what comes from the query or the list is never taken as markup.
function element(tag, text, parent) {
  const made = document.createElement(tag);
  if (text) made.textContent = text;
  if (parent) parent.append(made);
  return made;
}

function fill(text, values) {
  return text.replace(/\{(\w+)\}/g, (whole, name) => values[name] ?? whole);
}

function showLanguages(current) {
  const bar = document.getElementById("languages");
  LANGUAGES.forEach((language, index) => {
    const target = new URLSearchParams(location.search);
    target.set("lang", String(index));
    const link = element("a", language.name, bar);
    link.href = "?" + target;
    link.lang = language.code;
    if (index === current) link.setAttribute("aria-current", "true");
  });
}

function longDate(date, code) {
  const day = new Date(Date.UTC(+date.slice(0, 4), +date.slice(4, 6) - 1, +date.slice(6, 8)));
  if (isNaN(day)) return date;
  return new Intl.DateTimeFormat(code, { dateStyle: "long", timeZone: "UTC" }).format(day);
}

function showEntry(entry, section, language) {
  const { texts, code } = language;
  const product = element("div", "", section);
  product.className = "product";
  element("strong", entry.name, product);
  const facts = element("dl", "", product);
  const fact = (label, value) => { element("dt", label, facts); element("dd", value, facts); };
  if (entry.version) fact(texts.version, entry.version);
  if (entry.host) fact(texts.host, "ArchiCAD " + entry.host);
  fact(texts.date, longDate(entry.date, code));
  if (entry.text.length === 0) return;
  element("h3", texts.news, product);
  const list = element("ul", "", product);
  for (const line of entry.text) if (line.trim()) element("li", line, list).lang = "en";
}

function showSection(id, heading, entries, empty, language) {
  const section = document.getElementById(id);
  section.hidden = false;
  element("h2", heading, section);
  for (const entry of entries) showEntry(entry, section, language);
  if (entries.length === 0) element("p", empty, section);
  return section;
}

function showNotice(notice) {
  const text = notice.text.join(" ");
  const start = text.indexOf("http://");
  const box = element("div", "", document.getElementById("notices"));
  box.className = "notice";
  const paragraph = element("p", start < 0 ? text : text.slice(0, start), box);
  paragraph.lang = "en";
  if (start >= 0) element("a", text.slice(start), paragraph).href = text.slice(start);
}

function showSteps(texts) {
  const section = document.getElementById("steps");
  section.hidden = false;
  element("h2", texts.howTo, section);
  const list = element("ol", "", section);
  for (const step of texts.steps) element("li", step, list);
  const button = element("a", texts.webSite, section);
  button.className = "button";
  button.href = WEB_SITE;
}

// `product` and `hostVersion` narrow the list to what one add-on asked for; `library` is null when it asked for no
// library, and the version that it has, or "Unknown", otherwise.
async function showPage({ list, product = null, hostVersion = null, library = null }) {
  const index = languageIndex();
  const language = LANGUAGES[index];
  const { texts } = language;
  document.documentElement.lang = language.code;
  showLanguages(index);
  const title = product ? fill(texts.titleFor, { product }) : texts.title;
  document.getElementById("title").textContent = title;
  document.title = title + " - Tessaro";
  const intro = document.getElementById("intro");
  intro.textContent = hostVersion ? fill(texts.introFor, { host: hostVersion }) : texts.intro;

  let entries;
  try {
    const answer = await fetch(list, { cache: "no-cache" });
    if (!answer.ok) throw new Error(answer.statusText);
    entries = parseVersions(await answer.text());
  } catch {
    intro.textContent = texts.unreadable;
    return;
  }
  entries.notices.forEach(showNotice);
  const addons = newest(entries.addons).filter((entry) =>
    (!product || entry.name === product) && (!hostVersion || entry.host === hostVersion));
  showSection("addon", texts.addons, addons, texts.nothing, language);
  if (library !== null) {
    const section = showSection("library", texts.libraries, newest(entries.libraries), texts.nothing, language);
    if (library === "Unknown") element("p", texts.libraryUnknown, section);
  }
  if (addons.length > 0) showSteps(texts);
}
