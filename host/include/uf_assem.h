/* The work part. Declared in uf_part.h. */
#ifndef UF_ASSEM_H_INCLUDED
#define UF_ASSEM_H_INCLUDED
#include "uf_part.h"
#endif
