// Paints one garden; which, is chosen when this is compiled.
#include "corals/gardens.h"

int main(int, char** argv) { art::paintGarden(art::GARDEN(), argv[1]); }
