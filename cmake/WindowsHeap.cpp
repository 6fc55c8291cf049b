// Makes operator new and delete use mimalloc, which replaces them itself on other systems.
#include <mimalloc-new-delete.h>
