/**
 * @file trv_fmt.h
 * @brief The flat C interface to the drawing formats of a CAD part.
 *
 * C99 and C++, without any other header; it stands beside the platform's headers.
 *
 * ## Conventions
 *
 * - **Tags.** A drawing is named by the tag of its sheet, an unsigned 32-bit number (the platform's
 *   `tag_t`); 0 is never a drawing. Tags hold for one session: a part that is opened again has new ones.
 * - **Identifiers.** Blocks, fields and tables are named by texts that end with a NUL, compared exactly:
 *   byte by byte, case counts. A null identifier is an empty one and is not found. Rows of a table are
 *   named by their index from 0.
 * - **Status.** 0 success, 1 failure. There are no other codes: the reason is in the last error.
 * - **Last error.** TRV_FMT_ask_last_error() gives the text of the most recent failure. Each failure
 *   replaces it, a success leaves it. "Errors" below lists the library's own texts, in the order in
 *   which they are tested; every function may also pass on a text of the platform.
 * - **Exceptions.** Failures of the platform and of the standard library become status 1. An exception
 *   of any other kind (one that a callback of yours throws, say) passes through to you.
 * - **Partial work.** A failure part-way leaves what was done so far in the part; nothing is rolled back.
 * - **Ownership.** The contents of a list that the library fills are yours: give them to
 *   TRV_FMT_free_value(). The list itself, lists that you pass in and their texts stay yours; the
 *   library keeps no pointer to them, so that you may free them at once.
 * - **Lifetime of texts.** The last error is the library's own, valid until the next failing call. Texts
 *   that a callback gets are valid until it returns.
 * - **Buffer sizes.** Only TRV_FMT_ask_format() writes into buffers of yours: TRV_FMT_MAX_ID_BUFSIZE
 *   bytes each. Everything else has any length.
 * - **Units.** Coordinates are in the units of the sheet (millimetres or inches), measured from its
 *   lower left corner.
 * - **Threads.** None: call from one thread only, the platform's main thread.
 * - **Order.** TRV_FMT_initialize() or QEL_FMT_initialize() first, TRV_FMT_terminate() last. Callbacks
 *   may be installed at any time.
 */
#ifndef TRV_FMT_H_INCLUDED
#define TRV_FMT_H_INCLUDED

/** Marks the functions that the library exports. */
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

/** A list of texts: the lines of a value, or identifiers. */
typedef struct TRV_FMT_value_list_s {
    int num_values; /**< how many */
    char **values;  /**< that many texts, each ending with a NUL */
} TRV_FMT_value_list_t;

/** Bytes of each buffer of TRV_FMT_ask_format(): 255 characters and the NUL. */
#define TRV_FMT_MAX_ID_BUFSIZE 256

/** @name Life cycle
 *  @{ */

/** Starts the library: reads the settings (files "tr_format" in the "config" folders of the search
 *  directories) and loads every definition part ("*.prt" in their "format_defs" folders). Files that
 *  cannot be opened are skipped; what was loaded before a failure stays.
 *  @return the status. Errors: none of the library's own but those of a definition without identifier.
 *  @code
 *  if (TRV_FMT_initialize()) fprintf(stderr, "%s\n", TRV_FMT_ask_last_error());
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_initialize(void);

/** Starts the library like TRV_FMT_initialize(), with or without definitions.
 *  @param load_definitions 0: settings only, no definition is known; otherwise definitions too
 *  @return the status. Errors: those of TRV_FMT_initialize().
 *  @code
 *  QEL_FMT_initialize(0); // enough to read and fill what stands on sheets already
 *  @endcode */
TRV_FMT_EXPORT int QEL_FMT_initialize(char load_definitions);

/** Ends the library and closes the definition parts that it opened. Without an initialise it does nothing.
 *  The last error and the callbacks survive.
 *  @return the status. Errors: none of the library's own.
 *  @code
 *  TRV_FMT_terminate();
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_terminate(void);

/** The text of the most recent failure; empty before the first.
 *  @return a text of the library's own, valid until the next failing call; never null. Errors: none.
 *  @code
 *  if (TRV_FMT_update(sheet)) fprintf(stderr, "%s\n", TRV_FMT_ask_last_error());
 *  @endcode */
TRV_FMT_EXPORT const char *TRV_FMT_ask_last_error(void);

/** Releases the contents of a list that the library filled, and empties it; the structure stays yours.
 *  Errors: none.
 *  @param list a list that a TRV_FMT_ask_ function filled, an empty one, or null
 *  @code
 *  TRV_FMT_value_list_t blocks = {0, NULL};
 *  TRV_FMT_ask_blocks_on_drawing(sheet, &blocks);
 *  TRV_FMT_free_value(&blocks); // also after a failure
 *  @endcode */
TRV_FMT_EXPORT void TRV_FMT_free_value(TRV_FMT_value_list_t *list);

/** The platform's start-up user exit: applies the setting "Field Selection", which lets users pick the
 *  notes and borders of fields, rows and blocks. The platform calls it; it never fails. Errors: none, a
 *  failure goes to the platform's system log.
 *  @code
 *  ufsta(); // as the platform does once when it loads the library
 *  @endcode */
TRV_FMT_EXPORT void ufsta(void);

/** @} */
/** @name Callbacks
 *  @{ */

/** Installs the function that is asked about every block that was added and has set itself up. It may
 *  call the library, also to install another function. Errors: none.
 *  @param callback gets the identifiers of the format and of the new block; its answer 0 has the block
 *                  removed again. Null: nobody is asked
 *  @code
 *  static int keep_all_but_notes(const char *format_id, const char *block_id)
 *  {
 *      return strcmp(format_id, "ISO") != 0 || strcmp(block_id, "NOTES") != 0;
 *  }
 *
 *  QEL_FMT_set_add_block_cb(keep_all_but_notes);
 *  @endcode */
TRV_FMT_EXPORT void QEL_FMT_set_add_block_cb(int (*callback)(const char *format_id,
                                                             const char *block_id));

/** Installs the function that is told of every row appended to a table. It may call the library, also
 *  to install another function. Errors: none.
 *  @param callback gets the identifiers of the format, the block and the table. Null: nobody is told
 *  @code
 *  static void tell(const char *format_id, const char *block_id, const char *table_id)
 *  {
 *      printf("%s: a row in %s.%s\n", format_id, block_id, table_id);
 *  }
 *
 *  QEL_FMT_set_append_entry_cb(tell);
 *  @endcode */
TRV_FMT_EXPORT void QEL_FMT_set_append_entry_cb(void (*callback)(const char *format_id,
                                                                 const char *block_id,
                                                                 const char *table_id));

/** @} */
/** @name Formats
 *  @{ */

/** Places a format on a sheet that has none: sets the sheet's size, draws the frame and adds the blocks
 *  that the format requires.
 *  @param drawing   tag of the sheet
 *  @param format_id a format among the definitions
 *  @param size_id   one of its sizes
 *  @return the status. Errors: "Invalid drawing"; "Format already exists on drawing";
 *          "No format with ID " + format_id; "No size with ID " + size_id.
 *  @code
 *  if (TRV_FMT_add_format(sheet, "ISO", "A3")) fprintf(stderr, "%s\n", TRV_FMT_ask_last_error());
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_add_format(unsigned int drawing, const char *format_id,
                                      const char *size_id);

/** Which format and size a sheet has, each cut after 255 bytes. A sheet without a format leaves both
 *  buffers as they are and is no error.
 *  @param drawing   tag of the sheet
 *  @param format_id buffer of TRV_FMT_MAX_ID_BUFSIZE bytes for the format's identifier
 *  @param size_name the same for the size's
 *  @return the status. Errors: "Invalid drawing"; "Invalid argument" for a null buffer.
 *  @code
 *  char format[TRV_FMT_MAX_ID_BUFSIZE] = "none", size[TRV_FMT_MAX_ID_BUFSIZE] = "";
 *  if (TRV_FMT_ask_format(sheet, format, size) == 0) printf("%s %s\n", format, size);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_ask_format(unsigned int drawing, char *format_id, char *size_name);

/** Removes the format with everything on it. A sheet without a format is no error.
 *  @param drawing tag of the sheet
 *  @return the status. Errors: "Invalid drawing".
 *  @code
 *  TRV_FMT_delete_format(sheet);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_delete_format(unsigned int drawing);

/** Brings the format and its blocks up to date with the definitions that are loaded. A sheet without a
 *  format is no error, nor is a block whose definition is gone: it stays as it is. The time that an
 *  update took goes to the standard output.
 *  @param drawing tag of the sheet
 *  @return the status. Errors: "Invalid drawing"; "Definition for format ID(" + format_id + ") was not
 *          found on disk." and a second line, "Unable to update format.".
 *  @code
 *  if (TRV_FMT_update(sheet)) fprintf(stderr, "%s\n", TRV_FMT_ask_last_error());
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_update(unsigned int drawing);

/** Makes the notes of all fields anew, with the values they have. A sheet without a format is no error.
 *  @param drawing tag of the sheet
 *  @return the status. Errors: "Invalid drawing".
 *  @code
 *  TRV_FMT_recreate_notes(sheet);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_recreate_notes(unsigned int drawing);

/** Puts the content of every block back to the block's own point. A sheet without a format is no error.
 *  @param drawing tag of the sheet
 *  @return the status. Errors: "Invalid drawing".
 *  @code
 *  TRV_FMT_verify_block_locations(sheet);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_verify_block_locations(unsigned int drawing);

/** @} */
/** @name Blocks
 *  A format may hold several blocks of one identifier: the first one is meant.
 *  @{ */

/** Adds a block at its default location. The add-block callback may have it removed again; the status
 *  is 0 all the same.
 *  @param drawing  tag of the sheet
 *  @param block_id a block among the definitions
 *  @return the status. Errors: "Invalid drawing"; "No format found on drawing";
 *          "No block with ID " + block_id; "Block location on format not found for block " + block_id.
 *  @code
 *  TRV_FMT_add_block(sheet, "REVISIONS");
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_add_block(unsigned int drawing, const char *block_id);

/** Removes a block. No such block is no error.
 *  @param drawing  tag of the sheet
 *  @param block_id the block
 *  @return the status. Errors: "Invalid drawing"; "No format found on drawing".
 *  @code
 *  TRV_FMT_delete_block(sheet, "REVISIONS");
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_delete_block(unsigned int drawing, const char *block_id);

/** The identifiers of the format's blocks in their order.
 *  @param drawing tag of the sheet
 *  @param blocks  list to be filled; empty after a failure
 *  @return the status. Errors: "Invalid drawing"; "Invalid argument" for a null list;
 *          "No format found on drawing".
 *  @code
 *  TRV_FMT_value_list_t blocks = {0, NULL};
 *  if (TRV_FMT_ask_blocks_on_drawing(sheet, &blocks) == 0)
 *      for (int i = 0; i < blocks.num_values; ++i) printf("%s\n", blocks.values[i]);
 *  TRV_FMT_free_value(&blocks);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_ask_blocks_on_drawing(unsigned int drawing,
                                                 TRV_FMT_value_list_t *blocks);

/** Moves a block with everything in it. No such block is no error.
 *  @param drawing  tag of the sheet
 *  @param block_id the block
 *  @param position x and y of the block's point; null: where its definition wants it
 *  @return the status. Errors: "Invalid drawing"; "No format found on drawing".
 *  @code
 *  const double position[2] = {210.0, 100.0};
 *  QEL_FMT_move_block(sheet, "REVISIONS", position);
 *  @endcode */
TRV_FMT_EXPORT int QEL_FMT_move_block(unsigned int drawing, const char *block_id,
                                      const double *position);

/** @} */
/** @name Fields
 *  @{ */

/** The value of a field, a text a line; an absent value is one empty text.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param field_id a field of that block
 *  @param value    list to be filled; empty after a failure
 *  @return the status. Errors: "Invalid drawing"; "Invalid argument" for a null list;
 *          "No format found on drawing"; "No block with ID " + block_id + " on format.";
 *          "No field with ID " + field_id + " on block.".
 *  @code
 *  TRV_FMT_value_list_t title = {0, NULL};
 *  if (TRV_FMT_ask_field_value(sheet, "TITLE", "title", &title) == 0) puts(title.values[0]);
 *  TRV_FMT_free_value(&title);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_ask_field_value(unsigned int drawing, const char *block_id,
                                           const char *field_id, TRV_FMT_value_list_t *value);

/** Gives a field a new value; its note on the sheet follows.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param field_id a field of that block
 *  @param value    a text a line; a null text is an empty line, an empty list an empty value
 *  @return the status. Errors: "Invalid drawing"; "Invalid argument" for a null list, a negative
 *          number or missing texts; "No format found on drawing";
 *          "No block with ID " + block_id + " on format.";
 *          "No field with ID " + field_id + " on block.".
 *  @code
 *  char first[] = "Volute casing", second[] = "split axially", *lines[] = {first, second};
 *  const TRV_FMT_value_list_t title = {2, lines};
 *  TRV_FMT_set_field_value(sheet, "TITLE", "title", &title);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_set_field_value(unsigned int drawing, const char *block_id,
                                           const char *field_id, const TRV_FMT_value_list_t *value);

/** Says whether users may edit a field.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param field_id a field of that block
 *  @param editable 0: they may not; anything else: they may
 *  @return the status. Errors: "Invalid drawing"; "No format found on drawing";
 *          "No block with ID " + block_id + " on format.";
 *          "No field with ID " + field_id + " on block.".
 *  @code
 *  QEL_FMT_set_field_editable(sheet, "TITLE", "number", 0);
 *  @endcode */
TRV_FMT_EXPORT int QEL_FMT_set_field_editable(unsigned int drawing, const char *block_id,
                                              const char *field_id, char editable);

/** Whether users may edit a field.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param field_id a field of that block
 *  @param editable gets 1 or 0; left as it is by a failure
 *  @return the status. Errors: "Invalid drawing"; "Invalid argument" for a null pointer;
 *          "No format found on drawing"; "No block with ID " + block_id + " on format.";
 *          "No field with ID " + field_id + " on block.".
 *  @code
 *  char editable;
 *  if (QEL_FMT_get_field_editable(sheet, "TITLE", "number", &editable) == 0 && !editable)
 *      puts("the number is fixed");
 *  @endcode */
TRV_FMT_EXPORT int QEL_FMT_get_field_editable(unsigned int drawing, const char *block_id,
                                              const char *field_id, char *editable);

/** @} */
/** @name Tables and their rows
 *  @{ */

/** The value of a row's field, a text a line; an absent value is one empty text.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param table_id a table of that block
 *  @param entry    index of the row, from 0
 *  @param field_id a field of the row
 *  @param value    list to be filled; empty after a failure
 *  @return the status. Errors: "Invalid drawing"; "Invalid argument" for a null list;
 *          "No format found on drawing"; "No block with ID " + block_id + " on format.";
 *          "No table with ID " + table_id + " on block."; "Wanted entry is greater then table has.";
 *          "No field with ID " + field_id + " on table.".
 *  @code
 *  TRV_FMT_value_list_t change = {0, NULL};
 *  if (TRV_FMT_ask_table_value(sheet, "REVISIONS", "REVISIONS", 0, "change", &change) == 0)
 *      puts(change.values[0]);
 *  TRV_FMT_free_value(&change);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_ask_table_value(unsigned int drawing, const char *block_id,
                                           const char *table_id, int entry, const char *field_id,
                                           TRV_FMT_value_list_t *value);

/** Gives a row's field a new value. A row that changes its height moves the rows after it.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param table_id a table of that block
 *  @param entry    index of the row, from 0
 *  @param field_id a field of the row
 *  @param value    as for TRV_FMT_set_field_value()
 *  @return the status. Errors: "Invalid drawing"; "Invalid argument" as for TRV_FMT_set_field_value();
 *          "No format found on drawing"; "No block with ID " + block_id + " on format.";
 *          "No table with ID " + table_id + " on block."; "Wanted entry is greater then table has.";
 *          "No field with ID " + field_id + " on table.".
 *  @code
 *  char text[] = "bore enlarged", *lines[] = {text};
 *  const TRV_FMT_value_list_t change = {1, lines};
 *  TRV_FMT_set_table_value(sheet, "REVISIONS", "REVISIONS", 0, "change", &change);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_set_table_value(unsigned int drawing, const char *block_id,
                                           const char *table_id, int entry, const char *field_id,
                                           const TRV_FMT_value_list_t *value);

/** Says whether users may edit a row's field.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param table_id a table of that block
 *  @param entry    index of the row, from 0
 *  @param field_id a field of the row
 *  @param editable 0: they may not; anything else: they may
 *  @return the status. Errors: "Invalid drawing"; "No format found on drawing";
 *          "No block with ID " + block_id + " on format.";
 *          "No table with ID " + table_id + " on block."; "Wanted entry is greater then table has.";
 *          "No field with ID " + field_id + " on block.".
 *  @code
 *  QEL_FMT_set_table_field_editable(sheet, "REVISIONS", "REVISIONS", 0, "index", 0);
 *  @endcode */
TRV_FMT_EXPORT int QEL_FMT_set_table_field_editable(unsigned int drawing, const char *block_id,
                                                    const char *table_id, int entry,
                                                    const char *field_id, char editable);

/** Whether users may edit a row's field.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param table_id a table of that block
 *  @param entry    index of the row, from 0
 *  @param field_id a field of the row
 *  @param editable gets 1 or 0; left as it is by a failure
 *  @return the status. Errors: "Invalid drawing"; "Invalid argument" for a null pointer;
 *          "No format found on drawing"; "No block with ID " + block_id + " on format.";
 *          "No table with ID " + table_id + " on block."; "Wanted entry is greater then table has.";
 *          "No field with ID " + field_id + " on block.".
 *  @code
 *  char editable = 1;
 *  QEL_FMT_get_table_field_editable(sheet, "REVISIONS", "REVISIONS", 0, "index", &editable);
 *  if (!editable) puts("the index is fixed");
 *  @endcode */
TRV_FMT_EXPORT int QEL_FMT_get_table_field_editable(unsigned int drawing, const char *block_id,
                                                    const char *table_id, int entry,
                                                    const char *field_id, char *editable);

/** Appends a row and tells the append-entry callback. A row that cannot be made leaves nothing; an
 *  exception of the callback leaves the row.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param table_id a table of that block
 *  @return the status. Errors: "Invalid drawing"; "No format found on drawing";
 *          "No block with ID " + block_id + " on format.";
 *          "No table with ID " + table_id + " on block.".
 *  @code
 *  TRV_FMT_add_entry(sheet, "REVISIONS", "REVISIONS");
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_add_entry(unsigned int drawing, const char *block_id,
                                     const char *table_id);

/** Deletes a row with its notes, borders and symbols; the rows after it close up.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param table_id a table of that block
 *  @param entry    index of the row, from 0
 *  @return the status. Errors: "Invalid drawing"; "No format found on drawing";
 *          "No block with ID " + block_id + " on format.";
 *          "No table with ID " + table_id + " on block."; "Wanted entry is greater then table has.".
 *  @code
 *  TRV_FMT_delete_entry(sheet, "REVISIONS", "REVISIONS", 0);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_delete_entry(unsigned int drawing, const char *block_id,
                                        const char *table_id, int entry);

/** How many rows a table has.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param table_id a table of that block
 *  @param count    gets the number; left as it is by a failure
 *  @return the status. Errors: "Invalid drawing"; "Invalid argument" for a null pointer;
 *          "No format found on drawing"; "No block with ID " + block_id + " on format.";
 *          "No table with ID " + table_id + " on block.".
 *  @code
 *  int rows = 0;
 *  TRV_FMT_ask_number_table_entries(sheet, "REVISIONS", "REVISIONS", &rows);
 *  printf("%d rows\n", rows);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_ask_number_table_entries(unsigned int drawing, const char *block_id,
                                                    const char *table_id, int *count);

/** Adds a symbol that says what the row says, anywhere on the sheet; where the row says nothing, what
 *  the last row before it says. It follows their values and goes with the row.
 *  @param drawing  tag of the sheet
 *  @param block_id a block of its format
 *  @param table_id a table of that block
 *  @param entry    index of the row, from 0
 *  @param position x, y and z of the symbol on the sheet: x and y are finite numbers, z is ignored
 *  @return the status. Errors: "Invalid drawing"; "Invalid argument" for a null position;
 *          "No format found on drawing"; "No block with ID " + block_id + " on format.";
 *          "No table with ID " + table_id + " on block."; "Wanted entry is greater then table has.".
 *  @code
 *  const double beside_the_bore[3] = {120.0, 150.0, 0.0};
 *  TRV_FMT_place_symbol(sheet, "REVISIONS", "REVISIONS", 0, beside_the_bore);
 *  @endcode */
TRV_FMT_EXPORT int TRV_FMT_place_symbol(unsigned int drawing, const char *block_id,
                                        const char *table_id, int entry, const double *position);

/** @} */

#ifdef __cplusplus
}
#endif
#endif
