/*
 * qelfmt: the flat C interface to the drawing formats of a CAD part.
 *
 * Conventions
 *   Tags        A drawing is named by the tag of its sheet, an unsigned 32-bit number; 0 is never a
 *               drawing. Blocks, fields and tables are named by identifier texts, compared exactly
 *               (byte by byte, case counts); a null identifier is an empty one and is not found. Rows
 *               of a table are named by their zero-based index.
 *   Status      0 success, 1 failure. There are no other codes: the reason is in the last error.
 *   Last error  TRV_FMT_ask_last_error: the text of the most recent failure. A success leaves it.
 *   Exceptions  Failures of the platform and of the standard library become status 1. Any other
 *               exception (one thrown by a callback of yours, say) passes through.
 *   Partial     A failure part-way leaves what was done so far in the part; nothing is rolled back.
 *   Ownership   Value lists that the library fills belong to you: give them to TRV_FMT_free_value. Lists
 *               that you pass in stay yours and may be freed at once.
 *   Units       Coordinates and lengths are in the units of the sheet (millimetres or inches), measured
 *               from its lower left corner.
 *   Threads     None: call from one thread only, the platform's main thread.
 *   Order       TRV_FMT_initialize (or QEL_FMT_initialize) first, TRV_FMT_terminate last. Callbacks may be
 *               installed at any time.
 */
#ifndef TRV_FMT_H_INCLUDED
#define TRV_FMT_H_INCLUDED

#if defined(_WIN32)
#if defined(QELFMT_BUILDING)
#define TRV_FMT_EXPORT __declspec(dllexport)
#else
#define TRV_FMT_EXPORT __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define TRV_FMT_EXPORT __attribute__((visibility("default")))
#else
#define TRV_FMT_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A list of texts: the lines of a value, or identifiers. */
typedef struct TRV_FMT_value_list_s {
    int num_values; /* how many */
    char **values;  /* that many NUL-terminated texts */
} TRV_FMT_value_list_t;

/* Room for each buffer of TRV_FMT_ask_format: 255 characters and the NUL. */
#define TRV_FMT_MAX_ID_BUFSIZE 256

/* --- life cycle ---------------------------------------------------------------------------- */

/* Reads the settings (files "tr_format" in the "config" folders of the search directories) and loads
   every definition part ("*.prt" in their "format_defs" folders). Files that cannot be opened are
   skipped; a definition without its identifier is an error, and what was loaded before it stays. */
TRV_FMT_EXPORT int TRV_FMT_initialize(void);

/* The same; definitions are loaded only when load_definitions is not 0. */
TRV_FMT_EXPORT int QEL_FMT_initialize(char load_definitions);

/* Closes the definition parts that were opened and ends the library. Without an initialise it does
   nothing. The last error and the callbacks survive. */
TRV_FMT_EXPORT int TRV_FMT_terminate(void);

/* The text of the most recent failure; empty before the first. It is the library's own and valid until
   the next failing call. */
TRV_FMT_EXPORT const char *TRV_FMT_ask_last_error(void);

/* Releases what the library put into a list, not the structure itself. A null pointer is ignored. The
   list is left as it is: do not use or release it again. */
TRV_FMT_EXPORT void TRV_FMT_free_value(TRV_FMT_value_list_t *list);

/* --- callbacks ----------------------------------------------------------------------------- */

/* Called after a block has been added and has set itself up. Answer 0 to have it removed again. The
   texts are valid during the call. A null pointer removes the callback. */
TRV_FMT_EXPORT void QEL_FMT_set_add_block_cb(int (*callback)(const char *format_id,
                                                             const char *block_id));

/* Called at the end of appending a row to a table. A null pointer removes the callback. */
TRV_FMT_EXPORT void QEL_FMT_set_append_entry_cb(void (*callback)(const char *format_id,
                                                                 const char *block_id,
                                                                 const char *table_id));

/* --- formats -------------------------------------------------------------------------------- */

/* Places a format on a sheet that has none: sets the sheet's size, draws the frame, adds the blocks
   that the format requires.
   Errors: "Invalid drawing", "Format already exists on drawing", "No format with ID " + id,
   "No size with ID " + id. */
TRV_FMT_EXPORT int TRV_FMT_add_format(unsigned int drawing, const char *format_id,
                                      const char *size_id);

/* Copies the identifiers of the sheet's format and size, cut after 255 bytes, into two buffers of
   TRV_FMT_MAX_ID_BUFSIZE bytes. A sheet without a format leaves both untouched and is no error.
   Errors: "Invalid drawing", "Invalid argument" for a null buffer. */
TRV_FMT_EXPORT int TRV_FMT_ask_format(unsigned int drawing, char *format_id, char *size_name);

/* Removes the format with everything on it. A sheet without a format is no error. */
TRV_FMT_EXPORT int TRV_FMT_delete_format(unsigned int drawing);

/* Brings the format and its blocks up to date with the definitions that are loaded. A sheet without a
   format is no error. */
TRV_FMT_EXPORT int TRV_FMT_update(unsigned int drawing);

/* Makes the notes of all fields anew. A sheet without a format is no error. */
TRV_FMT_EXPORT int TRV_FMT_recreate_notes(unsigned int drawing);

/* Puts the content of every block back to the block's own point. A sheet without a format is no
   error. */
TRV_FMT_EXPORT int TRV_FMT_verify_block_locations(unsigned int drawing);

/* --- blocks --------------------------------------------------------------------------------- */

/* Adds a block at its default location. An add-block callback may veto it: it is then gone, and the
   status is 0 all the same. A format may hold several blocks of one identifier.
   Errors: "Invalid drawing", "No format found on drawing", "No block with ID " + id. */
TRV_FMT_EXPORT int TRV_FMT_add_block(unsigned int drawing, const char *block_id);

/* Removes the first block of that identifier; none is no error. */
TRV_FMT_EXPORT int TRV_FMT_delete_block(unsigned int drawing, const char *block_id);

/* The identifiers of the format's blocks in their order.
   Errors: "Invalid drawing", "No format found on drawing", "Invalid argument" for a null list. */
TRV_FMT_EXPORT int TRV_FMT_ask_blocks_on_drawing(unsigned int drawing,
                                                 TRV_FMT_value_list_t *blocks);

/* Puts the first block of that identifier at position (x, y); no such block is no error. A null
   position puts it where its definition wants it. */
TRV_FMT_EXPORT int QEL_FMT_move_block(unsigned int drawing, const char *block_id,
                                      const double *position);

/* --- fields --------------------------------------------------------------------------------- */

/* All of these find the block on the format and the field or table in the block. Errors:
   "Invalid drawing", "No format found on drawing", "No block with ID " + id + " on format.",
   "No field with ID " + id + " on block.", "No table with ID " + id + " on block.",
   "Wanted entry is greater then table has." */

/* The value, a text a line; an absent value is one empty text. */
TRV_FMT_EXPORT int TRV_FMT_ask_field_value(unsigned int drawing, const char *block_id,
                                           const char *field_id, TRV_FMT_value_list_t *value);

/* Sets the value; the note on the sheet follows. An empty list sets an empty value. */
TRV_FMT_EXPORT int TRV_FMT_set_field_value(unsigned int drawing, const char *block_id,
                                           const char *field_id, const TRV_FMT_value_list_t *value);

TRV_FMT_EXPORT int QEL_FMT_set_field_editable(unsigned int drawing, const char *block_id,
                                              const char *field_id, char editable);
/* Writes 1 or 0. */
TRV_FMT_EXPORT int QEL_FMT_get_field_editable(unsigned int drawing, const char *block_id,
                                              const char *field_id, char *editable);

/* --- tables --------------------------------------------------------------------------------- */

/* Values of a row's field. A field that the row lacks: "No field with ID " + id + " on table." */
TRV_FMT_EXPORT int TRV_FMT_ask_table_value(unsigned int drawing, const char *block_id,
                                           const char *table_id, int entry, const char *field_id,
                                           TRV_FMT_value_list_t *value);
/* A row that changes its height moves the rows after it. */
TRV_FMT_EXPORT int TRV_FMT_set_table_value(unsigned int drawing, const char *block_id,
                                           const char *table_id, int entry, const char *field_id,
                                           const TRV_FMT_value_list_t *value);

TRV_FMT_EXPORT int QEL_FMT_set_table_field_editable(unsigned int drawing, const char *block_id,
                                                    const char *table_id, int entry,
                                                    const char *field_id, char editable);
/* Writes 1 or 0. */
TRV_FMT_EXPORT int QEL_FMT_get_table_field_editable(unsigned int drawing, const char *block_id,
                                                    const char *table_id, int entry,
                                                    const char *field_id, char *editable);

/* Appends a row. */
TRV_FMT_EXPORT int TRV_FMT_add_entry(unsigned int drawing, const char *block_id,
                                     const char *table_id);
/* Deletes a row with its notes, borders and symbols; the rows after it close up. */
TRV_FMT_EXPORT int TRV_FMT_delete_entry(unsigned int drawing, const char *block_id,
                                        const char *table_id, int entry);
TRV_FMT_EXPORT int TRV_FMT_ask_number_table_entries(unsigned int drawing, const char *block_id,
                                                    const char *table_id, int *count);
/* Adds a symbol of the row at position (x, y, z); z is ignored. */
TRV_FMT_EXPORT int TRV_FMT_place_symbol(unsigned int drawing, const char *block_id,
                                        const char *table_id, int entry, const double *position);

/* The platform's start-up user exit: applies the setting "Field Selection". */
TRV_FMT_EXPORT void ufsta(void);

#ifdef __cplusplus
}
#endif
#endif
