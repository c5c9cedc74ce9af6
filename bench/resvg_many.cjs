// SPDX-License-Identifier: Apache-2.0

// Draws many drawings with resvg, inside one process: bench/throughput.py runs it.
//
//     node bench/resvg_many.cjs MODULE TARGET-FOLDER FONT... < list, a drawing a line
//
// Fonts are given one by one: looking for those of the system, which each drawing would do anew, takes longer than most
// drawings.
"use strict";

const fs = require("fs");
const path = require("path");

const [module_, folder, ...fontFiles] = process.argv.slice(2);
const { Resvg } = require(module_);
for (const source of fs.readFileSync(0, "utf8").split("\n").filter(Boolean)) {
    const drawing = new Resvg(fs.readFileSync(source), {
        background: "white",
        font: { loadSystemFonts: false, fontFiles, defaultFontFamily: "Liberation Sans" },
    });
    fs.writeFileSync(path.join(folder, path.basename(source) + ".png"), drawing.render().asPng());
}
