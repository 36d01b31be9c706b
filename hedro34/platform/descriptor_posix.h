// What the sources for POSIX systems share: file descriptors, and paths as the system takes them.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "hedro34/base/text.h"

namespace hedro34::posix {

class Descriptor {
 public:
  explicit Descriptor(int number = -1) noexcept : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.detach()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    close();
    number_ = other.detach();
    return *this;
  }
  ~Descriptor() { close(); }

  explicit operator bool() const noexcept { return number_ >= 0; }
  int number() const noexcept { return number_; }
  int detach() noexcept { return std::exchange(number_, -1); }
  // False when the system reports a failure only now, as it may for files of another machine. An interrupted close is done.
  bool close() noexcept {
    const int number = detach();
    return number < 0 || ::close(number) == 0 || errno == EINTR;
  }

 private:
  int number_;
};

template <class Call>
auto uninterrupted(const Call& call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

// The descriptor that `open` gives, interruptions aside. A standard stream that the caller of the program closed does not
// lend its number to a file, into which the program would then write its lines.
template <class Open>
Descriptor opened(const Open& open) {
  Descriptor descriptor(uninterrupted(open));
  if (descriptor && descriptor.number() <= STDERR_FILENO) {
    descriptor = Descriptor(::fcntl(descriptor.number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  }
  return descriptor;
}

std::string system_reason(int error);

// Why no file can have this path; empty when one can.
std::string_view impossible(StringView path) noexcept;

// True when the system's answer to a path is that there is nothing under it. A long text of folders with "\" is one name
// too long for the system.
inline bool names_nothing(int error) noexcept { return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG; }

std::string with_slashes(std::string path);

// The path behind the links that its last name stands for, whether a file is there or not.
std::filesystem::path behind_links(std::filesystem::path path);

// False, and the reason in `errno`, when the system does not take all of it.
bool write_all(int descriptor, std::string_view bytes);

}  // namespace hedro34::posix
