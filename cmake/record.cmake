# Part of an installation: adds the files that it has put in place to `record`, one a line, behind a line with the prefix.
get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
string(REPLACE ";" "\n" files "${CMAKE_INSTALL_MANIFEST_FILES}")
string(REPLACE "\n" "\n$ENV{DESTDIR}" files "\n${files}")
file(APPEND ${record} "prefix $ENV{DESTDIR}${prefix}${files}\n")
