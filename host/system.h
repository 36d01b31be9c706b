// What the program asks of its system beside files: one source for each system answers it.
#pragma once

#include <string>
#include <vector>

namespace host {

// The words behind the program's name, UTF-8. Throws a `Stop` with `WrongUsage` for one that is no text.
std::vector<std::string> words_of(int argc, char** argv);

// For a process that reads, works and ends: memory that it frees stays with it, and comes in large pages where the system has
// them. Does nothing where the allocator cannot be told, and gives up quietly what it is not given.
void keep_memory() noexcept;

// While it lives the standard streams take and give bytes as they are, a terminal shows UTF-8, and a reader of standard output
// that went away is a failed write.
class Streams {
 public:
  Streams() noexcept;
  ~Streams();
  Streams(const Streams&) = delete;
  Streams& operator=(const Streams&) = delete;

 private:
  unsigned former_ = 0;  // what the terminal showed before; 0: nothing to restore
};

}  // namespace host
