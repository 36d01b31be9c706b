// The library as a component for a C++ program: the types of the binary interface, the class registry, objects created by name,
// and the library's own objects as they look from outside. hedro34.h does without all of it.
#pragma once

#include "hedro34/component/binary.h"
#include "hedro34/component/class_registry.h"
#include "hedro34/component/create_object.h"
#include "hedro34/component/identity.h"
