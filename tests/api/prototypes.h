#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef void (*VeltoFunction)(void);

typedef struct VeltoPrototype {
    const char* name;
    VeltoFunction address;
} VeltoPrototype;

/* Copies at most capacity of the linked functions, in the header's order; returns their number. */
size_t velto_prototypes(VeltoPrototype* prototypes, size_t capacity);

#ifdef __cplusplus
}
#endif
