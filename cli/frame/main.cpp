#include "cli/frame/Program.h"

#include <string>
#include <vector>

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
  return orvane::cli::runProgram(words);
}
