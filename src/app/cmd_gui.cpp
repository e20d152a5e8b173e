// Starting the designer: built once the embedded host and the design window are in place.
#include <cstdio>

int RunDesigner(int, char**)
{
    std::fprintf(stderr, "pagewright: the design window is not available in this build yet\n");
    return 1;
}
