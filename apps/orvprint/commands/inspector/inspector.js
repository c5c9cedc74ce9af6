"use strict";
(() => {
  const ROW_HEIGHT = 24;
  const TALLEST = 8e6;        // pixels that browsers can scroll through without losing their place
  const OPEN_AT_FIRST = 3000; // rows; more of them begin closed below the pages
  const MOST_BADGES = 300;    // on a page
  const MOST_OUTLINES = 200;  // of what is chosen; more are shown by their box
  const MOST_TEXT = 4000;     // characters of an attribute
  const SVG = "http://www.w3.org/2000/svg";
  const $ = (id) => document.getElementById(id);
  const make = (tag, className, text) => {
    const element = document.createElement(tag);
    if (className) element.className = className;
    if (text !== undefined) element.textContent = text;
    return element;
  };

  const data = JSON.parse($("data").textContent);
  $("data").textContent = "";

  // ---- Rows: every page and primitive, each before what it holds.

  const rows = [];   // {value, parent, depth, end, page, element}
  const pages = [];  // {row, svg, name}
  const childrenOf = (value) => value.children || value.content || [];

  const addRows = (drawing) => {
    const base = rows.length;
    const roots = drawing.pages || drawing.calls.pages;
    const elementOf = (number) => {
      const element = drawing.elements[number] || 0;
      return drawing.elementNumbers ? drawing.elementNumbers[element - 1] || 0 : element;
    };
    roots.forEach((root, index) => {
      const drawn = drawing.drawn.find((one) => one.page === index + 1);
      pages.push({row: rows.length, svg: drawn ? drawn.svg : null, base, value: root});
      const open = [];  // rows whose children come
      const enter = (value, parent) => {
        const number = rows.length;
        rows.push({value, parent, depth: open.length, end: 0, page: pages.length - 1, element: elementOf(number - base)});
        open.push({list: childrenOf(value), next: 0, number});
      };
      enter(root, -1);
      while (open.length > 0) {
        const top = open[open.length - 1];
        if (top.next < top.list.length) {
          enter(top.list[top.next++], top.number);
        } else {
          rows[top.number].end = rows.length;
          open.pop();
        }
      }
    });
  };
  data.drawings.forEach(addRows);

  const kindOf = (value) => value.kind || value.class.replace(/^ORVPrt/, "").replace(/Elt$/, "");
  const nameOf = (number) => {
    const {value, parent} = rows[number];
    return parent < 0 ? "Page" : kindOf(value);
  };
  const textOf = (value) => value.string || (typeof value.text === "string" ? value.text : "") || value.title || value.description || "";
  const labelOf = (number) => [nameOf(number), rows[number].value.id, textOf(rows[number].value)].filter(Boolean).join(" ");

  // ---- Findings, joined with the rows of their elements.

  const places = data.places;  // of each element: line, column, elements within, name
  const rowsOfElement = new Map();
  rows.forEach((row, number) => {
    if (row.element === 0) return;
    if (!rowsOfElement.has(row.element)) rowsOfElement.set(row.element, []);
    rowsOfElement.get(row.element).push(number);
  });
  const PLACE = 4;
  const lineOf = (element) => places[(element - 1) * PLACE];
  const columnOf = (element) => places[(element - 1) * PLACE + 1];
  const heldBy = (element) => places[(element - 1) * PLACE + 2];
  const tagOf = (element) => element === 0 ? "" : data.names[places[(element - 1) * PLACE + 3]];
  /// The last element that begins before a place: findings lie within start tags. 0 when there is none.
  const elementAt = (line, column) => {
    let low = 0, high = places.length / PLACE;
    while (low < high) {
      const middle = (low + high + 1) >> 1;
      if (lineOf(middle) < line || (lineOf(middle) === line && columnOf(middle) <= column)) low = middle; else high = middle - 1;
    }
    return low;
  };
  const sortedElements = [...rowsOfElement.keys()].sort((a, b) => a - b);
  const firstFrom = (element) => {
    let low = 0, high = sortedElements.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (sortedElements[middle] < element) low = middle + 1; else high = middle;
    }
    return sortedElements[low];
  };
  const rowOfFinding = (finding) => {
    const element = finding.line > 0 ? elementAt(finding.line, finding.column) : 0;
    if (element === 0) return -1;
    if (rowsOfElement.has(element)) return rowsOfElement.get(element)[0];
    // A container may have no row of its own: the first of what it holds stands for it.
    const inner = firstFrom(element);
    return inner !== undefined && inner <= element + heldBy(element) ? rowsOfElement.get(inner)[0] : -1;
  };
  const findingsOfRow = new Map();
  const isMarkedInside = new Set();  // rows that hold rows with findings
  data.findings.forEach((finding) => {
    finding.row = rowOfFinding(finding);
    if (finding.row < 0) return;
    if (!findingsOfRow.has(finding.row)) findingsOfRow.set(finding.row, []);
    findingsOfRow.get(finding.row).push(finding);
    for (let up = rows[finding.row].parent; up >= 0 && !isMarkedInside.has(up); up = rows[up].parent) isMarkedInside.add(up);
  });

  // ---- State.

  const isOpen = new Uint8Array(rows.length);
  let visible = [];   // numbers of the rows that are not within closed ones
  let placeOf = new Map();
  let chosen = -1, hovered = -1, shownPage = -1;

  const hasChildren = (number) => rows[number].end > number + 1;
  const updateVisible = () => {
    visible = [];
    for (let number = 0; number < rows.length; number = isOpen[number] ? number + 1 : rows[number].end) visible.push(number);
    placeOf = new Map(visible.map((number, place) => [number, place]));
    $("rows").style.height = Math.min(visible.length * ROW_HEIGHT, TALLEST) + "px";
    showRows();
  };
  const openUpTo = (number) => {
    let changed = false;
    for (let up = rows[number].parent; up >= 0; up = rows[up].parent) {
      if (!isOpen[up]) changed = true;
      isOpen[up] = 1;
    }
    if (changed) updateVisible();
  };

  // ---- The tree: only the rows in sight are elements of the page.

  const tree = $("tree");
  // Beyond what browsers can scroll, a pixel of the scrollbar is more than a pixel of the list.
  const firstShown = () => {
    const all = visible.length * ROW_HEIGHT;
    if (all <= TALLEST) return Math.floor(tree.scrollTop / ROW_HEIGHT);
    const range = TALLEST - tree.clientHeight;
    return Math.floor((tree.scrollTop / range) * (visible.length - Math.floor(tree.clientHeight / ROW_HEIGHT)));
  };
  const elementOfRow = new Map();

  const makeSwatches = (line, number) => {
    const drawn = elementsOf(number, 1)[0];
    if (!drawn || hasChildren(number)) return;
    const style = getComputedStyle(drawn);
    for (const paint of ["fill", "stroke"]) {
      const colour = style[paint];
      if (!colour || colour === "none") continue;
      const swatch = make("span", "swatch " + paint);
      if (colour.startsWith("rgb")) swatch.style[paint === "fill" ? "background" : "borderColor"] = colour;
      swatch.title = paint + " " + colour;
      line.append(swatch);
    }
  };
  const makeRow = (number, place, top) => {
    const row = rows[number], line = make("div", "row");
    line.id = "row-" + number;
    line.setAttribute("role", "treeitem");
    line.setAttribute("aria-level", row.depth + 1);
    line.setAttribute("aria-selected", number === chosen);
    if (number === chosen) line.classList.add("active");
    if (number === hovered) line.classList.add("hover");
    line.style.top = top + "px";
    line.style.paddingLeft = 6 + Math.min(row.depth, 24) * 14 + "px";
    const twist = make("span", "twist", hasChildren(number) ? (isOpen[number] ? "\u25BC" : "\u25B6") : "");
    line.append(twist);
    if (hasChildren(number)) line.setAttribute("aria-expanded", isOpen[number] === 1);
    makeSwatches(line, number);
    line.append(make("span", "kind", nameOf(number)));
    const tag = tagOf(row.element);
    if (tag && row.parent >= 0 && tag.toLowerCase() !== nameOf(number).toLowerCase()) line.append(make("span", "tag", tag));
    if (row.value.id) line.append(make("span", "id", "#" + row.value.id));
    const text = textOf(row.value);
    if (text) line.append(make("span", "text", text.slice(0, 120)));
    const own = findingsOfRow.get(number);
    if (own) {
      const warn = make("span", "warn", own.length === 1 ? own[0].code : own.length + " findings");
      warn.title = own.map((finding) => finding.message).join("\n");
      line.append(warn);
    } else if (isMarkedInside.has(number) && !isOpen[number]) {
      line.append(make("span", "warn inner", "\u25CF"));
    }
    line.dataset.row = number;
    return line;
  };
  const showRows = () => {
    const count = Math.ceil(tree.clientHeight / ROW_HEIGHT) + 2;
    const from = Math.max(0, Math.min(firstShown(), visible.length - count + 1)), to = Math.min(from + count, visible.length);
    const isScaled = visible.length * ROW_HEIGHT > TALLEST;
    const list = document.createDocumentFragment();
    elementOfRow.clear();
    for (let place = from; place < to; ++place) {
      const top = isScaled ? tree.scrollTop + (place - from) * ROW_HEIGHT : place * ROW_HEIGHT;
      const line = makeRow(visible[place], place, Math.min(top, Math.max(visible.length * ROW_HEIGHT, 0)));
      elementOfRow.set(visible[place], line);
      list.append(line);
    }
    $("rows").replaceChildren(list);
    const active = elementOfRow.get(chosen);
    if (active) tree.setAttribute("aria-activedescendant", active.id); else tree.removeAttribute("aria-activedescendant");
  };
  const scrollToRow = (number) => {
    const place = placeOf.get(number);
    if (place === undefined) return;
    if (visible.length * ROW_HEIGHT > TALLEST) {
      const shown = Math.floor(tree.clientHeight / ROW_HEIGHT), from = firstShown();
      if (place < from || place >= from + shown)
        tree.scrollTop = Math.ceil((Math.max(place - (shown >> 1), 0) / (visible.length - shown)) * (TALLEST - tree.clientHeight));
      return;
    }
    const top = place * ROW_HEIGHT;
    if (top < tree.scrollTop) tree.scrollTop = top;
    else if (top + ROW_HEIGHT > tree.scrollTop + tree.clientHeight) tree.scrollTop = top + ROW_HEIGHT - tree.clientHeight;
  };
  const setOpen = (number, open) => {
    if (!hasChildren(number) || isOpen[number] === +open) return;
    isOpen[number] = +open;
    updateVisible();
  };

  // ---- The page: its drawing is a document of its own, out of reach of this one's style and identifiers.

  const stage = $("stage"), paper = $("paper"), marks = $("marks");
  const root = $("drawing").attachShadow({mode: "open"});
  let drawnRows = [];      // rows of what is drawn, in order: {first, last, element}
  let outline = null;      // group of what is chosen
  let size = {width: 1, height: 1}, zoom = 1;

  const showPage = (index) => {
    if (index === shownPage) return;
    shownPage = index;
    $("page").value = index;
    root.replaceChildren();
    marks.replaceChildren();
    drawnRows = [];
    outline = null;
    const {svg, base} = pages[index];
    paper.hidden = svg === null;
    $("nothing").hidden = svg !== null;
    if (svg === null) return;
    const parsed = document.importNode(new DOMParser().parseFromString(svg, "image/svg+xml").documentElement, true);
    if (parsed.namespaceURI !== SVG || parsed.localName !== "svg") return;
    const box = parsed.getAttribute("viewBox").split(" ").map(Number);
    size = {width: box[2] * (96 / 90), height: box[3] * (96 / 90)};
    parsed.setAttribute("width", "100%");
    parsed.setAttribute("height", "100%");
    const style = make("style");
    style.textContent = ":host{display:block;width:100%;height:100%} svg{display:block} .outline *{pointer-events:none} @media print{.outline{display:none}}";
    for (const element of parsed.querySelectorAll("[id^=r]")) {
      const match = /^r(\d+)(?:-(\d+))?$/.exec(element.id);
      if (!match) continue;
      const first = base + Number(match[1]);
      drawnRows.push({first, last: match[2] === undefined ? first : base + Number(match[2]), element});
    }
    outline = document.createElementNS(SVG, "g");
    outline.setAttribute("class", "outline");
    parsed.append(outline);
    root.append(style, parsed);
    fit();
    showBadges();
  };

  /// What a row draws, and what is in it; all that are drawn together with it.
  const elementsOf = (number, most = Infinity) => {
    let low = 0, high = drawnRows.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (drawnRows[middle].last < number) low = middle + 1; else high = middle;
    }
    const found = [], {end} = rows[number];
    for (; low < drawnRows.length && drawnRows[low].first < end && found.length < most; ++low) found.push(drawnRows[low].element);
    return found;
  };
  const boxOf = (elements) => {
    const paperBox = paper.getBoundingClientRect();
    let left = Infinity, top = Infinity, right = -Infinity, bottom = -Infinity;
    for (const element of elements) {
      const box = element.getBoundingClientRect();
      if (box.width === 0 && box.height === 0 && box.left === 0 && box.top === 0) continue;
      left = Math.min(left, box.left); top = Math.min(top, box.top);
      right = Math.max(right, box.right); bottom = Math.max(bottom, box.bottom);
    }
    if (left > right) return null;
    return {left: (left - paperBox.left) / paperBox.width, top: (top - paperBox.top) / paperBox.height,
            width: (right - left) / paperBox.width, height: (bottom - top) / paperBox.height};
  };
  const percent = (element, box) => {
    for (const side of ["left", "top", "width", "height"]) element.style[side] = box[side] * 100 + "%";
  };
  const markBox = (className, number) => {
    marks.querySelector(".box." + className)?.remove();
    if (number < 0 || rows[number].page !== shownPage) return null;
    const box = rows[number].parent < 0 ? {left: 0, top: 0, width: 1, height: 1} : boxOf(elementsOf(number));
    if (!box) return null;
    const mark = make("div", "box " + className);
    percent(mark, box);
    marks.append(mark);
    return box;
  };
  const markOutline = (number) => {
    outline?.replaceChildren();
    if (!outline || number < 0 || rows[number].parent < 0 || rows[number].page !== shownPage) return;
    const elements = elementsOf(number, MOST_OUTLINES + 1);
    if (elements.length > MOST_OUTLINES) return;
    const toPage = outline.getScreenCTM()?.inverse();
    if (!toPage) return;
    for (const element of elements) {
      if (!(element instanceof SVGGeometryElement)) continue;
      const matrix = toPage.multiply(element.getScreenCTM());
      const copy = element.cloneNode(false);
      for (const name of [...copy.getAttributeNames()])
        if (!["d", "x", "y", "width", "height", "points", "cx", "cy", "r", "rx", "ry", "x1", "x2", "y1", "y2"].includes(name)) copy.removeAttribute(name);
      copy.setAttribute("transform", `matrix(${matrix.a} ${matrix.b} ${matrix.c} ${matrix.d} ${matrix.e} ${matrix.f})`);
      copy.setAttribute("style", "fill:#0b62d6;fill-opacity:.14;stroke:#0b62d6;stroke-width:2px;vector-effect:non-scaling-stroke");
      outline.append(copy);
    }
  };
  const showBadges = () => {
    let count = 0;
    for (const [number, findings] of findingsOfRow) {
      if (rows[number].page !== shownPage || count === MOST_BADGES) continue;
      const box = rows[number].parent < 0 ? {left: 0, top: 0} : boxOf(elementsOf(number));
      if (!box) continue;
      const badge = make("button", "badge", "!");
      badge.type = "button";
      badge.tabIndex = -1;  // the list of findings has them for keys
      badge.title = findings.map((finding) => finding.message).join("\n");
      badge.dataset.row = number;
      badge.style.left = Math.min(Math.max(box.left, 0), 1) * 100 + "%";
      badge.style.top = Math.min(Math.max(box.top, 0), 1) * 100 + "%";
      marks.append(badge);
      ++count;
    }
  };
  const rowAt = (event) => {
    for (const target of event.composedPath()) {
      if (target === root) break;
      const match = target.id ? /^r(\d+)/.exec(target.id) : null;
      if (match && target.ownerSVGElement) return pages[shownPage].base + Number(match[1]);
    }
    return -1;
  };

  // ---- Zoom and scrolling.

  /// @param at  a point of the window that stays where it is
  const setZoom = (value, at) => {
    const box = stage.getBoundingClientRect(), before = paper.getBoundingClientRect();
    at = at || {x: box.left + box.width / 2, y: box.top + box.height / 2};
    const x = (at.x - before.left) / before.width, y = (at.y - before.top) / before.height;
    zoom = Math.min(Math.max(value, 0.02), 64);
    paper.style.width = size.width * zoom + "px";
    paper.style.height = size.height * zoom + "px";
    $("zoom").textContent = Math.round(zoom * 100) + " %";
    const after = paper.getBoundingClientRect();
    stage.scrollLeft += after.left + x * after.width - at.x;
    stage.scrollTop += after.top + y * after.height - at.y;
  };
  const fit = () => setZoom(Math.min((stage.clientWidth - 48) / size.width, (stage.clientHeight - 48) / size.height));
  const zoomToChosen = () => {
    const box = chosen < 0 ? null : boxOf(elementsOf(chosen));
    if (!box) return fit();
    const width = Math.max(box.width * size.width, 4), height = Math.max(box.height * size.height, 4);
    setZoom(Math.min((stage.clientWidth * 0.6) / width, (stage.clientHeight * 0.6) / height, 16));
    const page = paper.getBoundingClientRect(), view = stage.getBoundingClientRect();
    stage.scrollLeft += page.left + (box.left + box.width / 2) * page.width - (view.left + view.width / 2);
    stage.scrollTop += page.top + (box.top + box.height / 2) * page.height - (view.top + view.height / 2);
  };

  // ---- Details.

  const shorten = (text) => text.length > MOST_TEXT ? text.slice(0, MOST_TEXT) + ` \u2026 (${text.length - MOST_TEXT} more characters)` : text;
  const plain = (value) => {
    if (typeof value === "string") return value;
    if (Array.isArray(value) && value.length > MOST_TEXT) return plain(value.slice(0, MOST_TEXT)) + ` \u2026 (${value.length - MOST_TEXT} more)`;
    if (Array.isArray(value)) return value.map((one) => Array.isArray(one) ? "(" + one.join(", ") + ")" : one !== null && typeof one === "object" ? JSON.stringify(one) : String(one)).join(" ");
    return value !== null && typeof value === "object" ? JSON.stringify(value) : String(value);
  };
  const addAttribute = (table, name, value) => {
    const line = table.insertRow();
    const head = make("th", "", name);
    head.scope = "row";
    line.append(head, make("td", "", shorten(value)));
  };
  const findingBox = (finding) => {
    const box = make("button", "finding");
    box.type = "button";
    const what = [finding.element, finding.attribute].filter(Boolean).join(" ");
    box.append(make("b", "", finding.code), " ", make("span", "", finding.message), make("br"));
    box.append(make("code", "", what + (finding.value ? ` "${finding.value}"` : "")), " ");
    const shown = finding.row < 0 ? ", not on a page by itself" : "";
    box.append(make("span", "where", finding.line > 0 ? `line ${finding.line}, column ${finding.column}${shown}` : shown.slice(2)));
    box.title = finding.title;
    if (finding.row >= 0) box.dataset.row = finding.row; else box.setAttribute("aria-disabled", "true");
    return box;
  };
  const showAttributes = (number) => {
    const panel = $("attributes");
    panel.replaceChildren();
    if (number < 0) return panel.append(make("p", "hint", "Choose a row, or click on the page."));
    panel.append(make("h2", "", labelOf(number).slice(0, 200)));
    (findingsOfRow.get(number) || []).forEach((finding) => panel.append(findingBox(finding)));
    const table = make("table");
    let from = number;
    while (from >= 0 && rows[from].element === 0) from = rows[from].parent;
    if (from >= 0) {
      const {element} = rows[from];
      addAttribute(table, "source", `${tagOf(element)}, line ${lineOf(element)}, column ${columnOf(element)}` + (from === number ? "" : " (around it)"));
    }
    for (const [name, value] of Object.entries(rows[number].value)) {
      if (name === "children" || name === "content") {
        addAttribute(table, name, String(value.length));
      } else if (value !== null && typeof value === "object" && !Array.isArray(value)) {
        for (const [inner, one] of Object.entries(value)) addAttribute(table, name + "." + inner, plain(one));
      } else {
        addAttribute(table, name, plain(value));
      }
    }
    panel.append(table);
    panel.scrollTop = 0;
  };
  const showTab = (name) => {
    for (const other of ["attributes", "findings"]) {
      const tab = $("tab-" + other);
      tab.setAttribute("aria-selected", other === name);
      tab.tabIndex = other === name ? 0 : -1;
      $(other).hidden = other !== name;
    }
  };

  // ---- Choosing.

  const choose = (number, {scrolls = true, keepsTab = false} = {}) => {
    chosen = number;
    if (number >= 0) {
      openUpTo(number);
      showPage(rows[number].page);
      if (scrolls) scrollToRow(number);
    }
    showRows();
    if (markBox("chosen", number) && scrolls) marks.querySelector(".box.chosen").scrollIntoView({block: "nearest", inline: "nearest"});
    markOutline(number);
    showAttributes(number);
    if (!keepsTab) showTab("attributes");
    $("status").textContent = number < 0 ? "" : labelOf(number).slice(0, 200);
  };
  const hover = (number) => {
    if (number === hovered) return;
    elementOfRow.get(hovered)?.classList.remove("hover");
    hovered = number;
    elementOfRow.get(hovered)?.classList.add("hover");
    markBox("hover", number === chosen ? -1 : number);
  };

  // ---- Events.

  tree.addEventListener("scroll", showRows, {passive: true});
  new ResizeObserver(showRows).observe(tree);
  tree.addEventListener("click", (event) => {
    const line = event.target.closest(".row");
    if (!line) return;
    const number = Number(line.dataset.row);
    if (event.target.closest(".twist")) return setOpen(number, !isOpen[number]);
    choose(number);
  });
  tree.addEventListener("dblclick", (event) => {
    const line = event.target.closest(".row");
    if (line && !event.target.closest(".twist")) setOpen(Number(line.dataset.row), !isOpen[Number(line.dataset.row)]);
  });
  tree.addEventListener("pointerover", (event) => {
    const line = event.target.closest(".row");
    hover(line ? Number(line.dataset.row) : -1);
  });
  tree.addEventListener("pointerleave", () => hover(-1));
  // A press of the pointer chooses by its click, for which the rows must stay as they are.
  tree.addEventListener("focus", () => { if (chosen < 0 && visible.length > 0 && tree.matches(":focus-visible")) choose(visible[0]); });

  let typed = "", typedAt = 0;
  const typeAhead = (key) => {
    typed = performance.now() - typedAt > 700 ? key : typed + key;
    typedAt = performance.now();
    const text = typed.toLowerCase(), start = placeOf.get(chosen) ?? -1;
    for (let step = typed.length > 1 ? 0 : 1; step <= visible.length; ++step) {
      const number = visible[(Math.max(start, 0) + step) % visible.length], id = rows[number].value.id || "";
      if (nameOf(number).toLowerCase().startsWith(text) || id.toLowerCase().startsWith(text)) return choose(number);
    }
  };
  const keys = {
    ArrowDown: (place) => choose(visible[Math.min(place + 1, visible.length - 1)]),
    ArrowUp: (place) => choose(visible[Math.max(place - 1, 0)]),
    Home: () => choose(visible[0]),
    End: () => choose(visible[visible.length - 1]),
    PageDown: (place) => choose(visible[Math.min(place + Math.floor(tree.clientHeight / ROW_HEIGHT), visible.length - 1)]),
    PageUp: (place) => choose(visible[Math.max(place - Math.floor(tree.clientHeight / ROW_HEIGHT), 0)]),
    ArrowRight: () => {
      if (!hasChildren(chosen)) return;
      if (isOpen[chosen]) choose(chosen + 1); else setOpen(chosen, true);
    },
    ArrowLeft: () => {
      if (hasChildren(chosen) && isOpen[chosen]) setOpen(chosen, false);
      else if (rows[chosen].parent >= 0) choose(rows[chosen].parent);
    },
    Enter: () => setOpen(chosen, !isOpen[chosen]),
    "*": () => {
      const {parent} = rows[chosen];
      for (let number = parent < 0 ? 0 : parent + 1; number < (parent < 0 ? rows.length : rows[parent].end); number = rows[number].end)
        isOpen[number] = hasChildren(number) ? 1 : 0;
      updateVisible();
    },
  };
  tree.addEventListener("keydown", (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey || visible.length === 0) return;
    if (chosen < 0) choose(visible[0]);
    let place = placeOf.get(chosen);
    if (place === undefined) {  // within a closed row
      openUpTo(chosen);
      place = placeOf.get(chosen);
    }
    const action = keys[event.key];
    if (action) action(place);
    else if (event.key.length === 1 && event.key !== " ") typeAhead(event.key);
    else return;
    event.preventDefault();
  });

  let drag = null;
  stage.addEventListener("pointerdown", (event) => {
    if (event.button > 1 || event.pointerType === "touch" || event.target.closest(".badge")) return;
    drag = {x: event.clientX, y: event.clientY, left: stage.scrollLeft, top: stage.scrollTop, moved: false};
  });
  window.addEventListener("pointermove", (event) => {
    if (!drag) return;
    const x = event.clientX - drag.x, y = event.clientY - drag.y;
    if (!drag.moved && Math.hypot(x, y) < 5) return;
    drag.moved = true;
    stage.classList.add("dragged");
    stage.scrollLeft = drag.left - x;
    stage.scrollTop = drag.top - y;
  });
  let wasMoved = false;
  window.addEventListener("pointerup", () => {
    wasMoved = drag !== null && drag.moved;
    drag = null;
    stage.classList.remove("dragged");
  });
  stage.addEventListener("click", (event) => {
    if (wasMoved) return;
    const badge = event.target.closest(".badge");
    choose(badge ? Number(badge.dataset.row) : rowAt(event));
  });
  stage.addEventListener("pointermove", (event) => { if (!drag?.moved) hover(rowAt(event)); });
  stage.addEventListener("pointerleave", () => hover(-1));
  stage.addEventListener("wheel", (event) => {
    if (!event.ctrlKey && !event.metaKey) return;
    event.preventDefault();
    setZoom(zoom * Math.exp(-event.deltaY * 0.0025), {x: event.clientX, y: event.clientY});
  }, {passive: false});

  document.addEventListener("keydown", (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey || /^(INPUT|SELECT)$/.test(event.target.tagName)) return;
    const inTree = event.target === tree;
    if (event.key === "+" || event.key === "=") setZoom(zoom * 1.25);
    else if (event.key === "-") setZoom(zoom / 1.25);
    else if (event.key === "0" && !inTree) fit();
    else if (event.key === "z" && !inTree) zoomToChosen();
    else if (event.key === "/" ) $("find").focus();
    else if (event.key === "Escape") choose(-1);
    else return;
    event.preventDefault();
  }, true);
  $("zoom-in").addEventListener("click", () => setZoom(zoom * 1.25));
  $("zoom-out").addEventListener("click", () => setZoom(zoom / 1.25));
  $("zoom-fit").addEventListener("click", fit);
  $("zoom-chosen").addEventListener("click", zoomToChosen);
  $("page").addEventListener("change", () => choose(pages[Number($("page").value)].row));
  $("expand").addEventListener("click", () => { rows.forEach((_, number) => { isOpen[number] = hasChildren(number) ? 1 : 0; }); updateVisible(); });
  $("collapse").addEventListener("click", () => { isOpen.fill(0); updateVisible(); });

  const find = (step) => {
    const text = $("find").value.trim().toLowerCase();
    if (!text) return void ($("found").textContent = "");
    const start = chosen < 0 ? (step > 0 ? -1 : 0) : chosen;
    for (let i = 1; i <= rows.length; ++i) {
      const number = (((start + i * step) % rows.length) + rows.length) % rows.length;
      if (!labelOf(number).toLowerCase().includes(text)) continue;
      $("found").textContent = "";
      return choose(number);
    }
    $("found").textContent = "not found";
  };
  $("find").addEventListener("keydown", (event) => {
    if (event.key === "Enter") find(event.shiftKey ? -1 : 1);
    else if (event.key === "Escape") { event.target.value = ""; tree.focus(); }
  });
  for (const name of ["attributes", "findings"]) {
    $("tab-" + name).addEventListener("click", () => showTab(name));
    $("tab-" + name).addEventListener("keydown", (event) => {
      if (event.key !== "ArrowLeft" && event.key !== "ArrowRight") return;
      const other = name === "attributes" ? "findings" : "attributes";
      showTab(other);
      $("tab-" + other).focus();
    });
    $(name).addEventListener("click", (event) => {
      const box = event.target.closest(".finding");
      if (box?.dataset.row !== undefined) choose(Number(box.dataset.row), {keepsTab: true});
    });
  }

  const divider = $("divider");
  const setSide = (share) => {
    share = Math.min(Math.max(share, 15), 80);
    document.documentElement.style.setProperty("--side", share + "%");
    divider.setAttribute("aria-valuenow", Math.round(share));
  };
  divider.addEventListener("pointerdown", (event) => divider.setPointerCapture(event.pointerId));
  divider.addEventListener("pointermove", (event) => {
    if (divider.hasPointerCapture(event.pointerId)) setSide((1 - event.clientX / window.innerWidth) * 100);
  });
  divider.addEventListener("keydown", (event) => {
    const step = {ArrowLeft: 3, ArrowRight: -3}[event.key];
    if (step) setSide(Number(divider.getAttribute("aria-valuenow")) + step);
  });

  // ---- Beginning.

  document.title = data.file + " \u2013 orvprint inspect";
  $("file").textContent = data.file;
  $("interpreter").textContent = `${data.interpreter} \u00B7 ${rows.length.toLocaleString("en")} rows`;
  pages.forEach((page, index) => {
    const option = make("option", "", `${index + 1}${page.value.title ? " " + page.value.title : ""}`);
    option.value = index;
    $("page").append(option);
  });
  $("page-choice").hidden = pages.length < 2;
  if (data.total > 0) $("finding-count").textContent = data.total;
  data.findings.forEach((finding) => $("findings").append(findingBox(finding)));
  if (data.total === 0) $("findings").append(make("p", "hint", "Nothing found: this prints as expected."));
  else if (data.total > data.findings.length) $("findings").append(make("p", "hint", `and ${data.total - data.findings.length} more`));
  const opensAll = rows.length <= OPEN_AT_FIRST;
  rows.forEach((row, number) => { if (opensAll || row.depth === 0) isOpen[number] = hasChildren(number) ? 1 : 0; });
  if (pages.length > 0) {
    showPage(0);
  } else {
    paper.hidden = true;
    $("nothing").hidden = false;
    $("nothing").textContent = "This document is no drawing; orvprint inspect --fragment N shows the N-th drawing within it.";
  }
  updateVisible();
  showAttributes(-1);

  // A row by its number or its identifier: page.html#row=7, page.html#id=door
  const followHash = () => {
    const [key, ...rest] = location.hash.slice(1).split("=");
    let wanted = rest.join("=");
    try { wanted = decodeURIComponent(wanted); } catch { /* as it is written */ }
    const number = key === "row" ? Number(wanted) : key === "id" ? rows.findIndex((row) => row.value.id === wanted) : -1;
    if (Number.isInteger(number) && number >= 0 && number < rows.length) choose(number);
  };
  window.addEventListener("hashchange", followHash);
  followHash();
})();
