// The start-up of the library on a thread. The component does it before the first object on a thread exists; a program that
// links the library calls it itself, once for each thread:
//
//   int main() {
//     hedro34::Main();
//     ...
//
// Without it all works but that a native fault ends the process, where the first thread has not been started, and that a
// stack overflow does, on a thread that has not.
#pragma once

namespace hedro34 {

void Main() noexcept;

}  // namespace hedro34
