"use strict";
(function () {
  var data = JSON.parse(document.getElementById("data").textContent);
  var texts = data.texts || [];
  var kindWords = { bin: "binary", sym: "symbol file", src: "source" };
  var kindTitles = { bin: "Binaries", sym: "Symbol files", src: "Sources" };
  var stateWords = { "found": "found", "not-found": "not found", "not-tried": "not tried" };
  var stateRank = { "not-found": 0, "not-tried": 1, "found": 2 };
  var kChunk = 150;
  var sharedMembers = ["module", "step_text", "confidence_text", "reason_text", "message", "archived_text"];
  // How many numbers an event has, by its first.
  var kLengths = [1, 2, 2, 5, 6, 5, 4, 3, 2];

  data.files.forEach(function (file) {
    sharedMembers.forEach(function (member) { if (member in file) file[member] = texts[file[member]]; });
  });

  function byId(id) { return document.getElementById(id); }

  // Texts of the data go into text nodes only, never into markup.
  function make(tag, className, children) {
    var element = document.createElement(tag);
    if (className) element.className = className;
    [].concat(children === undefined ? [] : children).forEach(function (child) {
      element.append(child);
    });
    return element;
  }

  function grouped(number) { return number.toLocaleString("en-US"); }

  function duration(microseconds) {
    if (microseconds < 1000) return Math.round(microseconds) + "\u00a0\u00b5s";
    if (microseconds < 1e6) return (microseconds / 1000).toFixed(microseconds < 1e4 ? 1 : 0) + "\u00a0ms";
    return (microseconds / 1e6).toFixed(1) + "\u00a0s";
  }

  function baseStart(path) {
    return Math.max(path.lastIndexOf("/"), path.lastIndexOf("\\")) + 1;
  }

  function howKey(file) {
    return file.state === "found" ? "step-" + file.step : file.state === "not-tried" ? "not-tried" : file.reason;
  }

  function howText(file) {
    return file.state === "found" ? file.step_text : file.reason_text || "";
  }

  // ---- heading and summary ----

  var view = { words: [], kind: "", state: "", how: "", howKind: "", sort: "order", falling: false };

  function showHeading() {
    var found = 0, all = 0;
    data.summary.forEach(function (row) { found += row.found; all += row.files; });
    byId("headline").replaceChildren(make("b", "", grouped(found)), " of ", make("b", "", grouped(all)),
      all === 1 ? " file found" : " files found");
    document.title = data.manifest.slice(baseStart(data.manifest)) + ": " + found + " of " + all + " found";
    byId("subtitle").replaceChildren(make("span", "path", data.manifest), " \u00b7 " + duration(data.microseconds));
    byId("stopped").hidden = !data.interrupted;
    byId("stopped").textContent = "The run was stopped before every file had its turn.";
  }

  function parts(row) {
    var list = row.found_by.map(function (part) {
      return { key: "step-" + part.step, text: part.step_text, files: part.confirmed + part.not_contradicted,
               doubtful: part.not_contradicted };
    });
    row.not_found_by.forEach(function (part) {
      list.push({ key: part.reason, text: part.reason_text, files: part.files, doubtful: 0 });
    });
    if (row.not_tried)
      list.push({ key: "not-tried", text: "not tried", files: row.not_tried, doubtful: 0 });
    return list;
  }

  function legendLine(row, part) {
    var number = make("span", "number", grouped(part.files));
    var label = make("span", "label", part.text);
    if (part.doubtful)
      label.append(make("span", "quiet", " \u00b7 " + grouped(part.doubtful) + " without a check"));
    var button = make("button", "", [make("span", "chip c-" + part.key), label, number]);
    button.type = "button";
    button.dataset.how = part.key;
    button.dataset.kind = row.kind;
    button.setAttribute("aria-pressed", "false");
    button.addEventListener("click", function () {
      var isOn = view.how === part.key && view.howKind === row.kind;
      view.how = isOn ? "" : part.key;
      view.howKind = isOn ? "" : row.kind;
      refresh();
    });
    return make("li", "", button);
  }

  function showSummary() {
    data.summary.forEach(function (row) {
      if (!row.files) return;
      var bar = make("div", "bar");
      bar.setAttribute("role", "img");
      bar.setAttribute("aria-label", row.found + " of " + row.files + " found");
      var legend = make("ul", "legend");
      parts(row).forEach(function (part) {
        var segment = make("i", "c-" + part.key);
        segment.style.flexGrow = String(part.files);
        segment.title = part.text + ": " + grouped(part.files);
        bar.append(segment);
        legend.append(legendLine(row, part));
      });
      var title = make("h2", "", [kindTitles[row.kind], make("span", "quiet", grouped(row.found) + " of " + grouped(row.files))]);
      byId("kinds").append(make("section", "card kind", [title, bar, legend]));
    });
  }

  function showList(id, items, one, many) {
    byId(id).hidden = items.length === 0;
    byId(id).querySelector("summary").textContent = items.length + (items.length === 1 ? one : many);
    items.forEach(function (item) { byId(id).querySelector("ul").append(make("li", "path", item)); });
  }

  function showMappings() {
    var used = (data.mappings || []).map(function (mapping) {
      return mapping.from + " \u2192 " + mapping.to +
        (mapping.learned ? " (learned)" : "") +
        (mapping.confirmations ? ", confirmed " + grouped(mapping.confirmations) + "\u00d7" : "");
    });
    showList("mappings", used, " path mapping", " path mappings");
    showList("missing", data.missing_directories, " given directory does not exist", " given directories do not exist");
    showList("unreadable", data.unreadable_directories, " given directory cannot be read", " given directories cannot be read");
  }

  // ---- the journal of one file ----

  // 1 is a suggestion, whose candidate follows.
  var kStep = 2, kDirectory = 3, kCandidate = 4, kServer = 5, kStepEnd = 6,
      kStepOff = 7, kEnd = 8;
  var outcomeWords = ["does not exist", "already seen", "", ""];

  function marked(mark, className, path, rest) {
    return make("li", "", [make("span", "mark " + className, mark),
                           make("span", "", [make("span", "path", path), make("span", "quiet", rest)])]);
  }

  function directoryLine(event) {
    var notes = [];
    var isTree = event[2] & 1, isSearched = event[2] & 2, isIndexed = event[2] & 4;
    if (isTree) notes.push("whole tree");
    if (isSearched && isIndexed) notes.push((event[3] ? grouped(event[3]) : "none") + " of this name in the index");
    else if (isSearched) notes.push(grouped(event[3]) + (event[3] === 1 ? "\u00a0entry" : "\u00a0entries"));
    if (texts[event[4]]) notes.push(texts[event[4]]);
    return marked(isSearched ? "\u25ab" : "\u00b7", "", texts[event[1]], notes.join(", "));
  }

  function candidateLine(event) {
    var path = texts[event[1]] + texts[event[2]];
    var outcome = event[3], detail = texts[event[5]] || "";
    if (outcome === 3) return marked("\u2713", "good", path, detail);
    if (outcome === 2) return marked("\u2717", "bad", path, detail);
    return marked("\u00b7", "", path, outcomeWords[outcome]);
  }

  function serverLine(event) {
    var rest = texts[event[2]] + ": " + texts[event[3]];
    if (event[4]) rest += ", " + grouped(event[4]) + " bytes";
    return marked("\u21c4", "", texts[event[1]], rest);
  }

  function stepItem(title, className, note) {
    var list = make("ul");
    var heading = make("h3", "", title);
    var aside = make("span", "quiet", note ? " \u00b7\u00a0" + note : "");
    return { item: make("li", className, [heading, aside, list]), list: list, aside: aside, places: 0 };
  }

  function stepTitle(step) { return step === 7 ? "Suggestions" : "Step " + step + ": " + data.steps[step]; }

  function journalList(file) {
    var list = make("ol", "steps");
    var current = null;
    function close(event) {
      if (!current) return;
      var notes = event ? [duration(event[2]), texts[event[3]]].filter(Boolean) : [];
      if (!current.places && notes.length < 2) notes.push("no further candidate");
      current.aside.textContent = notes.length ? " \u00b7\u00a0" + notes.join(" \u00b7\u00a0") : "";
      current = null;
    }
    function open(step) {
      close();
      current = stepItem(stepTitle(step), "", "");
      list.append(current.item);
    }
    function addLine(event) {
      if (!current) open(7);
      ++current.places;
      if (event[0] === kDirectory) current.list.append(directoryLine(event));
      if (event[0] === kServer) current.list.append(serverLine(event));
      if (event[0] !== kCandidate) return;
      current.list.append(candidateLine(event));
      if (event[3] === 3) current.item.className = "hit";
    }
    function addEvent(event) {
      if (event[0] === kStep) return open(event[1]);
      if (event[0] === kStepEnd) return close(event);
      if (event[0] !== kStepOff && event[0] !== kEnd) return addLine(event);
      close();
      if (event[0] === kStepOff)
        return list.append(stepItem(stepTitle(event[1]), "off", "not run: " + texts[event[2]]).item);
      var isFound = file.state === "found";
      list.append(stepItem(isFound ? "Found" : "Not found", isFound ? "hit" : "miss", texts[event[1]]).item);
    }
    var numbers = file.journal;
    for (var at = 0; at < numbers.length; at += kLengths[numbers[at]])
      addEvent(numbers.slice(at, at + kLengths[numbers[at]]));
    return list;
  }

  function facts(file) {
    var list = make("dl", "facts");
    function add(word, text, isPath) {
      if (text === undefined || text === "") return;
      list.append(make("dt", "", word), make("dd", isPath ? "path" : "", text));
    }
    add("Recorded name", file.name, true);
    add("Binary", file.module, true);
    add("Recorded MD5", file.md5, true);
    add("Recorded size", file.size === undefined ? "" : grouped(file.size) + " bytes");
    add("Found at", file.path, true);
    add("Confidence", file.confidence_text);
    add("Archive", file.archived_text);
    add("Why not", file.message);
    return list;
  }

  // ---- the table ----

  var rows = data.files.map(function (file, index) {
    return { file: file, index: index, how: howKey(file),
             text: (file.name + "\n" + (file.path || "") + "\n" + (file.module || "")).toLowerCase(), element: null, journal: null };
  });
  var shown = rows;
  var made = 0;

  function fold(row) {
    var button = row.element.querySelector("button");
    var isOpen = button.getAttribute("aria-expanded") === "true";
    button.setAttribute("aria-expanded", String(!isOpen));
    row.element.classList.toggle("open", !isOpen);
    if (isOpen) {
      row.journal.remove();
      return;
    }
    if (!row.journal) {
      var cell = make("td", "", [facts(row.file), journalList(row.file)]);
      cell.colSpan = 7;
      row.journal = make("tr", "journal", cell);
      row.journal.id = "journal-" + row.index;
      button.setAttribute("aria-controls", row.journal.id);
    }
    row.element.after(row.journal);
  }

  function named(path) {
    var at = baseStart(path);
    var folder = make("span", "folder");
    path.slice(0, at).split(/(?<=[/\\])/).forEach(function (part) { folder.append(part, make("wbr")); });
    return [folder, path.slice(at)];
  }

  function rowElement(row) {
    if (row.element) return row.element;
    var file = row.file;
    var button = make("button", "", make("span", "", "\u25b8"));
    button.type = "button";
    button.setAttribute("aria-expanded", "false");
    button.setAttribute("aria-label", "Journal of " + file.name.slice(baseStart(file.name)));
    var how = make("td", "how", howText(file));
    if (file.state === "found" && file.confidence > 0) how.append(make("span", "doubt", file.confidence_text));
    row.element = make("tr", "file", [
      make("td", "fold", button), make("td", "name path", named(file.name)),
      make("td", "kindword", kindWords[file.kind]),
      make("td", "state", make("span", "pill " + file.state, stateWords[file.state])), how,
      make("td", "where path", file.path ? named(file.path) : []),
      make("td", "time", file.state === "not-tried" ? "" : duration(file.microseconds))]);
    row.element.dataset.index = row.index;
    return row.element;
  }

  byId("rows").addEventListener("click", function (event) {
    var element = event.target.closest("tr.file");
    var isSelecting = String(window.getSelection()) !== "" && !event.target.closest("button");
    if (element && !isSelecting) fold(rows[Number(element.dataset.index)]);
  });

  var orders = {
    order: function (a, b) { return a.index - b.index; },
    name: function (a, b) { return compare(a.file.name, b.file.name); },
    kind: function (a, b) { return compare(a.file.kind, b.file.kind); },
    state: function (a, b) { return stateRank[a.file.state] - stateRank[b.file.state]; },
    how: function (a, b) { return compare(a.how, b.how); },
    path: function (a, b) { return compare(a.file.path || "\uffff", b.file.path || "\uffff"); },
    time: function (a, b) { return b.file.microseconds - a.file.microseconds; }
  };

  function compare(a, b) { return a < b ? -1 : a > b ? 1 : 0; }

  function isShown(row) {
    return (!view.kind || row.file.kind === view.kind) && (!view.state || row.file.state === view.state) &&
      (!view.how || (row.how === view.how && row.file.kind === view.howKind)) &&
      view.words.every(function (word) { return row.text.indexOf(word) >= 0; });
  }

  // Rows are made as they come into sight; a table of ten thousand is never built at once.
  function makeMore() {
    var end = Math.min(made + kChunk, shown.length);
    var batch = document.createDocumentFragment();
    for (; made < end; ++made) {
      var row = shown[made];
      batch.append(rowElement(row));
      if (row.element.classList.contains("open")) batch.append(row.journal);
    }
    byId("rows").append(batch);
    byId("more").hidden = made === shown.length;
    byId("more").textContent = grouped(shown.length - made) + " more";
  }

  function showOrder() {
    document.querySelectorAll("th button").forEach(function (button) {
      var th = button.closest("th");
      if (button.dataset.sort === view.sort) th.setAttribute("aria-sort", view.falling ? "descending" : "ascending");
      else th.removeAttribute("aria-sort");
    });
    byId("sort").value = view.falling || !byId("sort").querySelector("[value=" + view.sort + "]") ? "order" : view.sort;
  }

  function refresh() {
    shown = rows.filter(isShown).sort(function (a, b) {
      return (view.falling ? -1 : 1) * orders[view.sort](a, b) || a.index - b.index;
    });
    byId("rows").replaceChildren();
    made = 0;
    makeMore();
    byId("nothing").hidden = shown.length > 0;
    byId("count").textContent = shown.length === rows.length ? grouped(rows.length) + " files"
      : grouped(shown.length) + " of " + grouped(rows.length);
    byId("clear").hidden = !view.words.length && !view.kind && !view.state && !view.how;
    document.querySelectorAll(".legend button").forEach(function (button) {
      var isOn = button.dataset.how === view.how && button.dataset.kind === view.howKind;
      button.setAttribute("aria-pressed", String(isOn));
    });
    showOrder();
  }

  byId("filter").addEventListener("input", function () {
    view.words = byId("filter").value.toLowerCase().split(/\s+/).filter(Boolean);
    refresh();
  });
  byId("kind").addEventListener("change", function () { view.kind = byId("kind").value; refresh(); });
  byId("state").addEventListener("change", function () { view.state = byId("state").value; refresh(); });
  byId("sort").addEventListener("change", function () {
    view.sort = byId("sort").value;
    view.falling = false;
    refresh();
  });
  byId("clear").addEventListener("click", function () {
    view.words = [];
    view.kind = view.state = view.how = view.howKind = "";
    byId("filter").value = byId("kind").value = byId("state").value = "";
    refresh();
    byId("filter").focus();
  });
  document.querySelector("thead").addEventListener("click", function (event) {
    var button = event.target.closest("button");
    if (!button) return;
    var key = button.dataset.sort;
    // The third click gives the recorded order back.
    if (view.sort !== key) { view.sort = key; view.falling = false; }
    else if (!view.falling) view.falling = true;
    else { view.sort = "order"; view.falling = false; }
    refresh();
  });
  document.addEventListener("keydown", function (event) {
    if (event.key !== "/" || /^(INPUT|SELECT)$/.test(document.activeElement.tagName)) return;
    event.preventDefault();
    byId("filter").focus();
  });
  // Watched anew after each batch: an element that stays in sight is reported once only.
  var watch = new IntersectionObserver(function (entries) {
    if (!entries[entries.length - 1].isIntersecting || made === shown.length) return;
    makeMore();
    watch.unobserve(byId("more"));
    watch.observe(byId("more"));
  }, { rootMargin: "900px" });
  watch.observe(byId("more"));

  showHeading();
  showSummary();
  showMappings();
  refresh();
})();
