/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ORVPRINT_H
#define ORVPRINT_H

/**
 * @file
 * The C interface of liborvprint: reads SVG drawings and renders their pages as PDF, PostScript, EPS, SVG,
 * PNG, TIFF, PWG Raster or Apple Raster.
 *
 * All state belongs to a document handle: the last error, limits, and which files may be read. The library
 * keeps no process-wide state. Different documents can be used in different threads at the same time; a
 * single document must not be used by two threads at once.
 *
 * Functions that can fail return ORVPRINT_OK or one of the error results below; orvprint_error_text() then
 * describes the error in one line. The library never writes to standard output or standard error, installs no
 * signal handlers and never terminates the process.
 *
 * Options are passed as an array of strings "key", "value", "key", "value", ... terminated by a null pointer
 * in place of a key. A null array means no options. Keys are the long options of the orvprint command without
 * "--", and values are written as on the command line; a switch is "true" or "false". An unknown key, a key
 * that the function does not accept, or an invalid value fails with ORVPRINT_ERROR_USAGE, and the error text
 * names the key.
 *
 * - Opening accepts interpreter (svg, svg2), parser, qvxml, fragment, keep-going, language, font-size, limit
 *   (NAME=N, repeatable; `orvprint limits` lists the names; "memory" has no effect), allow-dir (a folder of
 *   images that the drawing may read, repeatable) and no-file-images (read no files at all).
 * - Rendering accepts format, pages, dpi, flatten-dpi, paper, orientation, scale, margin, align, tile,
 *   overlap, nup, grey, mono, stroke-scale, min-stroke, width, height, zoom, background, export-id, threads
 *   (number of threads that rasterise a page; 0, the default, uses one per processor).
 * - Checking accepts ignore (the name of a kind of finding, repeatable).
 *
 * Strings are null-terminated UTF-8. Running out of memory is reported like any other failure.
 */

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(ORV_LIBRARY_BUILD) && defined(__GNUC__)
#define ORVPRINT_API __attribute__((visibility("default"))) /**< Marks an exported function. */
#else
#define ORVPRINT_API /**< Marks an exported function. */
#endif

/** Version of this interface. It increases by one when functions are added; existing ones never change. */
#define ORVPRINT_API_VERSION 1

/** @name Results
 * Equal to the exit codes of the orvprint command.
 * @{ */
#define ORVPRINT_OK 0                      /**< success */
#define ORVPRINT_ERROR_USAGE 2             /**< invalid option or argument, or nothing is open */
#define ORVPRINT_ERROR_UNREADABLE 3        /**< the input cannot be read */
#define ORVPRINT_ERROR_NOT_WELL_FORMED 4   /**< the input is not well-formed XML */
#define ORVPRINT_ERROR_NO_PAGE 5           /**< the input has no page */
#define ORVPRINT_ERROR_PAGE_OUT_OF_RANGE 6 /**< no such page, or no element with the given export-id */
#define ORVPRINT_ERROR_UNKNOWN_FORMAT 7    /**< no format given, and none implied by the file name */
#define ORVPRINT_ERROR_UNWRITABLE 8        /**< the output cannot be written */
#define ORVPRINT_ERROR_FAILED 9            /**< rendering failed, a limit was exceeded, or memory ran out */
#define ORVPRINT_ERROR_NO_MODULE 10        /**< the interpreter module is missing */
#define ORVPRINT_ERROR_CANCELLED 12        /**< the cancel callback returned 1 */
/** @} */

/** A document: one input and its pages. Created by orvprint_new(), freed by orvprint_free(). */
typedef struct orvprint_document orvprint_document;

/**
 * Receives output. Called in the thread that called orvprint_render_writer().
 * @param data   the pointer passed with the callback
 * @param bytes  the output; valid during the call only
 * @param size   number of bytes, at least 1
 * @return 1 if all bytes were consumed, 0 to fail the call with ORVPRINT_ERROR_UNWRITABLE
 */
typedef int (*orvprint_write_function)(void* data, const void* bytes, size_t size);

/**
 * Supplies input. Called in the thread that called orvprint_open_reader().
 * @param data   the pointer passed with the callback
 * @param bytes  buffer to fill
 * @param size   size of the buffer in bytes, at least 1
 * @return number of bytes stored, 0 at the end of the input, (size_t)-1 on a read error
 */
typedef size_t (*orvprint_read_function)(void* data, void* bytes, size_t size);

/**
 * Decides whether the current call is cancelled. Called frequently, in the thread that opens or renders.
 * @param data  the pointer passed with the callback
 * @return 1 to cancel, 0 to continue
 */
typedef int (*orvprint_cancel_function)(void* data);

/**
 * Reports progress. Called after each page, in the thread that renders.
 * @param data   the pointer passed with the callback
 * @param done   number of pages rendered so far
 * @param total  number of pages to render
 */
typedef void (*orvprint_progress_function)(void* data, unsigned int done, unsigned int total);

/**
 * Receives a message about a call that has not failed, such as which part of a broken document is skipped.
 * Called in the thread that made the call.
 * @param data  the pointer passed with the callback
 * @param text  one line; valid during the call only
 */
typedef void (*orvprint_note_function)(void* data, const char* text);

/** Version of the library, such as "0.1.0". A static string; may be called from any thread. */
ORVPRINT_API const char* orvprint_version(void);

/** ORVPRINT_API_VERSION of the library loaded at run time. A program compiled against a greater version may
 * need functions that this library lacks. */
ORVPRINT_API unsigned int orvprint_api_version(void);

/**
 * Name of an output format, such as "pdf".
 * @param index  counted from 0
 * @return a static string; null past the last format
 */
ORVPRINT_API const char* orvprint_format_name(unsigned int index);

/** Creates a document with nothing open. @return null when out of memory; free with orvprint_free() */
ORVPRINT_API orvprint_document* orvprint_new(void);

/** Frees a document and everything it owns. Null is allowed and ignored. */
ORVPRINT_API void orvprint_free(orvprint_document* document);

/** Result of the last call that can fail; ORVPRINT_ERROR_USAGE if the document is null. */
ORVPRINT_API int orvprint_error(const orvprint_document* document);

/**
 * Error message of the last call that can fail, in one line: the input's name and position, and the reason.
 * @return empty after success; valid until the next call with the document
 */
ORVPRINT_API const char* orvprint_error_text(const orvprint_document* document);

/**
 * Sets the callback that can cancel a call; null for none. It is called before the document is read, before
 * every drawing call and before the output is put in place. Rasterising a page is not interrupted.
 */
ORVPRINT_API int orvprint_set_cancel(orvprint_document* document, orvprint_cancel_function cancel,
                                     void* data);

/** Sets the callback for progress; null for none. */
ORVPRINT_API int orvprint_set_progress(orvprint_document* document, orvprint_progress_function progress,
                                       void* data);

/** Sets the callback for messages; null for none. */
ORVPRINT_API int orvprint_set_note(orvprint_document* document, orvprint_note_function note, void* data);

/**
 * Opens a file, which may be compressed with gzip. Its content is read immediately. Images are read when they
 * are needed, only from the file's own folder, its subfolders and the folders of allow-dir. Anything open
 * before is closed.
 * @param path     path of the file
 * @param options  see above; may be null
 * @return a result; after a failure nothing is open
 */
ORVPRINT_API int orvprint_open_file(orvprint_document* document, const char* path,
                                    const char* const* options);

/**
 * Opens a document in memory, of which a copy is made; otherwise like orvprint_open_file(). The document may
 * read no files except those in the folders of allow-dir.
 */
ORVPRINT_API int orvprint_open_bytes(orvprint_document* document, const void* bytes, size_t size,
                                     const char* const* options);

/** Like orvprint_open_bytes(), without a copy: the caller must keep the bytes unchanged until something else
 * is opened or the document is freed. */
ORVPRINT_API int orvprint_open_borrowed(orvprint_document* document, const void* bytes, size_t size,
                                        const char* const* options);

/** Like orvprint_open_bytes(), with bytes read from a callback until it reports the end. */
ORVPRINT_API int orvprint_open_reader(orvprint_document* document, orvprint_read_function read, void* data,
                                      const char* const* options);

/**
 * Number of pages.
 * @param count  set to the number; 0 after a failure
 */
ORVPRINT_API int orvprint_page_count(orvprint_document* document, unsigned int* count);

/**
 * Size of a page in points (1/72 inch), before paper and scale options are applied.
 * @param page    page number, from 1
 * @param width   set to the width; 0 after a failure
 * @param height  set to the height; 0 after a failure
 */
ORVPRINT_API int orvprint_page_size(orvprint_document* document, unsigned int page, double* width,
                                    double* height);

/**
 * Title of a page.
 * @param page   page number, from 1
 * @param title  set to the title, empty if none; valid until the document is freed or something else is
 *               opened
 */
ORVPRINT_API int orvprint_page_title(orvprint_document* document, unsigned int page, const char** title);

/**
 * Renders pages to a file, which appears under its name only if rendering succeeds. With several pages,
 * formats that hold one page per file write "name-1.png", "name-2.png" ... for "name.png". The input file and
 * the files it reads are never overwritten.
 * @param path     output file; its extension selects the format unless the option "format" does
 * @param options  see above; may be null
 */
ORVPRINT_API int orvprint_render_file(orvprint_document* document, const char* path,
                                      const char* const* options);

/**
 * Renders pages to an open file descriptor. Output is written as it is produced, so a failed call may leave
 * part of it.
 * @param descriptor  owned by the caller; it is not closed
 * @param options     must contain "format"
 */
ORVPRINT_API int orvprint_render_descriptor(orvprint_document* document, int descriptor,
                                            const char* const* options);

/**
 * Renders pages and passes the output to a callback once it is complete. If rendering fails, the callback is
 * not called.
 * @param write    receives the output in order, in pieces of any size
 * @param options  must contain "format"
 */
ORVPRINT_API int orvprint_render_writer(orvprint_document* document, orvprint_write_function write,
                                        void* data, const char* const* options);

/**
 * Checks the document for content that may not print as its author expects. Findings are not a failure.
 * @param options  see above; may be null
 * @param json     set to an object as `orvprint check --json` writes for one file; free with
 *                 orvprint_free_text(); null after a failure
 */
ORVPRINT_API int orvprint_check(orvprint_document* document, const char* const* options, char** json);

/**
 * Describes how the interpreter read the document.
 * @param json  set to an object as `orvprint inspect --json` writes, or an array of such objects if the
 *              document holds several drawings; free with orvprint_free_text(); null after a failure
 */
ORVPRINT_API int orvprint_dump(orvprint_document* document, char** json);

/** Frees a string allocated by orvprint_check() or orvprint_dump(). Null is allowed and ignored. */
ORVPRINT_API void orvprint_free_text(char* text);

#ifdef __cplusplus
}
#endif

#endif
