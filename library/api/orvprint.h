/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ORVPRINT_H
#define ORVPRINT_H

/**
 * @file
 * The C interface of liborvprint: reads SVG drawings and renders their pages as PDF, PostScript, EPS, SVG,
 * PNG, TIFF, PWG Raster or Apple Raster.
 *
 * All that belongs to a document hangs on its handle: errors, limits, what it may read. There is no state of
 * the process. Different documents may be used in different threads at the same time, each by one thread at a
 * time.
 *
 * Functions that can fail return ORVPRINT_OK or another result below; orvprint_error_text() then says what
 * was wrong, in one line. Nothing is written to standard output or standard error, no signal is caught, the
 * process never ends.
 *
 * Options are pairs of strings: an array "key", "value", "key", "value", ... that ends with a null pointer in
 * the place of a key; a null pointer stands for no options. Keys are the long options of the command orvprint
 * without "--"; values are written as there; a switch is "true" or "false". An unknown key, a key that the
 * function does not take, and a bad value are ORVPRINT_ERROR_USAGE, and the error's text names the key.
 *
 * - Opening takes interpreter (svg, svg2), parser, qvxml, fragment, keep-going, language, font-size, limit
 *   (NAME=N, repeatable; `orvprint limits` lists them; "memory" has no effect), allow-dir (a folder with
 *   images that the drawing may use, repeatable), no-file-images (read no file at all).
 * - Rendering takes format, pages, dpi, flatten-dpi, paper, orientation, scale, margin, align, tile, overlap,
 *   nup, grey, mono, stroke-scale, min-stroke, width, height, zoom, background, export-id, threads (that draw
 *   a page of pixels; 0, the default, for as many as there are processors).
 * - Checking takes ignore (a kind of finding, repeatable).
 *
 * Texts are UTF-8 and end with a null character. Running out of memory is a failure like any other.
 */

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(ORV_LIBRARY_BUILD) && defined(__GNUC__)
#define ORVPRINT_API __attribute__((visibility("default"))) /**< what the library exports */
#else
#define ORVPRINT_API /**< what the library exports */
#endif

/** Version of this interface. It grows by one when functions are added; what is there stays as it is. */
#define ORVPRINT_API_VERSION 1

/** @name Results
 * The numbers are the exit codes of the command.
 * @{ */
#define ORVPRINT_OK 0                      /**< done */
#define ORVPRINT_ERROR_USAGE 2             /**< an option, an argument, or a call at the wrong time */
#define ORVPRINT_ERROR_UNREADABLE 3        /**< the input cannot be read */
#define ORVPRINT_ERROR_NOT_WELL_FORMED 4   /**< the input is no well-formed XML */
#define ORVPRINT_ERROR_NO_PAGE 5           /**< the input has no page */
#define ORVPRINT_ERROR_PAGE_OUT_OF_RANGE 6 /**< there is no such page, or no such element to export */
#define ORVPRINT_ERROR_UNKNOWN_FORMAT 7    /**< no format was named, and the output's ending names none */
#define ORVPRINT_ERROR_UNWRITABLE 8        /**< the output cannot be written */
#define ORVPRINT_ERROR_FAILED 9     /**< rendering failed, a limit was reached, or memory was refused */
#define ORVPRINT_ERROR_NO_MODULE 10 /**< the interpreter's module is missing */
#define ORVPRINT_ERROR_CANCELLED 12 /**< the cancel callback asked for it */
/** @} */

/** A document: an input and the pages made of it. */
typedef struct orvprint_document orvprint_document;

/**
 * Hands bytes over; called in the thread of the call that it was given to.
 * @param data   as it was given with the callback
 * @param bytes  valid during the call
 * @param size   number of bytes, more than 0
 * @return 1 when all bytes were taken, 0 to fail with ORVPRINT_ERROR_UNWRITABLE
 */
typedef int (*orvprint_write_function)(void* data, const void* bytes, size_t size);

/**
 * Asks for bytes; called in the thread of the call that it was given to.
 * @param data   as it was given with the callback
 * @param bytes  where they go
 * @param size   room there is, more than 0
 * @return number of bytes, 0 at the end, (size_t)-1 when reading failed
 */
typedef size_t (*orvprint_read_function)(void* data, void* bytes, size_t size);

/**
 * Asks whether to stop; called often, in the thread that renders or opens.
 * @param data  as it was given with the callback
 * @return 1 to stop, 0 to go on
 */
typedef int (*orvprint_cancel_function)(void* data);

/**
 * Tells of progress; called in the thread that renders, after each page.
 * @param data   as it was given with the callback
 * @param done   pages rendered so far
 * @param total  pages to render
 */
typedef void (*orvprint_progress_function)(void* data, unsigned int done, unsigned int total);

/**
 * Tells what is worth knowing of a call that goes on, such as what of a broken document is left out.
 * @param data  as it was given with the callback
 * @param text  one line, valid during the call
 */
typedef void (*orvprint_note_function)(void* data, const char* text);

/** Version of the library, such as "0.1.0". The text is the library's. Any thread. */
ORVPRINT_API const char* orvprint_version(void);

/** ORVPRINT_API_VERSION of the library that is in use: a program that needs more than that does not run with
 * it. */
ORVPRINT_API unsigned int orvprint_api_version(void);

/**
 * Name of an output format, such as "pdf".
 * @param index  from 0
 * @return null past the last one. The text is the library's
 */
ORVPRINT_API const char* orvprint_format_name(unsigned int index);

/** A document without content. @return null when out of memory; to be freed with orvprint_free() */
ORVPRINT_API orvprint_document* orvprint_new(void);

/** Frees a document and all that belongs to it. Null is nothing to free. */
ORVPRINT_API void orvprint_free(orvprint_document* document);

/** Result of the last call that can fail; ORVPRINT_ERROR_USAGE for null. */
ORVPRINT_API int orvprint_error(const orvprint_document* document);

/**
 * What was wrong with the last call that can fail, in one line: the input's name and place, and the reason.
 * @return empty when nothing was; valid until the next call with the document
 */
ORVPRINT_API const char* orvprint_error_text(const orvprint_document* document);

/**
 * Has a callback asked whether to stop; null for none. It is asked before the document is read, before every
 * drawing call and before the output is put in place; a page of pixels is painted to its end.
 */
ORVPRINT_API int orvprint_set_cancel(orvprint_document* document, orvprint_cancel_function cancel,
                                     void* data);

/** Has a callback told of progress; null for none. */
ORVPRINT_API int orvprint_set_progress(orvprint_document* document, orvprint_progress_function progress,
                                       void* data);

/** Has a callback told of notes; null for none. */
ORVPRINT_API int orvprint_set_note(orvprint_document* document, orvprint_note_function note, void* data);

/**
 * Opens a file, which may be compressed with gzip. Its content is read now, images of its folder and the
 * folders below when they are needed; no other file is read, but for those of allow-dir. What was open before
 * is closed.
 * @param path     of the file
 * @param options  see above; may be null
 * @return a result; after a failure nothing is open
 */
ORVPRINT_API int orvprint_open_file(orvprint_document* document, const char* path,
                                    const char* const* options);

/**
 * Opens bytes, of which a copy is made; otherwise as orvprint_open_file(). The document may read no file at
 * all, but for those of allow-dir.
 */
ORVPRINT_API int orvprint_open_bytes(orvprint_document* document, const void* bytes, size_t size,
                                     const char* const* options);

/** As orvprint_open_bytes(), without a copy: the bytes stay as they are until something else is opened or the
 * document is freed. */
ORVPRINT_API int orvprint_open_borrowed(orvprint_document* document, const void* bytes, size_t size,
                                        const char* const* options);

/** As orvprint_open_bytes(), with what a callback reads, to its end. */
ORVPRINT_API int orvprint_open_reader(orvprint_document* document, orvprint_read_function read, void* data,
                                      const char* const* options);

/**
 * Number of pages.
 * @param count  out; 0 after a failure
 */
ORVPRINT_API int orvprint_page_count(orvprint_document* document, unsigned int* count);

/**
 * Size of a page in points of 1/72 inch, without paper or scale.
 * @param page    from 1
 * @param width   out; 0 after a failure
 * @param height  out; 0 after a failure
 */
ORVPRINT_API int orvprint_page_size(orvprint_document* document, unsigned int page, double* width,
                                    double* height);

/**
 * Title of a page.
 * @param page   from 1
 * @param title  out: empty for none; valid until something else is opened or the document is freed
 */
ORVPRINT_API int orvprint_page_title(orvprint_document* document, unsigned int page, const char** title);

/**
 * Renders pages to a file. Nothing shows under its name unless all went well. Formats of one page a file make
 * "name-1.png", "name-2.png" ... of "name.png" where there are several. The input and what it reads are never
 * replaced.
 * @param path     its ending names the format, unless the option "format" does
 * @param options  see above; may be null
 */
ORVPRINT_API int orvprint_render_file(orvprint_document* document, const char* path,
                                      const char* const* options);

/**
 * Renders pages to an open file, as the bytes come.
 * @param descriptor  stays open, and the caller's
 * @param options     must hold "format"
 */
ORVPRINT_API int orvprint_render_descriptor(orvprint_document* document, int descriptor,
                                            const char* const* options);

/**
 * Renders pages and hands the bytes of the output to a callback, when all are there; none after a failure.
 * @param write    gets pieces of any size, in order
 * @param options  must hold "format"
 */
ORVPRINT_API int orvprint_render_writer(orvprint_document* document, orvprint_write_function write,
                                        void* data, const char* const* options);

/**
 * Checks the document for what will not print as its author may expect.
 * @param options  see above; may be null
 * @param json     out: an object as `orvprint check --json` writes for a file; to be freed with
 * orvprint_free_text(); null after a failure. Findings are no failure
 */
ORVPRINT_API int orvprint_check(orvprint_document* document, const char* const* options, char** json);

/**
 * What the interpreter made of the document.
 * @param json  out: an object as `orvprint inspect --json` writes, or an array of them where the document
 * holds several drawings; to be freed with orvprint_free_text(); null after a failure
 */
ORVPRINT_API int orvprint_dump(orvprint_document* document, char** json);

/** Frees a text that the library allocated. Null is nothing to free. */
ORVPRINT_API void orvprint_free_text(char* text);

#ifdef __cplusplus
}
#endif

#endif
