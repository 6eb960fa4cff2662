#include "host/Command.h"

int main(int argc, char** argv) {
  return static_cast<int>(pelmora::host::runProgram({argv, static_cast<std::size_t>(argc)}));
}
