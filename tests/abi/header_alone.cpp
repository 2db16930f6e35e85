// The header compiles alone as C++.
#include <korvane.h>

int main()
{
    korvane_context_delete(nullptr);
    return STATUS_OK;
}
