/* The header compiles alone as C99. */
#include <korvane.h>

int main(void)
{
    korvane_context_delete(0);
    return STATUS_OK;
}
