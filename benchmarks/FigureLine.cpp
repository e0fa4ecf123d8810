// What Figure.h makes of the pairs on the standard input: figure_line NAME UNIT BOUND [KEY VALUE]. For the test that
// holds it against Figure.py. The exit code tells whether the bound is kept.
#include <cstdlib>

#include "Figure.h"

int main(int argc, char** argv) {
  if (argc != 4 && argc != 6) return 2;
  Figure figure(argv[1], argv[2]);
  double ours = 0, peer = 0;
  while (std::scanf("%lf %lf", &ours, &peer) == 2) figure.Add(ours, peer);
  if (argc == 6) figure.Note(argv[4], std::atof(argv[5]));
  return figure.Print(std::atof(argv[3])) ? 0 : 1;
}
