// SPDX-License-Identifier: Apache-2.0
'use strict';

// Reads SVG drawings and renders their pages, through liborvprint and the package koffi.
//
//     const document = new Document().openFile('plan.svg');
//     document.renderFile('plan.pdf', {paper: 'A4', scale: '1:20'});
//     const png = document.render({format: 'png', dpi: 300, pages: '1'});
//     document.free();
//
// Options are the long options of the command orvprint; an array repeats an option. The library is loaded from the
// system's library folders; the environment variable ORVPRINT_LIBRARY names another file.

const koffi = require('koffi');

const library = koffi.load(process.env.ORVPRINT_LIBRARY || 'liborvprint.so.0');
const Write = koffi.proto('int OrvprintWrite(void *data, const void *bytes, size_t size)');

const orvprint = {
    version: library.func('const char *orvprint_version()'),
    create: library.func('void *orvprint_new()'),
    free: library.func('void orvprint_free(void *document)'),
    errorText: library.func('const char *orvprint_error_text(void *document)'),
    openFile: library.func('int orvprint_open_file(void *document, const char *path, const char **options)'),
    openBytes: library.func(
        'int orvprint_open_bytes(void *document, const void *bytes, size_t size, const char **options)'),
    pageCount: library.func('int orvprint_page_count(void *document, _Out_ unsigned int *count)'),
    pageSize: library.func(
        'int orvprint_page_size(void *document, unsigned int page, _Out_ double *width, _Out_ double *height)'),
    pageTitle: library.func(
        'int orvprint_page_title(void *document, unsigned int page, _Out_ const char **title)'),
    renderFile: library.func('int orvprint_render_file(void *document, const char *path, const char **options)'),
    renderWriter: library.func(
        'orvprint_render_writer', 'int', ['void *', koffi.pointer(Write), 'void *', 'const char **']),
    check: library.func('int orvprint_check(void *document, const char **options, _Out_ void **json)'),
    dump: library.func('int orvprint_dump(void *document, _Out_ void **json)'),
    freeText: library.func('void orvprint_free_text(void *text)'),
};

// A failure. `result` is the result of the C function, which equals the exit code of the command.
class OrvprintError extends Error {
    constructor(result, text) {
        super(text);
        this.result = result;
    }
}

function pairsOf(options) {
    const texts = [];
    for (const [key, value] of Object.entries(options))
        for (const one of Array.isArray(value) ? value : [value]) texts.push(key, String(one));
    return [...texts, null];
}

class Document {
    #handle = orvprint.create();

    #do(call, ...more) {
        const result = call(this.#handle, ...more);
        if (result !== 0) throw new OrvprintError(result, orvprint.errorText(this.#handle));
    }

    free() {
        if (this.#handle) orvprint.free(this.#handle);
        this.#handle = null;
    }

    openFile(path, options = {}) {
        this.#do(orvprint.openFile, path, pairsOf(options));
        return this;
    }

    openBytes(bytes, options = {}) {
        this.#do(orvprint.openBytes, bytes, bytes.length, pairsOf(options));
        return this;
    }

    // Titles of all pages, and sizes in points.
    get pages() {
        const count = [0];
        this.#do(orvprint.pageCount, count);
        return Array.from({length: count[0]}, (_, index) => {
            const width = [0], height = [0], title = [null];
            this.#do(orvprint.pageSize, index + 1, width, height);
            this.#do(orvprint.pageTitle, index + 1, title);
            return {title: title[0], width: width[0], height: height[0]};
        });
    }

    renderFile(path, options = {}) {
        this.#do(orvprint.renderFile, path, pairsOf(options));
    }

    // Returns the output as a buffer.
    render(options) {
        const blocks = [];
        const take = (_, bytes, size) => {
            blocks.push(Buffer.from(koffi.decode(bytes, koffi.array('uint8', Number(size), 'Typed'))));
            return 1;
        };
        this.#do(orvprint.renderWriter, take, null, pairsOf(options));
        return Buffer.concat(blocks);
    }

    // Returns the findings, as in the output of `orvprint check --json` for a file.
    check(options = {}) {
        return this.#json(orvprint.check, pairsOf(options));
    }

    // Returns the model, as in the output of `orvprint inspect --json`.
    dump() {
        return this.#json(orvprint.dump);
    }

    #json(call, ...more) {
        const text = [null];
        this.#do(call, ...more, text);
        try {
            return JSON.parse(koffi.decode(text[0], 'char', -1));
        } finally {
            orvprint.freeText(text[0]);
        }
    }
}

module.exports = {Document, OrvprintError, version: orvprint.version()};
