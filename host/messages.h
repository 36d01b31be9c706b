// What the library says while a command runs: message boxes and reported failures. Both go to standard error at once and
// are kept, in order, as the lines of the messages file, with notes of what tests left out among them.
//
//   Messages messages(PartialCredit::Ask);
//   platform().message_box = &messages;
//   set_error_object(messages.error_object());  // before the first object of the library is made
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "hedro34/base/ref.h"
#include "hedro34/model/left_out.h"
#include "hedro34/platform/message_box.h"
#include "host/arguments.h"

namespace host {

class Messages final : public hedro34::TerminalMessageBox {
 public:
  explicit Messages(PartialCredit partial_credit) : partial_credit_(partial_credit) {}

  // Shows the box. The one about partial credit is answered as the constructor was told; where that is to ask, and for any
  // other question, the user is asked on the terminal.
  std::int32_t Show(hedro34::StringView text, std::int32_t flags, hedro34::StringView title) override;

  // Writes and keeps a failure that was counted.
  void failure(std::int32_t number, const hedro34::String& description, const hedro34::String& location);

  // Keeps a note, which is not shown; it names the file when it is given.
  void note(const hedro34::LeftOut& lost, const hedro34::String* file);

  // The object that takes the library's reports for this collection, which must outlive it.
  hedro34::Ref<hedro34::Object> error_object();

  void count_failure() noexcept { ++failures_; }

  std::size_t failures() const noexcept { return failures_; }
  std::size_t count() const noexcept { return said_.size(); }   // boxes and failures
  const std::string& lines() const noexcept { return lines_; }  // one JSON object a line, in order

  // For a person: each box as its title and, on the next line, its text, and each failure as its line on standard error.
  const std::vector<hedro34::String>& said() const noexcept { return said_; }

 private:
  template <class Members>
  void keep(Members members);  // a line with the members that it is given

  PartialCredit partial_credit_;
  std::string lines_;
  std::vector<hedro34::String> said_;
  std::size_t failures_ = 0;
};

}  // namespace host
