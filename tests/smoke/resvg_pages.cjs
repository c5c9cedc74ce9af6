// SPDX-License-Identifier: Apache-2.0

// Draws many drawings with resvg, inside one process: compare_findings.py starts it.
//
//     node resvg_pages.cjs MODULE < list, a line for each drawing: source, target and width in pixels between tabs
//
// Writes a line for each drawing that it begins with. One that resvg does not take has no page afterwards.
"use strict";

const fs = require("fs");
const path = require("path");

const { Resvg } = require(process.argv[2]);
for (const line of fs.readFileSync(0, "utf8").split("\n").filter(Boolean)) {
    const [source, target, width] = line.split("\t");
    fs.writeSync(1, source + "\n");
    try {
        const drawing = new Resvg(fs.readFileSync(source), {
            fitTo: { mode: "width", value: Number(width) },
            background: "white",
            font: { loadSystemFonts: true, defaultFontFamily: "Liberation Serif" },
        });
        fs.writeFileSync(target, drawing.render().asPng());
    } catch (error) {
        fs.rmSync(target, { force: true });
    }
}
