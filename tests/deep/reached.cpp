// Linked to the tests: with HEDRO34_REACHED, a folder, each test leaves a file there with the numbers of the mutants that it
// came past, "-" before one that cannot be; "start" has those before the first test.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "tests/deep/mutants.h"

namespace {

class Recorder : public testing::EmptyTestEventListener {
 public:
  explicit Recorder(const char* folder) : folder_(folder) {}
  void OnTestProgramStart(const testing::UnitTest&) override { write("start"); }
  void OnTestEnd(const testing::TestInfo& test) override {
    write(std::string(test.test_suite_name()) + "." + test.name());
  }

 private:
  void write(const std::string& name) {
    std::ofstream file(folder_ + "/" + name);
    for (int number = 0; number < mutants::most; ++number) {
      mutants::Reached& reached = mutants::switches().reached[number];
      if (reached != mutants::no) file << (reached == mutants::yes ? "" : "-") << number << '\n';
      reached = mutants::no;
    }
  }

  std::string folder_;
};

const bool recording = [] {
  const char* const folder = std::getenv("HEDRO34_REACHED");
  if (folder) testing::UnitTest::GetInstance()->listeners().Append(new Recorder(folder));
  return folder != nullptr;
}();

}  // namespace
