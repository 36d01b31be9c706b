// Everything of the library, room by room.
#pragma once

#include "hedro34/base/array.h"
#include "hedro34/base/failure.h"
#include "hedro34/base/keyed_list.h"
#include "hedro34/base/ref.h"
#include "hedro34/base/text.h"
#include "hedro34/base/variant.h"

#include "hedro34/platform/TIBTemplate.h"
#include "hedro34/platform/WENKtdDocument.h"
#include "hedro34/platform/binary.h"
#include "hedro34/platform/class_registry.h"
#include "hedro34/platform/create_object.h"
#include "hedro34/platform/data_document.h"
#include "hedro34/platform/expat_document.h"
#include "hedro34/platform/files.h"
#include "hedro34/platform/form_template.h"
#include "hedro34/platform/message_box.h"
#include "hedro34/platform/platform.h"
#include "hedro34/platform/refusal.h"
#include "hedro34/platform/xml_document.h"

#include "hedro34/runtime/basError.h"
#include "hedro34/runtime/modStartup.h"

#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/model/clsHEDROTests.h"

#include "hedro34/import/BuildTestFromKTD.h"

#include "hedro34/merge/clsHEDRO.h"

#include "hedro34/component/classes.h"
#include "hedro34/component/identity.h"
#include "hedro34/component/services.h"
