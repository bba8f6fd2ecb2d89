/* Base types and macros of the platform's C interface. */
#ifndef UF_DEFS_H_INCLUDED
#define UF_DEFS_H_INCLUDED

#if defined(__GNUC__)
#define DllExport __attribute__((visibility("default")))
#else
#define DllExport
#endif

/* Name decorator of the old numbered routines: one plain symbol serves here. */
#define FTN(name) name

typedef unsigned int tag_t, *tag_p_t; /* handle of an object; 0 is no object */
typedef unsigned char logical;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

#define NULL_TAG ((tag_t)0)
#define null_tag NULL_TAG
#define ERROR_OK 0

#define PI 3.14159265358979324
#define TWOPI (2.0 * PI)
#define DEGRA (PI / 180.0) /* degrees times DEGRA are radians */
#define RADEG (180.0 / PI)

#define MAX_LINE_SIZE 132
#define MAX_ENTITY_NAME_SIZE 30
#define MAX_FSPEC_BUFSIZE 1024 /* file name with its NUL */

#endif
