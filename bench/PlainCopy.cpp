// The minimum work of any conversion of files: reads each input whole and writes as many bytes as
// its conversion has, without processing. A list has these sizes, a line "SIZE NAME" for each
// converted file. The content written is arbitrary.

#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>
#include <vector>

namespace {

struct TPair {
  std::string input;
  std::string output;
  std::size_t output_size;
};

/// Processes one file, with as few system calls as possible.
bool CopyOne(const TPair& pair, std::vector<char>& bytes) {
  const int input = open(pair.input.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (input < 0 || fstat(input, &status) != 0) return false;
  const auto input_size = static_cast<std::size_t>(status.st_size);
  if (bytes.size() < input_size) bytes.resize(input_size);
  const bool is_read = read(input, bytes.data(), input_size) == status.st_size;
  close(input);
  const int output = open(pair.output.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (!is_read || output < 0) return false;
  const bool is_written =
      write(output, bytes.data(), pair.output_size) == static_cast<ssize_t>(pair.output_size);
  close(output);
  return is_written;
}

std::vector<TPair> ListPairs(const std::string& in, const std::string& list,
                             const std::string& out) {
  std::unordered_map<std::string, std::size_t> sizes;
  std::ifstream lines(list);
  std::size_t size = 0;
  std::string converted;
  while (lines >> size >> converted) sizes[converted] = size;
  std::vector<TPair> pairs;
  DIR* const directory = opendir(in.c_str());
  if (directory == nullptr) return pairs;
  while (const dirent* const entry = readdir(directory)) {
    const std::string name = entry->d_name;
    if (!name.ends_with(".zaf")) continue;
    converted = name.substr(0, name.size() - 4) + ".xzf";
    pairs.push_back({in + "/" + name, out + "/" + converted, sizes[converted]});
  }
  closedir(directory);
  return pairs;
}

}  // namespace

int main(int argument_count, char** arguments) {
  if (argument_count != 4) {
    std::fputs("usage: plain_copy INPUT-DIRECTORY LIST OUTPUT-DIRECTORY\n", stderr);
    return 2;
  }
  const std::vector<TPair> pairs = ListPairs(arguments[1], arguments[2], arguments[3]);
  std::vector<char> bytes;
  for (const TPair& pair : pairs)
    if (bytes.size() < pair.output_size) bytes.resize(pair.output_size);
  for (const TPair& pair : pairs)
    if (!CopyOne(pair, bytes)) {
      std::perror(pair.input.c_str());
      return 1;
    }
  return pairs.empty() ? 1 : 0;
}
