// fondarix: the desktop client.

#include "app/startup.h"

int main(int argc, char **argv) { return RunFondarix(argc, argv); }
