// Everything of the library. A tour in the order in which data flows:
//
//   clsHEDROTest                 one test: `LoadXML` (an ExamView file) or `LoadKTD` (a data document) fills it
//   clsHEDROTestQuestion         a plain record; `Answers`, `CorrectAnswers`, points, texts, `ID`, type
//   FormTemplate                 a form: pages, regions, fields; `Load` and `Save`
//   clsHEDRO                     the merge: `Tests`, `TemplateIn`, `TemplateOut`, `WENKTD`, then `RemoveInvalid` and `Merge`
//   VersionComparison            how further versions of a test differ from it, by the rules of a merge
//   DataDocument                 what a merge fills: names, keys, texts, objectives, versions; `Load` and `Save`
//   Report                       the page that a person looks at before the sheets go out: `to_html` and `Save`
//   document_keys                the keys of a data document, version by version, as each field of the sheet shows them
//   platform()                   message box, XML reader, templates and documents, each of which a host may replace
//   last_file_error(), to_line   why a load or save answered False
//   SetError                     gives the object that hears of failures; without one a message box shows them
//   Main()                       turns native faults on this thread into such failures
//
// Objects are made by `make<T>()` and shared as `Ref<T>`; text is `String`, 16-bit units, with `to_utf8` and `from_utf8` at the
// edges; an index is a `Variant`, a position from 1 or a key. No operation of a test or a merge throws, and no load or save of
// a form or document; another call of theirs that fails throws a `Failure`. Whoever shows objects to other languages includes
// <hedro34/component.h> as well.
#pragma once

#include "hedro34/base/array.h"
#include "hedro34/base/failure.h"
#include "hedro34/base/keyed_list.h"
#include "hedro34/base/ref.h"
#include "hedro34/base/text.h"
#include "hedro34/base/variant.h"

#include "hedro34/platform/file_error.h"
#include "hedro34/platform/files.h"
#include "hedro34/platform/message_box.h"
#include "hedro34/platform/platform.h"

#include "hedro34/xml/expat_document.h"
#include "hedro34/xml/xml_document.h"

#include "hedro34/documents/TIBTemplate.h"
#include "hedro34/documents/WENKtdDocument.h"
#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"

#include "hedro34/runtime/basError.h"
#include "hedro34/runtime/modStartup.h"

#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/model/clsHEDROTests.h"

#include "hedro34/import/BuildTestFromKTD.h"

#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/merge/version_differences.h"

#include "hedro34/report/Report.h"
#include "hedro34/report/version_keys.h"

#include "hedro34/version.h"
