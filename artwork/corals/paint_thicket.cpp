// Paints the thickets in front.
#include "corals/gardens.h"

int main(int, char** argv) { art::paintThicket(argv[1]); }
