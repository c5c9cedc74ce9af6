// SPDX-License-Identifier: Apache-2.0
'use strict';

// Lists the pages of a drawing and renders them: node print.js DRAWING OUTPUT [KEY=VALUE]...

const {Document, OrvprintError} = require('./orvprint.js');

const [drawing, output, ...words] = process.argv.slice(2);
const options = Object.fromEntries(words.map((word) => word.split(/=(.*)/s, 2)));
const document = new Document();
try {
    document.openFile(drawing);
    document.pages.forEach((page, index) => {
        const size = `${page.width.toFixed(1)} x ${page.height.toFixed(1)}`;
        console.log(`page ${index + 1}: ${size} pt "${page.title}"`);
    });
    document.renderFile(output, options);
    console.log(`${document.check().total} findings`);
} catch (error) {
    if (!(error instanceof OrvprintError)) throw error;
    console.error(error.message);
    process.exitCode = error.result;
} finally {
    document.free();
}
