// Of the library's sources a program sees the public headers and nothing else.
#if !__has_include(<hedro34/hedro34.h>) || !__has_include(<hedro34/version.h>)
#error "the public headers are not there"
#endif
#if __has_include(<hedro34/json/json_table.h>) || __has_include(<host/stop.h>) || __has_include(<tests/support.h>)
#error "headers are there that are not public"
#endif
#if __has_include(<version.h>) || __has_include(<README.md>)
#error "the whole tree is on the include path"
#endif
