#include "host/show.h"

#include "host/load.h"
#include "host/stop.h"

namespace host {

void show(const ShowCommand& command, Messages& messages) {
  for (const hedro34::String& file : command.files) {
    const auto test = load_test(file, command.import, messages);
    print(command.as == ShowCommand::As::Json ? as_json(*test) : as_text(*test));
  }
}

}  // namespace host
