/* SPDX-License-Identifier: Apache-2.0 */

/* Lists the pages of a drawing and renders them: print DRAWING OUTPUT [KEY VALUE]... */

#include <orvprint.h>
#include <stdio.h>

static int print(orvprint_document *document, const char *drawing, const char *output, const char *const *options) {
    unsigned int page, count;
    if (orvprint_open_file(document, drawing, NULL) != ORVPRINT_OK) return orvprint_error(document);
    if (orvprint_page_count(document, &count) != ORVPRINT_OK) return orvprint_error(document);
    for (page = 1; page <= count; ++page) {
        double width, height;
        const char *title;
        if (orvprint_page_size(document, page, &width, &height) != ORVPRINT_OK ||
            orvprint_page_title(document, page, &title) != ORVPRINT_OK)
            return orvprint_error(document);
        printf("page %u: %.1f x %.1f pt \"%s\"\n", page, width, height, title);
    }
    return orvprint_render_file(document, output, options);
}

int main(int count, char **arguments) {
    orvprint_document *document;
    int result;
    if (count < 3 || count % 2 == 0) {
        fprintf(stderr, "usage: print DRAWING OUTPUT [KEY VALUE]...\n");
        return ORVPRINT_ERROR_USAGE;
    }
    document = orvprint_new();
    if (!document) return ORVPRINT_ERROR_FAILED;
    /* The arguments end with a null pointer, as options do. */
    result = print(document, arguments[1], arguments[2], (const char *const *)arguments + 3);
    if (result != ORVPRINT_OK) fprintf(stderr, "%s\n", orvprint_error_text(document));
    orvprint_free(document);
    return result;
}
