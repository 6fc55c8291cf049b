// Runs a fuzz target on every file below the given directories, whole and damaged, as an ordinary
// test. ZAF2XML_DAMAGES in the environment is the number of damaged copies of each file.

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::string current_input;

/// Cuts the text, or changes up to eight bytes or up to one percent of them.
void Damage(std::string& bytes, std::minstd_rand& random) {
  if (bytes.empty()) return;
  if (random() % 3 == 0) return bytes.resize(random() % bytes.size());
  std::size_t left = random() % 2 == 0 ? bytes.size() / 100 + 1 : 1 + random() % 8;
  for (; left > 0; --left) bytes[random() % bytes.size()] = static_cast<char>(random() >> 8);
}

}  // namespace

int main(int argument_count, char** arguments) {
  std::signal(SIGABRT, [](int) { std::fprintf(stderr, "input: %s\n", current_input.c_str()); });
  const char* const wanted = std::getenv("ZAF2XML_DAMAGES");
  const long damages = wanted == nullptr ? 60 : std::strtol(wanted, nullptr, 10);
  int count = 0;
  for (int i = 1; i < argument_count; ++i) {
    if (!std::filesystem::exists(arguments[i])) continue;  // Some targets have no made seeds.
    for (const auto& entry : std::filesystem::recursive_directory_iterator(arguments[i])) {
      if (!entry.is_regular_file()) continue;
      std::ifstream file(entry.path(), std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(file), {}};
      std::minstd_rand random(static_cast<unsigned>(bytes.size()) + 1);
      for (long damage = 0; damage <= damages; ++damage, ++count) {
        current_input = entry.path().string() + ", damage " + std::to_string(damage);
        std::string input = bytes;
        if (damage > 0) Damage(input, random);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
      }
    }
  }
  std::printf("%d inputs tried\n", count);
  return count > 0 ? 0 : 1;
}
