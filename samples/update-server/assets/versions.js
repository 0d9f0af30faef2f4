"use strict";

// Reads a versions file as the add-ons do: every line is a comment, a notice, an add-on, a library or nothing, and
// the lines after an entry that start with "#" are its text.
function parseVersions(content) {
  const entries = { notices: [], addons: [], libraries: [] };
  const digits = (text) => /^[0-9]*$/.test(text);
  const isDate = (text) =>
    "-/".includes(text[2] || " ") && "-/".includes(text[5] || " ") &&
    digits(text.slice(0, 2)) && digits(text.slice(3, 5)) && digits(text.slice(6, 10));
  const ordered = (date) => date.slice(6, 10) + date.slice(3, 5) + date.slice(0, 2);

  let current = null;
  for (const line of content.split(/\r\n|\r|\n/)) {
    if (line.startsWith("#")) {
      if (current) current.text.push(line.slice(2));
      continue;
    }
    current = null;
    if (line.startsWith("*")) continue;
    const tokens = line.split(/[ \t]+/);
    if (tokens[0].includes("MESSAGE")) {
      current = { text: [] };
      entries.notices.push(current);
    } else if (tokens.length >= 2 && tokens[1].length === 10 && isDate(tokens[1])) {
      current = { name: tokens[0], date: ordered(tokens[1]), text: [] };
      entries.libraries.push(current);
    } else if (tokens.length >= 4 && /^\d*\.\d*\.\d*\.\d*(\..*)?$/.test(tokens[1]) &&
               /^\(AC\d*\)$/.test(tokens[2]) && isDate(tokens[3])) {
      current = { name: tokens[0], version: tokens[1], host: tokens[2].slice(3, -2), date: ordered(tokens[3]), text: [] };
      entries.addons.push(current);
    }
  }
  return entries;
}

// The entry with the latest date for each name and host version.
function newest(entries) {
  const best = new Map();
  for (const entry of entries) {
    const key = entry.name + " " + (entry.host || "");
    if (!best.has(key) || best.get(key).date < entry.date) best.set(key, entry);
  }
  return [...best.values()].sort((a, b) => (b.host || "").localeCompare(a.host || "") || a.name.localeCompare(b.name));
}
