// What a host of the component can put in the place of the library's defaults, and ask of it, by name: the objects
// "HEDRO34.Platform" and "HEDRO34.MessageBox", and the classes of the host from which the library makes what it adds to the
// host's templates and documents.
//
// A host registers a class for the running program under its name, with an object whose method "CreateInstance" gives a new
// object; where it did not, the class registry is asked, and what it says is kept. These are looked for:
//
//   TIBTemplate81.TIBRegion                          for a template of the host
//   WENKtd81.WENKtdQuestion, .WENKtdObjective, .WENKtdOrder   for a document of the host
//   WENKtd81.WENKtdDocument                          for a new document; the library's own where there is none
//
// A class that cannot be had is failure 429, whose description names the class, and the file and the reason where one is at
// fault. A damaged class registry is such a fault for the document only where the name of its class stands in the file: else
// the class is not registered, and the library's own document serves.
//
// Everything here is one for the process, as the services of platform.h are, and belongs to the thread of the objects that
// the host gave. What the host gave is held until it is replaced, not released at the end of the process.
#pragma once

#include "hedro34/component/host_object.h"

namespace hedro34 {

// The library's own message box, as an object.
class MessageBoxObject final : public Object {
 public:
  std::int32_t Show(StringView sText, std::int32_t lFlags, StringView sTitle);
};

class PlatformObject final : public Object {
 public:
  // The object whose method "Show" shows the boxes; the library's own when the host gave none. An empty reference puts that
  // back.
  Ref<Object> MessageBox();
  void SetMessageBox(const Ref<Object>& value);

  // Why the last load or save of this thread failed: "path: line 3, column 14: reason"; empty when it went well.
  String LastFileError();

  // Whether native faults inside the host's objects are failures of the operations that called them; True at the start. An
  // interpreter, which a failure would leave in the middle, sets it to False: its own handler gets such a fault.
  bool HostFaults() { return HostCall::faults_are_failures(); }
  void SetHostFaults(bool value) { HostCall::set_faults_are_failures(value); }

  // Registers or removes a class of the host for this process. Failure 91 for an empty reference, 5 for an empty name;
  // `RevokeClass` gives whether there was one.
  void RegisterClass(StringView sName, const Ref<Object>& oFactory);
  bool RevokeClass(StringView sName);

  // The object whose method "SetMousePointer" takes the shape of the screen's mouse pointer, 0 for the default one, and the one
  // whose method "Text" gives the standard text of an error number; reports use both. Empty while the library's own serve; an
  // empty reference puts those back. When a method fails, the report goes into a message box that says so, and the library's
  // own text serves.
  Ref<Object> Screen();
  void SetScreen(const Ref<Object>& value);
  Ref<Object> ErrorTexts();
  void SetErrorTexts(const Ref<Object>& value);

  // The version of the library, such as "0.1.0".
  String Version();
};

// Puts factories in place that make what is added to a host's templates and documents out of the host's classes. Failure 429
// when the host has none of that name. What stood there before serves all other templates and documents.
void install_host_factories();

}  // namespace hedro34
