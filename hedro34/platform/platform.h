// The services of the world that the library uses. Each has a default; a host replaces one by assigning its own, which must
// outlive its use:
//
//   MyMessageBox box;
//   hedro34::platform().message_box = &box;
//
// There is one set for the process. It is meant to be changed before the threads that use the library start.
#pragma once

#include "hedro34/base/text.h"

namespace hedro34 {

class DocumentFactory;
class MessageBox;
class TemplateFactory;
class XmlDocumentFactory;

// The mouse pointer of the screen, which every report sets back to the default shape.
class HEDRO34_API Screen {
 public:
  virtual ~Screen() = default;
  virtual void SetMousePointer(std::int32_t shape) = 0;  // 0: the default shape
};

// The platform's standard text for an error number.
class HEDRO34_API ErrorTexts {
 public:
  virtual ~ErrorTexts() = default;
  virtual String text(std::int32_t number) = 0;
};

struct Platform {
  MessageBox* message_box;            // default: standard error; on Windows a box of the system
  Screen* screen;                     // default: a terminal has no pointer, nothing happens; on Windows the system's
  ErrorTexts* error_texts;            // default: `failure_text`
  XmlDocumentFactory* xml_documents;  // default: `ExpatDocument`
  TemplateFactory* template_objects;  // default: `FormRegion`
  DocumentFactory* document_objects;  // default: `DataDocument` and its companions
};

// The services that the library uses, to be read and changed.
HEDRO34_API Platform& platform() noexcept;

}  // namespace hedro34
