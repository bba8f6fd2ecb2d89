/* Pictures of sheets, for callers in C and through foreign function interfaces. Defined by
   libqelfmt-display; C++ has more in display/render.h. */
#ifndef NXHOST_PICTURE_H_INCLUDED
#define NXHOST_PICTURE_H_INCLUDED

#include "../uf_defs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Writes sheets of the open part as one PDF, a page each, in their order. The file appears whole or not
   at all. 0, or 1 when a tag is no sheet or the file cannot be written. */
DllExport int nxhost_write_pdf(const tag_t *sheets, int number, const char *path);

/* What the last picture failed of, and the remedy: a text of the library's own, valid until the next
   picture fails; empty before. */
DllExport const char *nxhost_ask_picture_error(void);

#ifdef __cplusplus
}
#endif
#endif
