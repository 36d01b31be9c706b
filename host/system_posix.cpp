#include <csignal>

#include "host/system.h"

namespace host {

std::vector<std::string> words_of(int argc, char** argv) { return {argv + (argc > 0 ? 1 : 0), argv + argc}; }

Streams::Streams() noexcept { std::signal(SIGPIPE, SIG_IGN); }
Streams::~Streams() { static_cast<void>(former_); }  // nothing was changed but what ends with the process

}  // namespace host
