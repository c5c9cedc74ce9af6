// SPDX-License-Identifier: Apache-2.0

// Draws FILE.svg to FILE.png with resvg, inside this process: bench/compare.py runs it as a program of its own.
//
//     node bench/resvg.cjs MODULE FILE.svg FILE.png ZOOM
"use strict";

const fs = require("fs");

const [module_, source, target, zoom] = process.argv.slice(2);
const { Resvg } = require(module_);
const drawing = new Resvg(fs.readFileSync(source), {
    fitTo: { mode: "zoom", value: Number(zoom) },
    background: "white",
    font: { loadSystemFonts: true },
});
fs.writeFileSync(target, drawing.render().asPng());
