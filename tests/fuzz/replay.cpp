// Feeds every target with its corpus once: `fuzz_replay FOLDER`.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "tests/fuzz/targets.hpp"

int main(int, char** arguments) {
  int fed = 0;
  for (const auto& folder : std::filesystem::directory_iterator(arguments[1])) {
    const auto* target = quorl::FindFuzzTarget(folder.path().filename().string());
    if (target == nullptr) {
      std::cerr << folder.path() << " belongs to no target\n";
      return 1;
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      std::ifstream file(entry.path(), std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(file), {}};
      target->feed(bytes);
      ++fed;
    }
  }
  std::cout << fed << " inputs\n";
  return fed == 0 ? 1 : 0;
}
