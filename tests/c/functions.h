/* Every function that takes a tag, as a row: how to call it, and which errors it may report. The rows are compared with
   the comments of the header. */
#ifndef QELFMT_TESTS_C_FUNCTIONS_H
#define QELFMT_TESTS_C_FUNCTIONS_H

#ifdef __cplusplus
extern "C" {
#endif

/* What a call is about; a function takes of it what it needs. */
struct place {
    unsigned int sheet;
    const char *format, *size;
    const char *block, *table;
    int row;
    const char *field;
};

enum error {
    INVALID_DRAWING,
    INVALID_ARGUMENT,
    FORMAT_EXISTS,
    NO_FORMAT_DEFINITION,
    NO_SIZE_DEFINITION,
    DEFINITION_GONE,
    NO_FORMAT,
    NO_BLOCK_DEFINITION,
    NO_PLACE,
    NO_BLOCK,
    NO_TABLE,
    NO_ROW,
    NO_FIELD,  /* of a block, or of a row for the editability functions */
    NO_COLUMN, /* of a row for the value functions */
    ERRORS
};
#define BIT(error) (1u << (error))

/* The text of an error, with an asterisk for the identifier. */
extern const char *const error_texts[ERRORS];

struct function {
    const char *name;
    /* All arguments right, or with null for each pointer that is no identifier. */
    int (*call)(const struct place *at, int with_pointers);
    unsigned int errors;
    int passes_over; /* a sheet without a format is no error */
};

#define FUNCTIONS 22
extern const struct function functions[FUNCTIONS];

#ifdef __cplusplus
}
#endif
#endif
