// SPDX-License-Identifier: Apache-2.0

// Renders many drawings with resvg in one process, for compare_findings.py.
//
//     node resvg_pages.cjs MODULE < LIST
//
// Each line of the list has source, target and width in pixels, separated by tabs. Writes the name of each drawing to
// standard output before rendering it. If resvg refuses a drawing, no target is left.
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
