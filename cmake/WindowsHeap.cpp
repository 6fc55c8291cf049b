// Has operator new and delete take their memory from mimalloc. On other systems the library
// replaces them itself.
#include <mimalloc-new-delete.h>
