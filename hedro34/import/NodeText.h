// Flattening of ExamView's rich text into one line of plain text, without blanks at its ends.
#pragma once

#include "hedro34/import/node.h"
#include "hedro34/import/not_carried.h"

namespace hedro34 {

// A node that fails is reported and gives an empty text; what is around it goes on.
String NodeText(const HostNode& node, NotCarried& not_carried);
String NodeText(const TreeNode& node, NotCarried& not_carried);

}  // namespace hedro34
